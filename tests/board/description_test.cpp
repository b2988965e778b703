// Board descriptions: what is read, what is refused and how it is said.
#include "description/description.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fstream>
#include <stdexcept>

#include "launch/installation.h"
#include "support/temporary_folder.h"

namespace board {
namespace {

class BoardDescription : public testing::Test {
 protected:
  Description read(const std::string& text) const {
    const auto file = folder_.path() / "test.json";
    std::ofstream(file) << text;
    return read_description(file);
  }
  std::string refusal(const std::string& text) const {
    try {
      (void)read(text);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return "accepted";
  }

  TemporaryFolder folder_;
};

TEST_F(BoardDescription, OfEveryBoardSurvivesBeingWritten) {
  for (const auto& name : board_names()) {
    const Description board = read_description(description_file(name));
    EXPECT_EQ(board, read(to_json(board))) << name;
  }
}

TEST_F(BoardDescription, WithEverythingUnusualSurvivesBeingWritten) {
  Description board;
  board.name = "odd";
  board.about = "all at once";
  board.platform = "other";
  board.properties = {{"vendor.a", "\"b\""}};
  board.store_version[0] = 3;
  board.store_empty = true;
  board.connectors = {{.type = 20, .connected = false, .has_encoder = false},
                      {.lit = false},
                      {.type_id = 2, .picture_controls = false}};
  board.gamma_lut_size = 0;
  board.dump_width = 64;
  board.dump_format_out = "nv15";
  board.engine = Engine::kRunFails;
  board.faults = {.open_errno = EACCES,
                  .no_device = true,
                  .not_master = true,
                  .gamma_errno = EIO,
                  .commit_errno = EBUSY};
  EXPECT_EQ(board, read(to_json(board)));
  board.faults.open_errno = EXDEV;
  EXPECT_THROW((void)to_json(board), std::runtime_error);
}

TEST_F(BoardDescription, IsRefusedWithTheKeyAndWhatIsAllowed) {
  struct Case {
    const char* text;
    const char* named;
  };
  for (const auto& [text, named] :
       {Case{"{", "no valid JSON"}, Case{R"({"platfrom": "x"})", "unknown key \"platfrom\""},
        Case{R"({"engine": "broken"})", "complete, missing"},
        Case{R"({"connectors": [{"type": "EDP"}]})", "connector type name"},
        Case{R"({"store": {"version": [2]}})", "two numbers"},
        Case{R"({"gamma_lut_size": -1})", "0 to 65536"},
        Case{R"({"faults": {"gamma": "EXDEV"}})", "one of"}}) {
    EXPECT_NE(std::string::npos, refusal(text).find(named)) << text << ": " << refusal(text);
  }
}

TEST_F(BoardDescription, IsFoundByNameOrAsAFile) {
  EXPECT_EQ("tv", read_description(description_file("tv")).name);
  const auto file = folder_.path() / "mine.json";
  std::ofstream(file) << "{}";
  EXPECT_EQ(file, description_file(file.string()));
  EXPECT_THROW(description_file("no-such-board"), std::runtime_error);
}

}  // namespace
}  // namespace board
