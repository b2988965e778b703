#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

TEST(Number, IsStoredAsItsType) {
  for_each_case("number_cases.json", [](const cJSON* number_case) {
    const int type = cJSON_GetObjectItem(number_case, "type")->valueint;
    Tables tables;
    tables.add_struct("one", {{"load", static_cast<uint8_t>(type), 0, 4, 8, 1, 8}});
    unsigned char structure[20] = {};
    EXPECT_EQ(tables.load(print(number_case), &structure[0]), 0);
    const std::string becomes = print(cJSON_GetObjectItem(number_case, "becomes"));
    EXPECT_EQ(tables.dump(&structure[0]), "{\"load\":" + becomes + "}");
    EXPECT_TRUE(structure[3] == 0 && structure[12] == 0);
  });
}

TEST(SetValue, ReachesNumbersOnly) {
  ShapeTables tables;
  Shapes shapes = {};
  j2s_obj_set_value(tables.context(), tables.index_of("mode"), &shapes, 5);
  EXPECT_EQ(shapes.mode, 5);
  const std::string before = bytes_of(shapes);
  for (const int index : {-1, tables.index_of("text"), tables.index_of("pair"), 1000}) {
    j2s_obj_set_value(tables.context(), index, &shapes, 1);
  }
  j2s_obj_set_value(tables.context(), tables.index_of("mode"), nullptr, 1);
  EXPECT_EQ(bytes_of(shapes), before);
}

}  // namespace
}  // namespace j2s_test
