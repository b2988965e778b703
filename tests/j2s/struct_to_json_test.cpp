#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

class StructToJson : public testing::Test {
 protected:
  ~StructToJson() override { _j2s_set_template(false); }

  ShapeTables tables_;
  Shapes shapes_ = {};
};

TEST_F(StructToJson, WritesEveryShapeInTableOrderAndLeavesTheTablesAlone) {
  char text[] = "t";
  int32_t list[] = {7, 8};
  int16_t rows[2][2] = {{1, 2}, {3, 4}};
  char* names[] = {text, nullptr};
  shapes_ = {{-1, 2},   {1, 2, 3, 4},  {{1, 2, 3}, {4, 5, 6}},
             "1234567", {"abc", "de"}, text,
             5,         {{10}, {11}},  2,
             list,      rows,          static_cast<char**>(names),
             2};
  shapes_.label[7] = '8';     // full: no terminator
  shapes_.words[0][3] = 'd';  // likewise, and another word follows
  const std::string before = tables_.bytes();
  EXPECT_EQ(tables_.dump(&shapes_),
            R"({"before":[-1,2],"four":[1,2,3,4],"grid":[[1,2,3],[4,5,6]],"label":"12345678",)"
            R"("words":["abcd","de"],"text":"t","mode":"ON","pair":[{"x":10},{"x":11}],"count":2,)"
            R"("list":[7,8],"rows":[[1,2],[3,4]],"names":["t",""],"name_count":2})");
  EXPECT_EQ(tables_.bytes(), before);
}

TEST_F(StructToJson, LeavesOutADynamicArrayItCannotRead) {
  char* names[1] = {};
  tables_.context()->obj_table[tables_.index_of("list")].len_obj = -1;
  const auto is_left_out = [&](int32_t length, char** buffer) {
    shapes_.name_count = length;
    shapes_.names = buffer;
    std::string text;
    const std::string messages = stderr_of([&] { text = tables_.dump(&shapes_); });
    EXPECT_EQ(text.find("names"), std::string::npos);
    EXPECT_EQ(text.find("list"), std::string::npos);
    EXPECT_NE(messages.find(" [_j2s_obj_to_json]: dynamic array list missing len\n"
                            "E: j2s/j2s("),
              std::string::npos);
    EXPECT_TRUE(messages.ends_with(") [_j2s_obj_to_json]: found null pointer at names\n"));
  };
  is_left_out(3, nullptr);
  is_left_out(-1, &names[0]);
  is_left_out(65536, &names[0]);
}

TEST_F(StructToJson, AddsDescriptionsAndEnumerationsWhenAskedTo) {
  const int index = tables_.index_of("x");
  std::vector<const char*> descriptions(static_cast<size_t>(index) + 1);
  descriptions.back() = "a number";
  j2s_ctx* ctx = tables_.context();
  ctx->desc_table = descriptions.data();
  ctx->desc_count = index + 1;
  ctx->emit_desc = ctx->emit_enums = 1;
  const std::unique_ptr<char, decltype(&std::free)> text(j2s_dump_struct(ctx, "inner", &shapes_),
                                                         &std::free);
  EXPECT_STREQ(text.get(), R"({"@x":"a number","x":0,"@enum":{"mode_names":{"OFF":0,"ON":5}}})");
}

TEST_F(StructToJson, GivesNothingForUnknownNamesAndIndexes) {
  EXPECT_EQ(j2s_struct_to_json(tables_.context(), "Shapes", &shapes_), nullptr);
  EXPECT_EQ(j2s_struct_to_json(tables_.context(), "empty", &shapes_), nullptr);
  EXPECT_EQ(_j2s_struct_to_json(tables_.context(), 3, &shapes_), nullptr);
  EXPECT_EQ(_j2s_obj_to_json(tables_.context(), -1, &shapes_), nullptr);
  const std::string message = stderr_of(
      [&] { EXPECT_EQ(j2s_dump_struct(tables_.context(), "Shapes", &shapes_), nullptr); });
  EXPECT_NE(message.find("[j2s_dump_struct]: debug assertion failure (json)\n"), std::string::npos);
}

TEST_F(StructToJson, WritesASkeletonInTemplateMode) {
  _j2s_set_template(true);
  EXPECT_EQ(tables_.dump(nullptr),
            R"({"before":[0,0],"four":[0,0,0,0],"grid":[[0,0,0],[0,0,0]],"label":"",)"
            R"("words":["",""],"text":"","mode":"OFF","pair":[{"x":0},{"x":0}],"count":1,)"
            R"("list":[0],"rows":[[0,0]],"names":[""],"name_count":1})");
}

}  // namespace
}  // namespace j2s_test
