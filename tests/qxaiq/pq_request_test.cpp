#include "qxaiq/pq_request.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <string>

#include "base/quit.h"
#include "json/patch.h"

namespace {

std::string print(const cJSON* tree) {
  const pq::TextPtr text(tree != nullptr ? cJSON_PrintUnformatted(tree) : nullptr);
  return text ? text.get() : "nothing";
}

// Any text may come before, inside and after it.
TEST(PqRequest, TheOperationIsWhatStandsBetweenTheBrackets) {
  constexpr std::string_view kMarks = "[[{{}}]],1 \\";
  constexpr std::array kWords = {"\"a\"", "\"p\"", "\"path\":", "{\"path\":1}", "[{}]",
                                 "[[]",   "-2e",   "null",      "\xEF\xBB\xBF"};
  std::mt19937 random(3);
  int parsed = 0;
  for (int i = 0; i < 100'000; ++i) {
    std::string text = random() % 4 == 0 ? "" : "[";
    for (auto pieces = random() % 6; pieces > 0; --pieces)
      if (random() % 2 == 0) {
        text += kMarks[random() % kMarks.size()];
      } else {
        text += kWords[random() % kWords.size()];
      }
    if (random() % 4 != 0) text += "]";
    const std::string between = text.size() < 2 ? "" : text.substr(1, text.size() - 2);
    const pq::JsonPtr expected = pq::parse_json(between);
    pq::PqRequest request(text);
    ASSERT_EQ(print(request.operation()), print(expected.get())) << text;
    ASSERT_EQ(print(request.take_patch().get()), print(pq::parse_json(text).get())) << text;
    parsed += expected ? 1 : 0;
  }
  EXPECT_GT(parsed, 10'000);
}

TEST(PqRequest, OfMoreThanAMillionValuesIsNone) {
  std::string text = R"([{"path":"/csc","pad":[0)";
  for (int i = 0; i < 1'000'000; ++i)
    text += ",0";
  pq::PqRequest request(text + "]}]");
  EXPECT_FALSE(request.path_names("csc"));
  EXPECT_EQ(request.take_patch(), nullptr);
}

// So a saved document need not be read back.
TEST(PrintJson, WhatPrintsCanBeReadAgain) {
  const std::string deep = std::string(255, '[') + std::string(255, ']');
  const std::array<std::string, 10> values = {"1e999",        "-1e999",
                                              "1e-320",       "12345678901234567890",
                                              "\"\\u0000x\"", "\"\\u001f\\\"\\\\\x7f\xff\"",
                                              "[]",           "{\"\":{}}",
                                              "[1,2,3.5]",    deep};
  const std::array<std::string, 7> operations = {R"("op":"replace","path":"")",
                                                 R"("op":"add","path":"/\u0001~1")",
                                                 R"("op":"add","path":"/list/-")",
                                                 R"("op":"copy","from":"/list","path":"/x")",
                                                 R"("op":"move","from":"/x","path":"/list/0")",
                                                 R"("op":"test","path":"/x")",
                                                 R"("op":"remove","path":"")"};
  int printed = 0;
  for (const std::string& stored : values) {
    for (const std::string& value : values) {
      for (const std::string& operation : operations) {
        pq::JsonPtr document = pq::parse_json(R"({"list":[1,2],"x":)" + stored + "}");
        const std::string patch = "[{" + operation + R"(,"value":)" + value + "}]";
        pq::apply_patch(document.get(), pq::parse_json(patch), pq::quit_requested);
        const pq::TextPtr text = pq::print_json(document.get());
        if (!text) continue;
        EXPECT_TRUE(pq::parse_json(text.get())) << text.get();
        ++printed;
      }
    }
  }
  EXPECT_EQ(printed, 600);  // all but the removed ones
}

}  // namespace
