#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

// A query is an object; the library replaces the member's item in it by the answer.
TEST(Query, RewritesTheJsonAndNotTheStructure) {
  ShapeTables tables;
  char text[] = "longer than before";
  int32_t list[] = {7, 8};
  Shapes shapes = {{1, 2},   {1, 2, 3, 4}, {{1, 2, 3}, {4, 5, 6}},
                   "label",  {},           &text[0],
                   5,        {{10}, {11}}, 2,
                   &list[0], nullptr,      nullptr,
                   0};
  const std::string before = bytes_of(shapes);
  for_each_case("query_cases.json", [&](const cJSON* query_case) {
    cJSON* question = cJSON_GetObjectItem(query_case, "question");
    const char* member = cJSON_GetStringValue(cJSON_GetObjectItem(query_case, "member"));
    cJSON* item = cJSON_GetObjectItemCaseSensitive(question, member);
    int result = 1;
    (void)stderr_of([&] {
      result = _j2s_json_to_obj(tables.context(), item, question, tables.index_of(member), &shapes,
                                true);
    });
    EXPECT_EQ(result, cJSON_GetObjectItem(query_case, "result")->valueint);
    EXPECT_EQ(print(question), print(cJSON_GetObjectItem(query_case, "answer")));
    EXPECT_EQ(bytes_of(shapes), before);
  });
}

}  // namespace
}  // namespace j2s_test
