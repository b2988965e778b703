// Board descriptions: what is read, and what is refused.
#include "description/description.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <stdexcept>

#include "support/temporary_folder.h"

namespace board {
namespace {

class BoardDescription : public testing::Test {
 protected:
  Description read(const std::string& text) const {
    folder_.write("test.json", text);
    return read_description(folder_.path() / "test.json");
  }

  TemporaryFolder folder_;
};

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

TEST_F(BoardDescription, IsRefusedWithAnUnknownKeyOrValue) {
  for (const char* text : {"{", R"({"platfrom": "x"})", R"({"engine": "broken"})",
                           R"({"connectors": [{"type": "EDP"}]})", R"({"store": {"version": [2]}})",
                           R"({"gamma_lut_size": -1})", R"({"faults": {"gamma": "EXDEV"}})"}) {
    EXPECT_THROW(read(text), std::runtime_error) << text;
  }
}

}  // namespace
}  // namespace board
