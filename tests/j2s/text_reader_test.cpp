// Reading a structure from text must give the same result as loading it from a tree.
#include "j2s/text_reader.h"

#include "j2s/json_cursor.h"
#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

struct Lamp {
  int32_t level[3];
  uint8_t small;
  char label[4];
  char* name;
  float share;
  Inner pair[2];
  int32_t last;
};

class TextReader : public testing::Test {
 protected:
  TextReader() {
    tables_.add_struct("lamp",
                       {{"level", J2S_TYPE_INT32, J2S_FLAG_ARRAY, offsetof(Lamp, level), 4, 3, 4},
                        {"small", J2S_TYPE_UINT8, 0, offsetof(Lamp, small), 1, 1, 1},
                        {"label", J2S_TYPE_STRING, J2S_FLAG_ARRAY, offsetof(Lamp, label), 1, 4, 1},
                        {"name", J2S_TYPE_STRING, J2S_FLAG_POINTER, offsetof(Lamp, name), 8, 1, 8},
                        {"share", J2S_TYPE_FLOAT, 0, offsetof(Lamp, share), 4, 1, 4},
                        {"pair", J2S_TYPE_STRUCT, J2S_FLAG_ARRAY, offsetof(Lamp, pair), 4, 2, 4, 1},
                        {"last", J2S_TYPE_INT32, 0, offsetof(Lamp, last), 4, 1, 4}});
    tables_.add_struct("inner", {{"x", J2S_TYPE_INT32, 0, 0, 4, 1, 4}});
  }

  // The structure after reading, with "old" values before; empty if reading is left to the tree.
  std::string read(const std::string& text) {
    Lamp lamp = old_lamp();
    auto* structure = reinterpret_cast<std::byte*>(&lamp);
    const bool done = j2s::read_struct_text(*tables_.context(), 0, text.c_str(), structure);
    const std::string result = take_text(lamp);
    return done ? result : "";
  }

  std::string load(const std::string& text) {
    Lamp lamp = old_lamp();
    const Json tree = parse(text);
    EXPECT_TRUE(tree) << text;
    return take_loaded(tree.get(), lamp);
  }

  // Loads the text as a raw item, which the library may read directly or through a tree.
  std::string load_raw(const std::string& text) {
    Lamp lamp = old_lamp();
    const Json raw = own(cJSON_CreateRaw(text.c_str()));
    j2s::JsonCursor cursor(text.c_str());
    j2s::SkippedValue value;
    if (cursor.skip(value) && !value.has_index_keys) raw->valueint = static_cast<int>(value.values);
    return take_loaded(raw.get(), lamp);
  }

  std::string old_text() {
    Lamp lamp = old_lamp();
    return take_text(lamp);
  }

 private:
  static Lamp old_lamp() { return {{7, 8, 9}, 5, "old", strdup("old"), 0.5F, {{1}, {2}}, 3}; }

  std::string take_loaded(cJSON* item, Lamp& lamp) {
    (void)stderr_of(
        [&] { EXPECT_EQ(j2s_json_to_struct(tables_.context(), item, nullptr, &lamp), 0); });
    return take_text(lamp);
  }

  std::string take_text(Lamp& lamp) {
    const std::string text = tables_.dump(&lamp);
    std::free(std::exchange(lamp.name, nullptr));
    return text;
  }

  Tables tables_;
};

constexpr const char* kWhole =
    R"({"level":[1, -2,3],"small":300,"label":"abcdef","name":"kitchen","share":0.25,)"
    R"("pair":[{"x":4},{"x":5}],"last":-6})";

TEST_F(TextReader, StoresWhatTheTreeStores) {
  for (const char* text : {
           kWhole,
           "{}",
           " { }  and more",
           R"({"level":[]})",
           R"({"level":[1]})",
           R"({"level":[1,2,3,4,5.5,6]})",
           R"({"level":[1.9, 2e3, -0, 0.0, 1E-2]})",
           R"({"level":[2147483647,2147483648,-99999999999]})",
           R"({"level" : [ 999999999 , 1234567890, -1 ]})",
           "{\"level\":\t[1,\r\n 2 ] ,\n \"last\":1}",
           R"({"small":-1,"share":1e300})",
           R"({"label":"","name":""})",
           "{\"name\":\"Gr\xc3\xbc\xc3\x9f\xff\x7f\"}",
           R"({"other":{"level":[1],"x":null},"level":[1,2],"more":[[true],false,"s"],"last":2})",
           R"({"pair":[{"x":4},{"x":5,"y":6},{"x":7}],"Last":1})",
           R"({"pair":[{}],"last":1e999})",
       }) {
    EXPECT_EQ(read(text), load(text)) << text;
    EXPECT_EQ(load_raw(text), load(text)) << text;
  }
}

TEST_F(TextReader, LeavesToTheTreeWhatItDoesNotTreatAlike) {
  for (const char* text : {
           R"({"level":[1,2],"last":9,"small":1})",  // another order
           R"({"level":[1,2],"level":[3]})",         // the first counts
           R"({"last":"1"})",                        // other kinds
           R"({"last":null})",
           R"({"last":[1]})",
           R"({"level":5})",
           R"({"level":[1,"2",3]})",
           R"({"level":{"a":1,"b":2}})",
           R"({"name":5,"label":[]})",
           R"({"pair":{"x":1}})",
           R"({"pair":[1]})",
           R"([1])",
       }) {
    EXPECT_EQ(read(text), "") << text;
    EXPECT_EQ(load_raw(text), load(text)) << text;
  }
}

TEST_F(TextReader, LoadsIndexKeysByTheTree) {
  const std::string text = R"({"level":[1,2],"@level_index":[2,0]})";
  EXPECT_EQ(load_raw(text), load(text));
}

TEST_F(TextReader, TakesNoTextThatNeedsMoreThanTheCursorKnows) {
  for (const char* text : {
           R"({"name":"a\"b"})",
           R"({"na\u006de":"x"})",
           "{\"name\":\"a\tb\"}",
           "\xEF\xBB\xBF{\"last\":1}",
           R"({"last":01})",
           R"({"level":[1.,2]})",
           R"({"level":[-.5]})",
       }) {
    EXPECT_TRUE(parse(text)) << text;
    EXPECT_EQ(read(text), "") << text;
    EXPECT_EQ(load_raw(text), old_text()) << text;
  }
}

TEST_F(TextReader, ReadsNoTextThatIsCutOrDamaged) {
  const std::string whole = kWhole;
  for (size_t length = 0; length < whole.size(); ++length) {
    EXPECT_EQ(read(whole.substr(0, length)), "") << length;
    std::string damaged = whole;
    damaged[length] = '\x01';  // white space, for both
    if (parse(damaged) == nullptr) {
      EXPECT_EQ(read(damaged), "") << damaged;
    }
  }
  EXPECT_EQ(load_raw(whole.substr(0, whole.size() - 1)), old_text());
}

TEST_F(TextReader, GivesUpAtGreatDepths) {
  const auto nested = [](size_t depth) {
    return R"({"other":)" + std::string(depth, '[') + std::string(depth, ']') + R"(,"last":1})";
  };
  EXPECT_EQ(read(nested(60)), load(nested(60)));
  EXPECT_EQ(read(nested(100)), "");
  EXPECT_EQ(load_raw(nested(100)), old_text());
}

TEST(TextReaderTables, LeavesDynamicArraysToTheTree) {
  ShapeTables tables;
  Shapes shapes = {};
  auto* structure = reinterpret_cast<std::byte*>(&shapes);
  EXPECT_FALSE(j2s::read_struct_text(*tables.context(), 0, R"({"before":[1]})", structure));
  const Json raw = own(cJSON_CreateRaw(R"({"before":[1],"count":2,"list":[5,6],"rows":[]})"));
  EXPECT_EQ(j2s_json_to_struct(tables.context(), raw.get(), nullptr, &shapes), 0);
  EXPECT_EQ(shapes.list[1], 6);
}

}  // namespace
}  // namespace j2s_test
