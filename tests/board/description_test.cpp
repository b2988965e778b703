// Board descriptions: accepted and refused input.
#include "description/description.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "support/temporary_folder.h"

namespace board {
namespace {

class BoardDescription : public testing::Test {
 protected:
  [[nodiscard]] Description read(const std::string& text) const {
    folder_.write("test.json", text);
    return read_description(folder_.path() / "test.json");
  }

  TemporaryFolder folder_;
};

TEST_F(BoardDescription, IsRefusedWithItsKeyItsValueAndWhatIsAllowed) {
  struct Case {
    const char* text;
    std::vector<const char*> words;
  };
  const Case cases[] = {
      {R"({"connectors": 7})", {"\"connectors\" is 7", "a list"}},
      {R"({"connectors": {}})", {"\"connectors\" is {}", "a list"}},
      {R"({"connectors": [{}, {}, {}, {}, {}, {}, {}, {}, {}]})", {"at most 8"}},
      {R"({"connectors": [{}, {"type": "EDP"}]})", {"\"connectors[1].type\" is \"EDP\"", "eDP"}},
      {R"({"connectors": [{"type": 256}]})", {"is 256", "0 to 255"}},
      {R"({"properties": 5})", {"\"properties\" is 5", "names and texts"}},
      {R"({"properties": ["a"]})", {"\"properties\" is [\"a\"]", "names and texts"}},
      {R"({"properties": {"a": 1}})", {"\"properties.a\" is 1", "a text"}},
      {R"({"gamma_lut_size": 256.7})", {"\"gamma_lut_size\" is 256.7", "whole number from 0"}},
      {R"({"gamma_lut_size": -1})", {"is -1", "0 to 4096"}},
      {R"({"dump": {"format_in": "xyz"}})", {"\"dump.format_in\" is \"xyz\"", "nv12"}},
      {R"({"dump": {"width": 0}})", {"\"dump.width\" is 0", "16 to 8192"}},
      {R"({"store": {"version": "ab"}})", {"\"store.version\" is \"ab\"", "[2, 0]"}},
      {R"({"store": {"empty": 1}})", {"\"store.empty\" is 1", "true or false"}},
      {R"({"store": 1})", {"\"store\" is 1", "an object"}},
      {R"({"engine": "broken"})", {"\"engine\" is \"broken\"", "without-get"}},
      {R"({"faults": {"gamma": "EXDEV"}})", {"\"faults.gamma\" is \"EXDEV\"", "EACCES"}},
      {R"({"platfrom": "x"})", {"no key \"platfrom\"", "platform"}},
      {R"({"about": "a", "about": "b"})", {"\"about\"", "twice"}},
      {R"({} x)", {"not valid JSON", "line 1"}},
      {"{", {"not valid JSON"}},
      {"7", {"holds 7", "an object"}},
  };
  for (const Case& wrong : cases) {
    try {
      (void)read(wrong.text);
      ADD_FAILURE() << wrong.text;
    } catch (const std::runtime_error& error) {
      for (const char* word : wrong.words)
        EXPECT_NE(std::string(error.what()).find(word), std::string::npos) << error.what();
    }
  }
}

TEST_F(BoardDescription, ReadsBackAsItIsWritten) {
  Description board = read(R"({"about": "\u00e9", "properties": {"vendor.a": "b"},
    "connectors": [{"type": "DSI", "lit": false}, {"type": 19}, {"type": "DSI"}],
    "engine": "run-fails", "faults": {"gamma": "EIO", "bus_id": true},
    "dump": {"width": 64, "format_out": "nv15"}, "store": {"version": [3, 1]}})");
  EXPECT_EQ(board.connectors.at(2).type_id, 2U) << "the second DSI";
  board.name = "test";
  EXPECT_EQ(read(to_json(board)), board);
}

}  // namespace
}  // namespace board
