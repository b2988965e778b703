#include "pqclient/check.h"

#include <gtest/gtest.h>

#include <string>

#include "pqclient/error.h"

namespace pqclient {
namespace {

constexpr const char* kFlag = "sharp/sharpEnable";
constexpr const char* kEntry = "acm/acmTableGainYbyY/584";
constexpr const char* k32 = "0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1";
constexpr const char* k32InBrackets =
    "[0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1]";
constexpr const char* kPeaking = "sharp/sharpPeakingGain";

struct Typed {
  const char* path;
  std::string text;
  const char* json;  // null: refused
};

TEST(TypedValue, IsTakenOnlyWhenTheBoardCanHoldIt) {
  for (const auto& [path, text, json] : {
           Typed{kFlag, "1", "1"},
           Typed{kFlag, "2", nullptr},
           Typed{"csc/cscHue", "511", "511"},
           Typed{"csc/cscHue", "512", nullptr},
           Typed{kEntry, "-32768", "-32768"},
           Typed{kEntry, "-32769", nullptr},
           Typed{kPeaking, "4294967295", "4294967295"},
           Typed{kPeaking, "4294967296", nullptr},
           Typed{kPeaking, "1.5", nullptr},
           Typed{kPeaking, "15px", nullptr},
           Typed{kPeaking, "\"1\"", nullptr},
           Typed{kPeaking, "", nullptr},
           Typed{"csc/cscMode", "HIGH_QUALITY_MODE", "\"HIGH_QUALITY_MODE\""},
           Typed{"csc/cscMode", "high", nullptr},
           Typed{"csc/name", "a \"b\"", R"("a \"b\"")"},
           Typed{"gamma/gammaTab_R", "1", nullptr},
           Typed{"dci/dciWeight_low", k32, k32InBrackets},
           Typed{"dci/dciWeight_low", "[1,2]", nullptr},
           Typed{"csc", "{}", nullptr},
       }) {
    const Target target = parse_target(path);
    if (json != nullptr) {
      EXPECT_EQ(print_json(*parse_value(target, text)), json) << path;
    } else {
      EXPECT_THROW(parse_value(target, text), Error) << path << " " << text;
    }
  }
}

TEST(Section, KeepsOddValuesThatTheBoardHasAlready) {
  const JsonPtr before = parse_json(
      R"({"name":"","cscEnable":5,"cscMode":"","cscBrightness":600,"cscHue":1,"cscContrast":1,)"
      R"("cscSaturation":1,"cscRGain":1,"cscGGain":1,"cscBGain":1})");
  const JsonPtr asked = copy_json(*before);
  const Target csc = parse_target("csc");
  EXPECT_NO_THROW(check_section(csc, *asked, *before));
  cJSON_SetNumberValue(cJSON_GetObjectItem(asked.get(), "cscBrightness"), 601);
  EXPECT_THROW(check_section(csc, *asked, *before), Error);
  EXPECT_THROW(check_section(csc, *parse_json("{}"), *before), Error);
}

}  // namespace
}  // namespace pqclient
