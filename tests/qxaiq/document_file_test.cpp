#include "qxaiq/document_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {

// A document of its own in a folder of its own.
class DocumentFile : public testing::Test {
 protected:
  DocumentFile() {
    std::string pattern = testing::TempDir() + "document.XXXXXX";
    folder_ = mkdtemp(pattern.data());
    document_ = folder_ / "pq.json";
    side_ = folder_ / ".pq.json.saving";
  }
  ~DocumentFile() override { std::filesystem::remove_all(folder_); }

  static void write(const std::string& path, const char* text) { std::ofstream(path) << text; }
  static std::string read(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  // Which file holds what; "-" for none.
  std::string state() const {
    const auto shown = [](const std::string& path) {
      return std::filesystem::exists(path) ? read(path) : "-";
    };
    return shown(document_) + " " + shown(side_);
  }

  std::filesystem::path folder_;
  std::string document_, side_;
};

TEST_F(DocumentFile, IsReplacedAndLeavesNoSideFile) {
  write(document_, "{\"a\":1}");
  EXPECT_EQ(pq::save_document(document_.c_str(), "{}"), 2);
  EXPECT_EQ(state(), "{} -");
}

TEST_F(DocumentFile, StaysWhenThereIsNothingToSave) {
  write(document_, "{}");
  EXPECT_EQ(pq::save_document(document_.c_str(), nullptr), -1);
  EXPECT_EQ(pq::save_document(document_.c_str(), ""), -1);
  EXPECT_EQ(state(), "{} -");
}

TEST_F(DocumentFile, StaysWhenTheSideFileCannotBeWritten) {
  write(document_, "{}");
  std::filesystem::create_directory(side_);
  EXPECT_EQ(pq::save_document(document_.c_str(), "{\"a\":1}"), -1);
  EXPECT_EQ(read(document_), "{}");
}

TEST_F(DocumentFile, KeepsTheSideFileWhenTheDocumentItselfCannotBeWritten) {
  std::filesystem::create_directory(document_);
  EXPECT_EQ(pq::save_document(document_.c_str(), "{}"), -1);
  EXPECT_EQ(read(side_), "{}");
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
    if (given.document != nullptr) write(document_, given.document);
    if (given.side != nullptr) write(side_, given.side);
    pq::restore_document(document_.c_str());
    EXPECT_EQ(state(), given.after) << given.name;
  }
}

}  // namespace
