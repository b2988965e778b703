#include "json/tree_size.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "json/tree.h"

namespace {

// The bounds rely on it: a document that is measured as small enough prints as small enough.
TEST(TreeSize, IsNeverLessThanThePrintedText) {
  constexpr const char* kTrees[] = {
      "null",
      "0",
      "-2147483648",
      "1e300",
      "-1.2345678901234567e-300",
      "[]",
      "{}",
      "[{}]",
      R"("\"\\\b\f\n\r\t\u0001é")",
      R"([1,[2,[3,"x"]],{"a":true,"b":[{}],"c":{"d":null}}])",
      R"({"\u0002":{"\n":{"":{"x":[false,{"y":[0.1,-7]}]}}},"z":"/"})"};
  for (const char* text : kTrees) {
    const pq::JsonPtr tree = pq::parse_json(text);
    ASSERT_TRUE(tree) << text;
    const std::optional<pq::TreeSize> size = pq::measure(tree.get(), 0);
    ASSERT_TRUE(size) << text;
    const pq::TextPtr printed(cJSON_Print(tree.get()));
    EXPECT_GE(size->text, std::strlen(printed.get())) << printed.get();
    // Separators behind last items, and numbers that are not integers.
    EXPECT_LE(size->text, std::strlen(printed.get()) + 2 * size->items + 2 * 24) << printed.get();
  }
}

TEST(TreeSize, OfAnItemAndItsFrameIsWhatItsParentGrowsBy) {
  for (const char* text : {R"({"a":{}})", R"({"a":[]})"}) {
    const pq::JsonPtr tree = pq::parse_json(text);
    cJSON* parent = tree->child;
    pq::JsonPtr item = pq::parse_json(R"({"in":[1,{"deep\n":2.5}]})");
    const pq::TreeSize before = *pq::measure(tree.get(), 0);
    pq::TreeSize added = *pq::measure(item.get(), 2);
    added.text += pq::frame_size(parent, "new\n", 2);
    if (cJSON_IsArray(parent)) {
      cJSON_AddItemToArray(parent, item.release());
    } else {
      pq::add_to_object(parent, "new\n", std::move(item));
    }
    const pq::TreeSize after = *pq::measure(tree.get(), 0);
    EXPECT_EQ(after.items, before.items + added.items) << text;
    EXPECT_EQ(after.text, before.text + added.text) << text;
  }
}

}  // namespace
