// Board descriptions: accepted and refused input.
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

TEST_F(BoardDescription, IsRefusedWithAnUnknownKeyOrValue) {
  for (const char* text : {"{", R"({"platfrom": "x"})", R"({"engine": "broken"})",
                           R"({"connectors": [{"type": "EDP"}]})", R"({"store": {"version": [2]}})",
                           R"({"gamma_lut_size": -1})", R"({"faults": {"gamma": "EXDEV"}})"}) {
    EXPECT_THROW(read(text), std::runtime_error) << text;
  }
}

}  // namespace
}  // namespace board
