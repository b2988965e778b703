#include "json/patch.h"

#include <cjson/cJSON_Utils.h>
#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "base/quit.h"
#include "j2s/shallow_tree.h"

namespace {

struct Outcome {
  int status;
  std::string document;  // compact
};

Outcome patch_tree(pq::JsonPtr tree, const std::string& operations) {
  const int status = pq::apply_patch(tree, operations);
  EXPECT_TRUE(j2s::expand_whole(tree.get()));
  const pq::TextPtr text(cJSON_PrintUnformatted(tree.get()));
  return {status, text ? text.get() : "nothing"};
}

// A tree that is built in part, as stored documents are, has to come out the same.
Outcome patch(const char* document, const std::string& operations) {
  const pq::TextPtr stored(cJSON_Print(pq::JsonPtr(cJSON_Parse(document)).get()));
  const Outcome in_part = patch_tree(pq::parse_shallow(stored.get()), operations);
  Outcome whole = patch_tree(pq::JsonPtr(cJSON_Parse(document)), operations);
  EXPECT_EQ(in_part.status, whole.status);
  if (whole.status == 0) {
    EXPECT_EQ(in_part.document, whole.document);
  }
  return whole;
}

struct Case {
  const char* name;
  const char* operations;
  int status;
  const char* document;  // only when the status is 0
};

constexpr char kDocument[] = R"({"csc":{"hue":1,"gain":[1,2,3]},"dci":{"on":1}})";

class JsonPatch : public testing::TestWithParam<Case> {};

TEST_P(JsonPatch, Applies) {
  const Outcome outcome = patch(kDocument, GetParam().operations);
  EXPECT_EQ(outcome.status, GetParam().status);
  if (outcome.status == 0) {
    EXPECT_EQ(outcome.document, GetParam().document);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, JsonPatch,
    testing::Values(
        Case{"replace", R"([{"op":"replace","path":"/csc/hue","value":9}])", 0,
             R"({"csc":{"gain":[1,2,3],"hue":9},"dci":{"on":1}})"},
        Case{"add_in_the_middle", R"([{"op":"add","path":"/csc/gain/1","value":9}])", 0,
             R"({"csc":{"hue":1,"gain":[1,9,2,3]},"dci":{"on":1}})"},
        Case{"remove", R"([{"op":"remove","path":"/dci"}])", 0,
             R"({"csc":{"hue":1,"gain":[1,2,3]}})"},
        Case{"move", R"([{"op":"move","from":"/dci","path":"/csc/dci"}])", 0,
             R"({"csc":{"hue":1,"gain":[1,2,3],"dci":{"on":1}}})"},
        Case{"copy", R"([{"op":"copy","from":"/csc/hue","path":"/dci/on"}])", 0,
             R"({"csc":{"hue":1,"gain":[1,2,3]},"dci":{"on":1}})"},
        Case{"test_changes_nothing",
             R"([{"op":"test","path":"/csc","value":{"hue":1,"gain":[1,2,3]}}])", 0, kDocument},
        Case{"add_after_test",
             R"([{"op":"test","path":"/csc","value":{"hue":1,"gain":[1,2,3]}},
                 {"op":"add","path":"/csc/a","value":0},{"op":"remove","path":"/csc/hue"}])",
             0, R"({"csc":{"gain":[1,2,3],"a":0},"dci":{"on":1}})"},
        Case{"failed_test", R"([{"op":"test","path":"/csc/hue","value":2}])", 1, ""},
        Case{"root_replaced", R"([{"op":"replace","path":"","value":[1]}])", 0, "[1]"},
        Case{"root_removed", R"([{"op":"remove","path":""}])", 0, "nothing"},
        Case{"nothing_is_in_a_removed_root",
             R"([{"op":"remove","path":""},{"op":"add","path":"/x","value":1}])", 9, ""},
        Case{
            "root_replaced_and_changed",
            R"([{"op":"add","path":"","value":{"a":[1]}},{"op":"move","from":"/a/0","path":"/a/-"}])",
            0, R"({"a":[1]})"},
        Case{"root_moved_into_itself", R"([{"op":"move","from":"","path":"/csc"}])", 5, ""},
        Case{"last_removed_then_appended",
             R"([{"op":"remove","path":"/csc/gain/2"},{"op":"add","path":"/csc/gain/-","value":4},
                 {"op":"remove","path":"/csc/gain/0"},{"op":"add","path":"/csc/gain/0","value":5}])",
             0, R"({"csc":{"hue":1,"gain":[5,2,4]},"dci":{"on":1}})"},
        Case{"appended_after_test_of_a_list",
             R"([{"op":"add","path":"/csc/gain/0","value":{"z":1,"a":2}},
                 {"op":"test","path":"/csc/gain","value":[{"a":2,"z":1},1,2,3]},
                 {"op":"add","path":"/csc/gain/0/b","value":3}])",
             0, R"({"csc":{"hue":1,"gain":[{"z":1,"a":2,"b":3},1,2,3]},"dci":{"on":1}})"},
        Case{"names_of_any_case", R"([{"op":"replace","path":"/CSC/Hue","value":9}])", 0,
             R"({"csc":{"gain":[1,2,3],"Hue":9},"dci":{"on":1}})"},
        Case{"index_past_the_end", R"([{"op":"add","path":"/csc/gain/4","value":0}])", 10, ""},
        Case{"index_with_leading_zero", R"([{"op":"add","path":"/csc/gain/01","value":0}])", 11,
             ""},
        Case{"member_of_a_number", R"([{"op":"add","path":"/csc/hue/x","value":0}])", 9, ""},
        Case{"path_without_slash", R"([{"op":"add","path":"csc","value":0}])", 9, ""},
        Case{"no_json", R"([{"op":"remove","path":"/csc")", 2, ""},
        Case{"no_patch", R"({"op":"remove","path":"/csc"})", 2, ""},
        Case{"no_path", R"([{"op":"remove"}])", 2, ""},
        Case{"path_is_no_text", R"([{"op":"remove","path":7}])", 2, ""},
        Case{"unknown_operation", R"([{"op":"erase","path":"/csc"}])", 3, ""},
        Case{"source_is_no_text", R"([{"op":"move","from":0,"path":"/csc"}])", 4, ""},
        Case{"source_of_any_case_is_no_text", R"([{"OP":"copy","FROM":0,"PATH":"/csc"}])", 4, ""},
        Case{"source_missing", R"([{"op":"copy","path":"/csc"}])", 4, ""},
        Case{"moved_into_itself", R"([{"op":"move","from":"/csc","path":"/csc/x"}])", 9, ""},
        Case{"replace_without_value", R"([{"op":"replace","path":"/csc"}])", 7, ""},
        Case{"second_of_two_fails",
             R"([{"op":"remove","path":"/csc"},{"op":"remove","path":"/csc"}])", 13, ""}),
    [](const auto& parameter) { return parameter.param.name; });

TEST(JsonPatchLimits, AMissingDocumentFails) {
  pq::JsonPtr none;
  EXPECT_NE(pq::apply_patch(none, R"([{"op":"add","path":"","value":1}])"), 0);
}

TEST(JsonPatchLimits, DoublingByCopyEndsAsFailure) {
  std::string operations = "[";
  for (int i = 0; i < 40; ++i) {
    operations += R"({"op":"copy","from":"","path":"/x)" + std::to_string(i) + R"("},)";
  }
  operations.back() = ']';
  EXPECT_EQ(patch(kDocument, operations).status, 8);
}

// Each with a leading comma.
std::string repeated(int times, const std::string& item) {
  std::string list;
  for (int i = 0; i < times; ++i)
    list += "," + item;
  return list;
}

// The operation that adds a list of `count` zeros as "/x".
std::string add_zeros(int count) {
  return R"({"op":"add","path":"/x","value":[0)" + repeated(count - 1, "0") + "]}";
}

TEST(JsonPatchLimits, CopyingALongTextEndsAsFailure) {
  const std::string text(size_t{1024} * 1024, 'x');
  const std::string operations = R"([{"op":"add","path":"/x/-","value":")" + text + R"("})" +
                                 repeated(7, R"({"op":"copy","from":"/x/0","path":"/x/-"})");
  EXPECT_EQ(patch(R"({"x":[]})", operations + "]").status, 8);  // as there are names, too
}

TEST(JsonPatchLimits, ManyOperationsOnAHugeDocumentEndAsFailure) {
  const std::string add = R"({"op":"add","path":"/z","value":0})";
  const std::string test = R"({"op":"test","path":"/z","value":0})";
  std::string operations = "[" + add_zeros(10'000) + repeated(450, add + "," + test);
  EXPECT_EQ(patch(kDocument, operations + "]").status, 0);
  for (const char* copy : {"/a", "/b", "/c", "/d", "/e", "/f"})
    operations += R"(,{"op":"copy","from":"","path":")" + std::string(copy) + R"("})";
  EXPECT_EQ(patch(kDocument, operations + "]").status, 0);
  EXPECT_EQ(patch(kDocument, operations + repeated(93, add) + "]").status, 8);
  EXPECT_EQ(patch(kDocument, operations + repeated(93, test) + "]").status, 8);
}

TEST(JsonPatchLimits, WhileTheProcessEndsOnlyOrdinaryPatchesAreDone) {
  const std::string ordinary = "[" + add_zeros(100'000);
  const std::string expensive = ordinary + repeated(50, R"({"op":"add","path":"/y","value":0})");
  EXPECT_EQ(patch(kDocument, expensive + "]").status, 0);
  pq::quit_requested = true;
  EXPECT_EQ(patch(kDocument, ordinary + "]").status, 0);
  EXPECT_EQ(patch(kDocument, expensive + "]").status, 8);
  pq::quit_requested = false;
}

TEST(JsonPatchLimits, NestingDeeperThanStacksAllowEndsAsFailure) {
  const auto add_levels = [](size_t count) {
    const std::string value = std::string(count, '[') + std::string(count, ']');
    return patch(kDocument, R"([{"op":"add","path":"/x","value":)" + value + "}]").status;
  };
  EXPECT_EQ(add_levels(255), 0);  // the document itself is one
  EXPECT_EQ(add_levels(256), 8);
}

TEST(JsonPatchLimits, AThousandOperationsAreTheMost) {
  const std::string append = R"({"op":"add","path":"/csc/gain/-","value":0})";
  EXPECT_EQ(patch(kDocument, "[" + append + repeated(999, append) + "]").status, 0);
  EXPECT_EQ(patch(kDocument, "[" + append + repeated(1000, append) + "]").status, 8);
}

// Covers everything except the library's bugs: a source that is not a text, and more than one
// operation after a test.
TEST(JsonPatchLibrary, GivesTheSameResults) {
  constexpr char kOdd[] =
      R"({"a":{"b":1,"~0":[[1],{"c":"x"}],"a~0b":2,"~":3,"0":{}},"A":[0,1,2,{"b":null}],"":4,"-":[]})";
  constexpr std::array kOperations = {"add", "remove", "replace", "move", "copy", "erase"};
  constexpr std::array kParts = {
      "a", "A", "b", "B",  "~0", "~1", "a~0b", "~01", "~2", "0",  "1",
      "3", "4", "5", "00", "-",  "",   "x~1y", "-1",  "c",  "1x", "18446744073709551617"};
  std::mt19937 random(11);
  const auto pick = [&](const auto& from) { return std::string(from[random() % from.size()]); };
  const auto pointer = [&] {
    std::string text = random() % 20 == 0 ? "a" : "";
    for (size_t parts = random() % 4; parts > 0; --parts)
      text += "/" + pick(kParts);
    return text;
  };
  int applied = 0;
  for (int i = 0; i < 5'000; ++i) {
    std::string operation = R"([{"op":")" + pick(kOperations) + R"(","path":")" + pointer() +
                            R"(","from":")" + pointer() + "\"";
    if (random() % 20 != 0) operation += R"(,"value":{"v":[1,"two"]})";
    operation += "}]";
    const pq::JsonPtr tree(cJSON_Parse(kOdd));
    const pq::JsonPtr patches(cJSON_Parse(operation.c_str()));
    const int status = cJSONUtils_ApplyPatches(tree.get(), patches.get());
    const pq::TextPtr text(cJSON_PrintUnformatted(tree.get()));
    const Outcome outcome = patch(kOdd, operation);
    ASSERT_EQ(outcome.status, status) << operation;
    if (status != 0) continue;
    ASSERT_EQ(outcome.document, text ? text.get() : "nothing") << operation;
    ++applied;
  }
  EXPECT_GT(applied, 500);
}

}  // namespace
