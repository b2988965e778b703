// Partly built trees must print and load like whole ones.
#include "j2s/shallow_tree.h"

#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

constexpr const char* kDocument =
    R"({"name":"a","list":[1,-20,3.5],"rows":[[1],[],[{"x":1},{}]],"empty":{},"words":["b",true],)"
    R"("deep":{"one":{"two":{"three":[null]}}},"@list_index":[2,0],"last":1e300})";

std::string printed(const std::string& text) {
  return print_formatted(parse(text).get());
}

void count(const cJSON* item, size_t& values, size_t& bytes) {
  ++values;
  if (item->string != nullptr) bytes += std::strlen(item->string);
  if (item->valuestring != nullptr) bytes += std::strlen(item->valuestring);
  for (const cJSON* child = item->child; child != nullptr; child = child->next)
    count(child, values, bytes);
}

bool has_raw(const cJSON* item) {
  if (cJSON_IsRaw(item)) return true;
  for (const cJSON* child = item->child; child != nullptr; child = child->next) {
    if (has_raw(child)) return true;
  }
  return false;
}

TEST(ShallowTree, PrintsAsTheWholeOneHoweverFarItIsBuilt) {
  const std::string text = printed(kDocument);
  const pq::JsonPtr tree = j2s::parse_shallow(text.c_str());
  EXPECT_EQ(print_formatted(tree.get()), text);
  for (const char* name : {"rows", "deep", "empty", "list"}) {
    EXPECT_TRUE(j2s::expand(cJSON_GetObjectItem(tree.get(), name)));
    EXPECT_EQ(print_formatted(tree.get()), text) << name;
  }
  cJSON* one = cJSON_GetObjectItem(cJSON_GetObjectItem(tree.get(), "deep"), "one");
  EXPECT_TRUE(cJSON_IsRaw(one));
  EXPECT_TRUE(j2s::expand(one));
  EXPECT_TRUE(cJSON_IsRaw(cJSON_GetObjectItem(one, "two")));
  EXPECT_TRUE(j2s::expand_whole(tree.get()));
  EXPECT_FALSE(has_raw(tree.get()));
  EXPECT_TRUE(cJSON_Compare(tree.get(), parse(text).get(), true));
}

class ShallowTreeOf : public testing::Test {
 protected:
  // Returns how many of the four members stay texts if `count` bytes at `at` are replaced.
  int raw_items_after(size_t at, size_t count, const std::string& instead) {
    std::string changed = text_;
    changed.replace(at, count, instead);
    const pq::JsonPtr tree = j2s::parse_shallow(changed.c_str());
    EXPECT_EQ(print_formatted(tree.get()), printed(changed)) << changed;
    int raw_items = 0;
    for (const cJSON* item = tree->child->child; item != nullptr; item = item->next)
      raw_items += cJSON_IsRaw(item);
    return raw_items;
  }

  const std::string text_ = printed(R"({"in":{"a":[1,2],"b":[{"x":1}],"c":{"y":[]},"d":[0.5]}})");
};

TEST_F(ShallowTreeOf, AnyWhiteSpaceKeepsTheTextsThatAreAsPrinted) {
  for (size_t at = 0; at < text_.size(); ++at) {
    if (text_[at] > ' ') continue;
    EXPECT_GE(raw_items_after(at, 1, std::string(2, text_[at])), 3) << at;
    EXPECT_GE(raw_items_after(at, 1, ""), 3) << at;
  }
}

TEST_F(ShallowTreeOf, NumbersInOtherFormsAreBuilt) {
  for (const char* number : {"1.5", "-123456789012", "4294967295", "1e+20"})
    EXPECT_EQ(raw_items_after(text_.find("0.5"), 3, number), 4) << number;
  for (const char* number : {"0.50", "5e-1", "-0", "1E2", "0.12345678901234567", "1e999"})
    EXPECT_EQ(raw_items_after(text_.find("0.5"), 3, number), 3) << number;
}

TEST(ShallowTree, CountsWhatARawItemHolds) {
  const std::string text = printed(std::string(R"({"in":)") + kDocument + "}");
  const pq::JsonPtr shallow = j2s::parse_shallow(text.c_str());
  const Json whole = parse(text);
  int raw_items = 0;
  for (const cJSON *item = shallow->child->child, *other = whole->child->child; item != nullptr;
       item = item->next, other = other->next) {
    if (!cJSON_IsRaw(item)) continue;
    ++raw_items;
    size_t values = 0;
    size_t bytes = 0;
    count(other, values, bytes);
    EXPECT_EQ(static_cast<size_t>(item->valueint), values) << item->string;
    EXPECT_EQ(static_cast<size_t>(item->valuedouble) + std::strlen(item->string), bytes);
  }
  EXPECT_EQ(raw_items, 5);
}

TEST(ShallowTree, IsNoneForWhatIsNoObjectOrArrayOrIsCut) {
  const std::string text = printed(kDocument);
  for (size_t length = 0; length < text.size(); ++length)
    EXPECT_EQ(j2s::parse_shallow(text.substr(0, length).c_str()), nullptr) << length;
  for (const char* other : {"5", "\"text\"", "null", "{\"a\":\"\\n\"}", "[1,]", "{,}"})
    EXPECT_EQ(j2s::parse_shallow(other), nullptr) << other;
  EXPECT_TRUE(j2s::expand(nullptr));
  EXPECT_TRUE(j2s::expand_whole(nullptr));
}

}  // namespace
}  // namespace j2s_test
