#include "pqclient/check.h"

#include <gtest/gtest.h>

#include <ostream>

#include "pqclient/error.h"

namespace pqclient {
namespace {

struct Typed {
  const char* name;
  const char* path;
  std::string text;
  const char* json;  // null: refused
};

void PrintTo(const Typed& example, std::ostream* out) {
  *out << example.name;
}

class TypedValue : public testing::TestWithParam<Typed> {};

TEST_P(TypedValue, IsTakenOnlyWhenTheBoardCanHoldIt) {
  const Target target = parse_target(GetParam().path);
  if (GetParam().json != nullptr) {
    EXPECT_EQ(print_json(*parse_value(target, GetParam().text)), GetParam().json);
  } else {
    EXPECT_THROW(parse_value(target, GetParam().text), Error);
  }
}

constexpr const char* kFlag = "sharp/sharpEnable";
constexpr const char* kEntry = "acm/acmTableGainYbyY/584";
constexpr const char* k32 = "0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1";
constexpr const char* k32InBrackets =
    "[0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1,2,3,4,5,6,7,8,9,0,1]";
constexpr const char* kPeaking = "sharp/sharpPeakingGain";

INSTANTIATE_TEST_SUITE_P(
    , TypedValue,
    testing::Values(Typed{"flag", kFlag, "1", "1"}, Typed{"flag_above", kFlag, "2", nullptr},
                    Typed{"slider", "csc/cscHue", "511", "511"},
                    Typed{"slider_above", "csc/cscHue", "512", nullptr},
                    Typed{"int16_lowest", kEntry, "-32768", "-32768"},
                    Typed{"int16_below", kEntry, "-32769", nullptr},
                    Typed{"uint32_highest", kPeaking, "4294967295", "4294967295"},
                    Typed{"uint32_above", kPeaking, "4294967296", nullptr},
                    Typed{"fraction", kPeaking, "1.5", nullptr},
                    Typed{"trailing_letters", kPeaking, "15px", nullptr},
                    Typed{"text_for_a_number", kPeaking, "\"1\"", nullptr},
                    Typed{"nothing", kPeaking, "", nullptr},
                    Typed{"mode", "csc/cscMode", "HIGH_QUALITY_MODE", "\"HIGH_QUALITY_MODE\""},
                    Typed{"unknown_mode", "csc/cscMode", "high", nullptr},
                    Typed{"any_name", "csc/name", "a \"b\"", R"("a \"b\"")"},
                    Typed{"number_for_a_table", "gamma/gammaTab_R", "1", nullptr},
                    Typed{"table_without_brackets", "dci/dciWeight_low", k32, k32InBrackets},
                    Typed{"short_table", "dci/dciWeight_low", "[1,2]", nullptr},
                    Typed{"section", "csc", "{}", nullptr}),
    [](const auto& instance) { return instance.param.name; });

TEST(Section, KeepsOddValuesThatTheBoardHasAlready) {
  const JsonPtr before = parse_json(
      R"({"name":"","cscEnable":5,"cscMode":"","cscBrightness":600,"cscHue":1,"cscContrast":1,)"
      R"("cscSaturation":1,"cscRGain":1,"cscGGain":1,"cscBGain":1})");
  const JsonPtr asked = copy_json(*before);
  const Section& csc = *find_section("csc");
  EXPECT_NO_THROW(check_section(csc, *asked, *before));
  cJSON_SetNumberValue(cJSON_GetObjectItem(asked.get(), "cscBrightness"), 601);
  EXPECT_THROW(check_section(csc, *asked, *before), Error);
  EXPECT_THROW(check_section(csc, *parse_json("{}"), *before), Error);
}

}  // namespace
}  // namespace pqclient
