#include "documents/document_file.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace {

class DocumentFile : public testing::Test {
 protected:
  void write(const std::string& text) const { folder_.write("pq.json", text); }
  int save(const char* text) const { return pq::save_document(document_.c_str(), text); }

  // The contents of document and side file; "-" for a missing one.
  std::string state() const {
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

TEST_F(DocumentFile, StaysWhenTheSideFileCannotBeWritten) {
  write("{}");
  std::filesystem::create_directory(side_);
  EXPECT_EQ(save("{\"a\":1}"), -1);
  EXPECT_EQ(text_of(document_), "{}");
}

TEST_F(DocumentFile, KeepsTheSideFileWhenTheDocumentItselfCannotBeWritten) {
  std::filesystem::create_directory(document_);
  EXPECT_EQ(save("{}"), -1);
  EXPECT_EQ(text_of(side_), "{}");
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
