#include "documents/document_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <filesystem>
#include <string>

#include "documents/failing_sync.h"
#include "json/limits.h"
#include "support/temporary_folder.h"

namespace {

class DocumentFile : public testing::Test {
 protected:
  void write(const std::string& text) const { folder_.write("pq.json", text); }
  int save(const char* text) const { return pq::save_document(document_.c_str(), text); }

  [[nodiscard]] pq::DocumentText read() const { return pq::read_document(document_.c_str()); }

  // The contents of document and side file; "-" for a missing one.
  [[nodiscard]] std::string state() const {
    const auto shown = [](const std::string& path) {
      return std::filesystem::exists(path) ? text_of(path) : "-";
    };
    return shown(document_) + " " + shown(side_);
  }

  TemporaryFolder folder_;
  std::string document_ = folder_.path() / "pq.json";
  std::string side_ = folder_.path() / ".pq.json.saving";
};

TEST_F(DocumentFile, IsReplacedAndLeavesNoSideFile) {
  write("{\"a\":1}");
  EXPECT_EQ(save("{}"), 2);
  EXPECT_EQ(state(), "{} -");
}

TEST_F(DocumentFile, StaysWhenThereIsNothingToSave) {
  write("{}");
  EXPECT_EQ(save(nullptr), -1);
  EXPECT_EQ(save(""), -1);
  EXPECT_EQ(state(), "{} -");
}

TEST_F(DocumentFile, IsSavedAlthoughAFolderHasTheSideFilesName) {
  write("{}");
  std::filesystem::create_directory(side_);
  EXPECT_EQ(save("[1]"), 3);
  EXPECT_EQ(text_of(document_), "[1]");
  EXPECT_FALSE(std::filesystem::exists(side_ + ".2"));
}

TEST_F(DocumentFile, StaysWhenTheSideFileCannotBeWritten) {
  write("{}");
  std::filesystem::create_directory(side_);
  std::filesystem::create_directory(side_ + ".2");
  EXPECT_EQ(save("{\"a\":1}"), -1);
  EXPECT_EQ(text_of(document_), "{}");
}

TEST_F(DocumentFile, StaysWhenTheTextIsLargerThanADocumentMayBe) {
  write("{}");
  const std::string most(pq::kMaxDocumentSize, ' ');
  EXPECT_EQ(save((most + " ").c_str()), -1);
  EXPECT_EQ(state(), "{} -");
  EXPECT_EQ(save(most.c_str()), static_cast<int>(most.size()));
}

TEST_F(DocumentFile, KeepsTheSideFileWhenTheDocumentItselfCannotBeWritten) {
  std::filesystem::create_directory(document_);
  EXPECT_EQ(save("{}"), -1);
  EXPECT_EQ(text_of(side_), "{}");
}

TEST_F(DocumentFile, KeepsTheSideFileUntilTheDiskConfirmsTheDocument) {
  write("[1]");
  {
    const FailingSync sync(document_);
    EXPECT_EQ(save("[2]"), 3);
    EXPECT_STREQ(read().text.get(), "[2]");
    pq::restore_document(document_.c_str());
    EXPECT_EQ(state(), "[2] [2]");
  }
  pq::restore_document(document_.c_str());
  EXPECT_EQ(state(), "[2] -");
}

TEST_F(DocumentFile, IsReadFromTheSideFileWhenItCannotBePutBack) {
  std::filesystem::create_directory(document_);
  folder_.write(".pq.json.saving", "[2]");
  EXPECT_STREQ(read().text.get(), "[2]");
  EXPECT_EQ(text_of(side_), "[2]");
}

TEST_F(DocumentFile, ThatIsDamagedIsKeptBesideItsReplacement) {
  for (const char* damaged : {"{\"a\":", ""}) {
    write(damaged);
    EXPECT_EQ(pq::replace_damaged_document(document_.c_str(), "[0]"), 3);
    EXPECT_EQ(state(), "[0] -");
    EXPECT_EQ(text_of(document_ + ".damaged"), damaged);
  }
}

TEST_F(DocumentFile, ThatIsDamagedStaysWhenItCannotBeKept) {
  write("{");
  folder_.write("pq.json.damaged/file", "");
  EXPECT_EQ(pq::replace_damaged_document(document_.c_str(), "[0]"), -1);
  EXPECT_EQ(state(), "{ -");
}

TEST_F(DocumentFile, SaysWhatIsKnownOfIt) {
  using pq::DocumentState;
  EXPECT_EQ(read().state, DocumentState::kMissing);
  write("{");
  EXPECT_EQ(read().state, DocumentState::kWhole) << "its text is there";
  std::filesystem::resize_file(document_, pq::kMaxDocumentSize + 1);
  EXPECT_EQ(read().state, DocumentState::kDamaged);
  std::filesystem::resize_file(document_, size_t{1} << 40);
  EXPECT_EQ(read().state, DocumentState::kDamaged);
  std::filesystem::remove(document_);
  std::filesystem::create_directory(document_);
  EXPECT_EQ(read().state, DocumentState::kMissing);
}

TEST_F(DocumentFile, IsUnknownWhenNoDescriptorIsLeft) {
  write("{}");
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  const rlimit none{0, limit.rlim_max};
  setrlimit(RLIMIT_NOFILE, &none);
  const auto state = read().state;
  const int saved = save("[]");
  setrlimit(RLIMIT_NOFILE, &limit);
  EXPECT_EQ(state, pq::DocumentState::kUnknown);
  EXPECT_EQ(saved, -1);
  EXPECT_EQ(text_of(document_), "{}");
}

struct Case {
  const char* name;
  const char* document;  // null: missing
  const char* side;
  const char* after;
};

TEST_F(DocumentFile, IsRestoredOnlyWhenItWasCutShort) {
  for (const Case& given : {Case{"cut short", "{\"a\":", "{\"a\":2}", "{\"a\":2} -"},
                            Case{"emptied", "", "{\"a\":2}", "{\"a\":2} -"},
                            Case{"whole", "{\"a\":1}", "{\"a\":2}", "{\"a\":1} -"},
                            Case{"both broken", "{\"a\":", "{\"a", "{\"a\": -"},
                            Case{"missing", nullptr, "{\"a\":2}", "- -"},
                            Case{"no side file", "{\"a\":", nullptr, "{\"a\": -"}}) {
    std::filesystem::remove(document_);
    if (given.document != nullptr) write(given.document);
    if (given.side != nullptr) folder_.write(".pq.json.saving", given.side);
    pq::restore_document(document_.c_str());
    EXPECT_EQ(state(), given.after) << given.name;
  }
}

}  // namespace
