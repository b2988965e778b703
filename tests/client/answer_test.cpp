#include "pqclient/answer.h"

#include <gtest/gtest.h>

#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// The terminator of a reply's text.
const std::string kZero(1, '\0');

Answer parse(const std::string& payload) {
  return parse_answer({reinterpret_cast<const std::uint8_t*>(payload.data()), payload.size()});
}

TEST(Answer, GivesPathPlatformAndTheLastValue) {
  for (const std::string& payload : {
           R"([{"path":"/csc","platform":2,"value":[7]})" + kZero,  // as the board sends it
           R"([{"path":"/csc","value":1,"platform":2,"value":[7]})" + kZero,
           R"([{"path":"/csc","platform":2,"value":[7]}])" + kZero,
           R"({"path":"/csc","platform":2,"value":[7]})" + kZero,
           std::string(R"([{"path":"/csc","platform":2,"value":[7]})"),  // not terminated
           "[{\n\t" + std::string(R"("path": "/csc", "platform": 2, "value": [ 7 ] })") + kZero,
       }) {
    const Answer answer = parse(payload);
    EXPECT_EQ(answer.path, "/csc") << payload;
    EXPECT_EQ(answer.platform, 2) << payload;
    ASSERT_NE(answer.value, nullptr) << payload;
    EXPECT_EQ(print_json(*answer.value), "[7]") << payload;
  }
}

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
