#include "qxaiq/document_collection.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>

namespace {

using pq::CollectedDocument;
using pq::Document;
using pq::DocumentCollection;

constexpr size_t kTrailer = 4;

// A document of `size` bytes in which neighbouring bytes always differ.
std::string document_of(size_t size) {
  std::string text(size, ' ');
  for (size_t i = 0; i < size; ++i)
    text[i] = static_cast<char>('!' + i % 89);
  return text;
}

// Adds the bytes after the packet start in pieces of `piece` bytes. Returns the last result.
std::optional<CollectedDocument> add_in_pieces(DocumentCollection& collection,
                                               std::string_view rest, size_t piece) {
  std::optional<CollectedDocument> document;
  while (!rest.empty()) {
    EXPECT_FALSE(document) << "complete with " << rest.size() << " bytes to come";
    document = collection.add(rest.substr(0, piece));
    rest.remove_prefix(std::min(piece, rest.size()));
  }
  return document;
}

TEST(DocumentCollectionTest, PutsALargeDocumentTogetherHoweverItIsCut) {
  const std::string text = document_of(20'000);
  const std::string sent = text + std::string(kTrailer, '\0');
  for (const size_t first : {size_t{0}, size_t{1}, size_t{8168}}) {
    for (const size_t piece : {size_t{1}, size_t{7}, size_t{8192}, sent.size()}) {
      DocumentCollection collection;
      collection.start(Document::kAipq, 20'000, std::string_view(sent).substr(0, first));
      const auto document = add_in_pieces(collection, std::string_view(sent).substr(first), piece);
      ASSERT_TRUE(document) << first << " then by " << piece;
      EXPECT_EQ(document->document, Document::kAipq) << first << " then by " << piece;
      EXPECT_EQ(document->text, text) << first << " then by " << piece;
    }
  }
}

TEST(DocumentCollectionTest, DropsWhatRunsPastTheAnnouncedLength) {
  DocumentCollection collection;
  collection.start(Document::kPq, 4, "ab");
  EXPECT_FALSE(collection.add("cd0000x"));
  collection.start(Document::kPq, 4, "ef");
  EXPECT_EQ(collection.add("gh0000")->text, "efgh");
}

// A tool uses this to recover after another one was cut off in the middle of a document.
TEST(DocumentCollectionTest, LeftOversGarbleTheNextDocumentUntilAStrayChunkClearsThem) {
  DocumentCollection collection;
  collection.start(Document::kPq, 100, "left");  // and its sender went away
  collection.start(Document::kPq, 4, "ab");
  EXPECT_EQ(collection.add("cd0000")->text, "left");
  EXPECT_FALSE(collection.add("stray"));
  collection.start(Document::kPq, 4, "ab");
  EXPECT_EQ(collection.add("cd0000")->text, "abcd");
}

TEST(DocumentCollectionTest, SurvivesEveryAnnouncedLength) {
  for (const uint32_t length : {0x7FFFFFFBU, 0x7FFFFFFCU, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFBU,
                                0xFFFFFFFCU, 0xFFFFFFFFU}) {
    DocumentCollection collection;
    collection.start(Document::kPq, length, "abc");
    for (int i = 0; i < 5; ++i)
      EXPECT_FALSE(collection.add("d")) << length;
    collection.start(Document::kPq, 2, "ab");
    EXPECT_TRUE(collection.add("0000")) << length;
  }
}

TEST(DocumentCollectionTest, KeepsEightMebibytesOfAnEndlessDocument) {
  DocumentCollection collection;
  constexpr uint32_t kMebibyte = 1024 * 1024;
  const std::string chunk(kMebibyte, 'x');
  collection.start(Document::kPq, 12 * kMebibyte - uint32_t{kTrailer}, "");
  for (int i = 0; i < 12; ++i) {
    EXPECT_FALSE(collection.add(chunk)) << "mebibyte " << i;
  }
  collection.start(Document::kPq, 2, "ab");
  EXPECT_EQ(collection.add("0000")->text, "ab");
}

TEST(DocumentCollectionTest, FourStrayBytesInAFreshProcessAreAnEmptyDocument) {
  DocumentCollection collection;
  const auto document = collection.add("abcd");
  ASSERT_TRUE(document);
  EXPECT_EQ(document->document, Document::kPq);
  EXPECT_EQ(document->text, "");
}

}  // namespace
