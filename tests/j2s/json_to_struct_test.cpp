#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

class JsonToStruct : public testing::Test {
 protected:
  ~JsonToStruct() override { free_strings(shapes_); }

  // The member's text after `json` was loaded.
  std::string member(const char* name) {
    const Json json = own(j2s_struct_to_json(tables_.context(), nullptr, &shapes_));
    return print(cJSON_GetObjectItemCaseSensitive(json.get(), name));
  }

  ShapeTables tables_;
  Shapes shapes_ = {};
};

// Each case starts with four [1,2,3,4], label and text "old", mode ON, and 0 elsewhere.
TEST_F(JsonToStruct, LoadsWhatTheCasesSay) {
  const std::string tables_before = tables_.bytes();
  for_each_case("load_cases.json", [&](const cJSON* load_case) {
    shapes_ = {{}, {1, 2, 3, 4}, {}, "old", {}, strdup("old"), 5, {}, 0, {}, {}, {}, 0};
    cJSON* json = cJSON_GetObjectItem(load_case, "load");
    int result = -1;
    (void)stderr_of(
        [&] { result = j2s_json_to_struct(tables_.context(), json, nullptr, &shapes_); });
    EXPECT_EQ(result, 0);
    const char* name = cJSON_GetStringValue(cJSON_GetObjectItem(load_case, "member"));
    EXPECT_EQ(member(name), print(cJSON_GetObjectItem(load_case, "becomes")));
    free_strings(shapes_);
  });
  EXPECT_EQ(tables_.bytes(), tables_before);
}

TEST_F(JsonToStruct, ReplacesADynamicArrayOnlyWhenItsLengthChanges) {
  EXPECT_EQ(tables_.load(R"({"count":2,"list":[5,6],"rows":[]})", &shapes_), 0);
  const int32_t* buffer = shapes_.list;
  EXPECT_EQ(tables_.load(R"({"count":2,"list":[7]})", &shapes_), 0);
  EXPECT_EQ(shapes_.list, buffer);
  EXPECT_EQ(member("list"), "[7,6]");
  EXPECT_EQ(tables_.load(R"({"count":3,"list":[8],"rows":[]})", &shapes_), 0);
  EXPECT_EQ(member("list"), "[8,0,0]");  // nothing is carried over
  EXPECT_EQ(tables_.load(R"({"count":0,"list":[8]})", &shapes_), 0);
  EXPECT_EQ(member("list"), "[]");
}

// An array never has fewer elements than its length says, whatever the JSON names.
TEST_F(JsonToStruct, LeavesAnArrayAloneThatOnlyItsLengthSpeaksOf) {
  ASSERT_EQ(tables_.load(R"({"name_count":2,"names":["a","b"]})", &shapes_), 0);
  EXPECT_EQ(tables_.load(R"({"name_count":1})", &shapes_), 0);
  EXPECT_EQ(member("names"), R"(["a"])");
  EXPECT_EQ(tables_.load(R"({"name_count":1})", &shapes_), 0);
  shapes_.name_count = 2;  // both texts are still there
  int result = 0;
  const std::string message =
      stderr_of([&] { result = tables_.load(R"({"name_count":3})", &shapes_); });
  EXPECT_EQ(result, -1);
  EXPECT_NE(message.find("found null pointer at names\n"), std::string::npos);
  EXPECT_EQ(member("names"), R"(["a","b"])");
  // Two arrays that share a length, one of them without an item.
  (void)stderr_of([&] { result = tables_.load(R"({"list":[1,2]})", &shapes_); });
  EXPECT_EQ(result, -1);
  EXPECT_EQ(member("rows"), "[]");
}

TEST_F(JsonToStruct, StopsAtALengthThatCannotBe) {
  for (const char* length : {"-1", "65536", "1e300"}) {
    const std::string before = tables_.bytes();
    int result = 0;
    const std::string message = stderr_of([&] {
      result = tables_.load(std::string(R"({"label":"in","names":["a"],"name_count":)") + length +
                                R"(,"before":[1]})",
                            &shapes_);
    });
    EXPECT_EQ(result, -1) << length;
    EXPECT_NE(message.find("[_j2s_json_to_obj]: found null pointer at names\n"), std::string::npos);
    EXPECT_EQ(shapes_.names, nullptr);
    EXPECT_EQ(member("label"), "\"in\"");  // what came before it stays
    EXPECT_EQ(tables_.bytes(), before);
  }
}

TEST_F(JsonToStruct, NeverWritesAPointerALengthOrAStructureThroughANegativeSlot) {
  constexpr uint8_t kNumber = J2S_TYPE_INT64;
  int64_t words[6] = {};  // and there is a word before them
  Tables tables;
  tables.add_struct("guarded", {{"free", kNumber, 0, 0, 8, 1, 8},
                                {"text", J2S_TYPE_STRING, J2S_FLAG_POINTER, 8, 8, 1, 8},
                                {"length", kNumber, 0, 16, 8, 1, 8},
                                {"list", kNumber, J2S_FLAG_POINTER, 24, 8, 1, 8, -1, -1, 2},
                                {"inner", J2S_TYPE_STRUCT, 0, 32, 8, 1, 8, 1},
                                {"values", kNumber, J2S_FLAG_ARRAY, 40, 8, 1, 8}});
  tables.add_struct("inner", {{"x", kNumber, 0, 0, 8, 1, 8}});
  EXPECT_EQ(
      tables.load(R"({"values":[1,2,3,4,5,6],"@values_index":[-5,-4,-3,-2,-1,-6]})", &words[0]), 0);
  EXPECT_EQ(words[0], 1);
  EXPECT_TRUE(std::all_of(&words[1], &words[6], [](int64_t word) { return word == 0; }));
}

TEST_F(JsonToStruct, RefusesUnknownStructuresAndMembers) {
  const Json json = parse("{}");
  EXPECT_EQ(j2s_json_to_struct(tables_.context(), json.get(), "none", &shapes_), -1);
  EXPECT_EQ(j2s_json_to_struct(tables_.context(), json.get(), "empty", &shapes_), 0);
  EXPECT_EQ(j2s_json_to_struct(tables_.context(), nullptr, "shapes", &shapes_), 0);
  EXPECT_EQ(_j2s_json_to_obj(tables_.context(), json.get(), json.get(), -1, &shapes_, false), -1);
  tables_.context()->root_struct = -1;
  EXPECT_EQ(j2s_json_to_struct(tables_.context(), json.get(), nullptr, &shapes_), -1);
}

}  // namespace
}  // namespace j2s_test
