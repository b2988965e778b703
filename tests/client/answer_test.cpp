#include "pqclient/answer.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// What ends the text of a reply.
const std::string kZero(1, '\0');

Answer parse(const std::string& payload) {
  return parse_answer({reinterpret_cast<const std::uint8_t*>(payload.data()), payload.size()});
}

struct Readable {
  const char* name;
  std::string payload;
};

void PrintTo(const Readable& example, std::ostream* out) {
  *out << example.name;
}

class ReadableAnswer : public testing::TestWithParam<Readable> {};

TEST_P(ReadableAnswer, GivesPathPlatformAndTheLastValue) {
  const Answer answer = parse(GetParam().payload);
  EXPECT_EQ(answer.path, "/csc");
  EXPECT_EQ(answer.platform, 2);
  ASSERT_NE(answer.value, nullptr);
  EXPECT_EQ(print_json(*answer.value), "[7]");
}

INSTANTIATE_TEST_SUITE_P(
    , ReadableAnswer,
    testing::Values(
        Readable{"as_the_board_sends_it", R"([{"path":"/csc","platform":2,"value":[7]})" + kZero},
        Readable{"request_had_a_value",
                 R"([{"path":"/csc","value":1,"platform":2,"value":[7]})" + kZero},
        Readable{"with_closing_bracket", R"([{"path":"/csc","platform":2,"value":[7]}])" + kZero},
        Readable{"without_brackets", R"({"path":"/csc","platform":2,"value":[7]})" + kZero},
        Readable{"not_terminated", R"([{"path":"/csc","platform":2,"value":[7]})"},
        Readable{"indented",
                 "[{\n\t"
                 R"("path": "/csc", "platform": 2, "value": [ 7 ] })" +
                     kZero}),
    [](const auto& instance) { return instance.param.name; });

TEST(Answer, WhatIsMissingStaysEmpty) {
  const Answer answer = parse(R"([{"platform":"two"})" + kZero);
  EXPECT_EQ(answer.path, "");
  EXPECT_FALSE(answer.platform.has_value());
  EXPECT_EQ(answer.value, nullptr);
}

TEST(Answer, WithoutAnObjectIsRefused) {
  for (const std::string& payload :
       {std::string(), std::string("["), "[" + kZero + "{}", std::string("[7"),
        std::string(R"([{"path":)"), std::string("[\xFF\xFE")}) {
    EXPECT_THROW(parse(payload), Error) << payload;
  }
}

}  // namespace
}  // namespace pqclient
