#include "json/patch.h"

#include <cjson/cJSON_Utils.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <ctime>
#include <random>
#include <string>
#include <vector>

#include "j2s/shallow_tree.h"
#include "json/limits.h"
#include "json/tree_size.h"
#include "json/value_count.h"
#include "support/slack.h"

namespace {

struct Outcome {
  int status;
  std::string document;  // compact
};

const std::atomic<bool> kGoOn = false;

int apply(cJSON* document, const std::string& operations) {
  return pq::apply_patch(document, pq::parse_json(operations), kGoOn);
}

Outcome patch_tree(const pq::JsonPtr& tree, const std::string& operations) {
  const int status = apply(tree.get(), operations);
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
        Case{"no_json", R"([{"op":"remove","path":"/csc")", 1, ""},
        Case{"no_patch", R"({"op":"remove","path":"/csc"})", 1, ""},
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

// With the library's status, and never with 0.
TEST(JsonPatchLimits, AMissingDocumentFails) {
  EXPECT_EQ(apply(nullptr, "[]"), 1);
  EXPECT_EQ(apply(nullptr, R"([{"op":"add","path":"","value":1}])"), 1);
  EXPECT_EQ(apply(nullptr, R"([{"op":"remove","path":""}])"), 1);
  EXPECT_EQ(apply(nullptr, R"([{"op":"test","path":"/a","value":1}])"), 1);
  EXPECT_EQ(apply(nullptr, R"([{"op":"copy","path":"/a","from":""}])"), 5);
  EXPECT_EQ(apply(nullptr, R"([{"op":"add","path":"/a","value":1}])"), 9);
  EXPECT_EQ(apply(nullptr, R"([{"op":"remove","path":"/a"}])"), 13);
}

TEST(JsonPatchLimits, DoublingByCopyEndsAsFailure) {
  std::string operations = "[";
  for (int i = 0; i < 40; ++i) {
    operations += R"({"op":"copy","from":"","path":"/x)" + std::to_string(i) + R"("},)";
  }
  operations.back() = ']';
  EXPECT_EQ(patch(kDocument, operations).status, 8);
}

// With a comma in front of each.
std::string repeated(size_t times, const std::string& item) {
  std::string list;
  for (size_t i = 0; i < times; ++i)
    list += "," + item;
  return list;
}

std::string array_of(size_t count, const std::string& item) {
  return count == 0 ? "[]" : "[" + item + repeated(count - 1, item) + "]";
}

std::string add(const std::string& path, const std::string& value) {
  return R"({"op":"add","path":")" + path + R"(","value":)" + value + "}";
}

int status_of(const std::string& operations) {
  return patch(kDocument, "[" + operations + "]").status;
}

// Text counts as it is printed: tabs and escapes too.
TEST(JsonPatchLimits, ADocumentThatPrintsLongerThanItMayEndsAsFailure) {
  const std::string text(pq::kMaxDocumentSize / 2, 'x');
  EXPECT_EQ(status_of(add("/x", "[]") + "," + add("/x/-", "\"" + text + "\"")), 0);
  const std::string copy = R"(,{"op":"copy","from":"/x/0","path":"/x/-"})";
  EXPECT_EQ(status_of(add("/x", "[]") + "," + add("/x/-", "\"" + text + "\"") + copy), 8);

  std::string escapes;
  while (escapes.size() < pq::kMaxDocumentSize * 2 / 3)
    escapes += "\\u0001";  // six bytes here and in the document, one in memory
  EXPECT_EQ(status_of(add("/x", "[]") + "," + add("/x/-", "\"" + escapes + "\"")), 0);
  EXPECT_EQ(status_of(add("/x", "[]") + "," + add("/x/-", "\"" + escapes + "\"") + copy), 8);

  const auto nested = [](size_t levels, size_t members) {
    std::string value = "{" + repeated(members, R"("":0)").substr(1) + "}";
    for (size_t i = 0; i < levels; ++i)
      value = R"({"":)" + value + "}";
    return value;
  };
  EXPECT_EQ(status_of(add("/x", nested(50, 60'000))), 0);
  EXPECT_EQ(status_of(add("/x", nested(250, 60'000))), 8);
}

TEST(JsonPatchLimits, MoreItemsThanADocumentMayHaveEndAsFailure) {
  const pq::JsonPtr document = pq::parse_json(kDocument);
  const size_t room = pq::kMaxItems - pq::measure(document.get(), 0)->items - 1;
  EXPECT_EQ(status_of(add("/x", array_of(room, "0"))), 0);
  EXPECT_EQ(status_of(add("/x", array_of(room, "0")) + R"(,{"op":"remove","path":"/dci"},)" +
                      add("/y", "1") + "," + add("/csc", "1")),
            0);
  EXPECT_EQ(status_of(add("/x", array_of(room + 1, "0"))), 8);
}

// A test is paid for by the request that holds its value, however large the tested item is.
TEST(JsonPatchLimits, AThousandOperationsFitOnAnAipqDocument) {
  const std::string table =
      add("/x", array_of(12, R"({"on":1,"t":)" + array_of(2'000, "1023") + "}"));
  const std::string replace = R"({"op":"replace","path":"/x/11/t/1999","value":7})";
  EXPECT_EQ(status_of(table + repeated(999, replace)), 0);
  EXPECT_EQ(status_of(table + repeated(999, R"({"op":"test","path":"/x/11/on","value":1})")), 0);
  EXPECT_EQ(status_of(table + repeated(1'000, replace)), 8);
}

// A request is refused by this count, before it takes memory.
TEST(ValueCount, SeesValuesAndNotTheInsideOfTexts) {
  EXPECT_EQ(pq::count_values(R"([{"op":"add","value":[1,2,{"a":null}]}])").values, 8U);
  EXPECT_EQ(pq::count_values(R"(["a,[{\",","b"])").values, 3U);
  EXPECT_EQ(pq::count_values(R"(["a,[{\",","b"])").strings, 2U);
  EXPECT_EQ(pq::count_values("\"unfinished \\").values, 1U);
}

TEST(JsonPatchLimits, APatchStopsBeforeItsNextOperation) {
  const std::atomic<bool> stop = true;
  const pq::JsonPtr document = pq::parse_json(kDocument);
  const pq::JsonPtr before = pq::parse_json(kDocument);
  EXPECT_EQ(
      pq::apply_patch(document.get(), pq::parse_json(R"([{"op":"remove","path":"/csc"}])"), stop),
      pq::kPatchStopped);
  EXPECT_TRUE(cJSON_Compare(document.get(), before.get(), true));
}

TEST(JsonPatchLimits, NestingDeeperThanStacksAllowEndsAsFailure) {
  const auto add_levels = [](size_t count) {
    return status_of(add("/x", std::string(count, '[') + std::string(count, ']')));
  };
  EXPECT_EQ(add_levels(255), 0);  // the document itself is one
  EXPECT_EQ(add_levels(256), 8);
  const std::string deep = add("/x", std::string(200, '[') + std::string(200, ']'));
  EXPECT_EQ(status_of(deep + R"(,{"op":"copy","from":"/x","path":"/x/0/0/0/0"})"), 0);
  std::string far = "/x";
  for (int i = 0; i < 60; ++i)
    far += "/0";
  EXPECT_EQ(status_of(deep + R"(,{"op":"copy","from":"/x","path":")" + far + "\"}"), 8);
}

// --- What a patch may cost, as a time
// --------------------------------------------------------------

struct Expensive {
  const char* name;
  std::string document;
  std::string operation;
};

std::string member_of_each(size_t count, const std::string& prefix, const std::string& value) {
  std::string members = "{";
  for (size_t i = 0; i < count; ++i)
    members += "\"" + prefix + std::to_string(i) + "\":" + value + ",";
  members.back() = '}';
  return members;
}

// One or two operations as often as a request may hold them: 1,000 operations, 8 MiB.
std::string as_often_as_possible(const std::string& operations) {
  const bool two = operations.find("},{\"op\"") != std::string::npos;
  const size_t most =
      std::min<size_t>(two ? 500 : 1'000, pq::kMaxDocumentSize / (operations.size() + 1));
  return array_of(std::max<size_t>(most, 1), operations);
}

// The worst requests known: each repeats what costs most.
std::vector<Expensive> expensive_requests() {
  const auto tables = [](size_t length) {
    const std::string table = array_of(12, R"({"t":)" + array_of(length, "1") + "}");
    return R"({"dci":)" + table + R"(,"acm":)" + table + "}";
  };
  const std::string ordinary = tables(2'300);
  const std::string small = tables(20);
  const std::string wide = R"({"w":)" + array_of(120'000, "1") + R"(,"v":0})";
  const std::string named = R"({"w":)" + member_of_each(60'000, std::string(60, 'n'), "1") + "}";
  const std::string few_named = R"({"w":)" + member_of_each(4'000, std::string(60, 'n'), "1") + "}";
  const std::string text = R"({"t":")" + std::string(3'000'000, 'x') + "\"}";
  const std::string copy = R"({"op":"copy","from":"/dci","path":"/x"})";
  const std::string copy_all = R"({"op":"copy","from":"","path":"/x"},{"op":"remove","path":"/x"})";
  const std::string move =
      R"({"op":"move","from":"/dci","path":"/acm/0/q"},{"op":"move","from":"/acm/0/q","path":"/dci"})";
  const std::string test = R"({"op":"test","path":"/dci","value":)";
  return {
      {"copies_over_a_copy", ordinary, copy},
      {"growing_copies", ordinary, R"({"op":"copy","from":"/dci","path":"/dci/0/q"})"},
      {"copies_of_all", ordinary, copy_all},
      {"small_copies", small, copy_all},
      {"copies_of_a_text", text, R"({"op":"copy","from":"/t","path":"/u"})"},
      {"moves", ordinary, move},
      {"last_elements", wide, R"({"op":"replace","path":"/w/119999","value":2})"},
      {"insertions_at_the_end", wide, R"({"op":"add","path":"/w/119998","value":2})"},
      {"appended_by_index", wide,
       R"({"op":"remove","path":"/w/119999"},{"op":"add","path":"/w/119999","value":2})"},
      {"similar_names", named,
       R"({"op":"replace","path":"/w/)" + std::string(60, 'N') + R"(59999","value":2})"},
      {"tests", small, test + array_of(12, R"({"t":)" + array_of(20, "1") + "}") + "}"},
      {"tests_of_many_names", few_named,
       R"({"op":"test","path":"/w","value":)" + member_of_each(4'000, std::string(60, 'N'), "1") +
           "}"},
  };
}

std::chrono::nanoseconds processor_time() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

// Four times what the model allows: for slower machines than the one it was measured on.
constexpr std::chrono::milliseconds kMaxTime{200};

TEST(JsonPatchCost, IsATimeThatTheWorstRequestsKeepTo) {
  for (const Expensive& request : expensive_requests()) {
    const pq::JsonPtr document = pq::parse_json(request.document);
    pq::JsonPtr operations = pq::parse_json(as_often_as_possible(request.operation));
    ASSERT_TRUE(document && operations) << request.name;
    const std::chrono::nanoseconds before = processor_time();
    const int status = pq::apply_patch(document.get(), std::move(operations), kGoOn);
    const auto taken =
        std::chrono::duration_cast<std::chrono::milliseconds>(processor_time() - before);
    EXPECT_LT(taken, kMaxTime + kSlack) << request.name;
    EXPECT_TRUE(status == 0 || status == pq::kPatchTooLarge) << request.name << ": " << status;
  }
}

// Everything but what the library gets wrong: a source that is no text, and more than one operation
// after a test. A test sorts the document there, and changes nothing here.
TEST(JsonPatchLibrary, GivesTheSameResults) {
  constexpr char kOdd[] =
      R"({"a":{"b":1,"~0":[[1],{"c":"x"}],"a~0b":2,"~":3,"0":{}},"A":[0,1,2,{"b":null}],"":4,"-":[]})";
  constexpr std::array kOperations = {"add", "remove", "replace", "move", "copy", "test", "erase"};
  constexpr std::array kParts = {
      "a", "A", "b", "B",  "~0", "~1", "a~0b", "~01", "~2", "0",  "1",
      "3", "4", "5", "00", "-",  "",   "x~1y", "-1",  "c",  "1x", "18446744073709551617"};
  constexpr std::array kValues = {
      R"({"v":[1,"two"]})",    R"({"v":[1,"two"]})", "3", "1", R"("x")", "{}",
      R"([0,1,2,{"B":null}])", R"([[1],{"C":"x"}])"};
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
    if (random() % 20 != 0) operation += R"(,"value":)" + pick(kValues);
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
