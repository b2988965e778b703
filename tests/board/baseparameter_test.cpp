// The base-parameter store through the library that the daemon calls.
#include <baseparameter_api.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <vector>

#include "baseparameter/panel_defaults.h"
#include "baseparameter/parameter_store.h"
#include "board/board_files_test.h"

namespace board {
namespace {

class BaseParameters : public BoardFilesTest {
 protected:
  std::string content(const char* file) const {
    std::ifstream stream(folder() / "baseparameter" / file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
  }
  void write(const char* file, const std::string& text) const {
    std::ofstream(folder() / "baseparameter" / file, std::ios::binary) << text;
  }

  ParameterStore store_{folder() / "baseparameter"};
  baseparameter_api api_;
};

template <typename Record>
bool all_bytes_are(const Record& record, unsigned char value) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&record);
  return std::all_of(bytes, bytes + sizeof(record), [&](auto byte) { return byte == value; });
}

TEST_F(BaseParameters, OfANewBoardComeBackAsSeeded) {
  const PanelDefaults defaults = panel_defaults(2, 0);
  store_.seed(defaults);
  unsigned short first = 9;
  unsigned short second = 9;
  auto tuning = std::make_unique<pq_tuning_info>();
  pq_sharp_info sharp{};
  aipq_info ai{};
  ASSERT_EQ(0, api_.get_version(&first, &second));
  ASSERT_EQ(0, api_.get_pq_tuning_info(tuning.get()));
  ASSERT_EQ(0, api_.get_pq_sharp_info(&sharp));
  ASSERT_EQ(0, api_.get_aipq_info(&ai));
  EXPECT_EQ(2, first);
  EXPECT_EQ(0, second);
  EXPECT_EQ(0, std::memcmp(tuning.get(), &defaults.tuning, sizeof(*tuning)));
  EXPECT_EQ(0, std::memcmp(&sharp, &defaults.sharp, sizeof(sharp)));
  EXPECT_EQ(0, std::memcmp(&ai, &defaults.ai, sizeof(ai)));
}

TEST_F(BaseParameters, StayUntouchedWhenTheStoreHasNoneOrAnotherSize) {
  constexpr unsigned char kFill = 0xA5;
  pq_sharp_info sharp;
  for (const char* damage : {"absent", "short", "long"}) {
    if (damage[0] != 'a') write("pq_sharp_info", std::string(damage[0] == 's' ? 115 : 117, 'x'));
    std::memset(&sharp, kFill, sizeof(sharp));
    EXPECT_LT(api_.get_pq_sharp_info(&sharp), 0) << damage;
    EXPECT_TRUE(all_bytes_are(sharp, kFill)) << damage;
  }
  for (const char* version : {"", "2", "two zero", "70000 0"}) {
    write("version", version);
    unsigned short first = 7;
    unsigned short second = 7;
    EXPECT_LT(api_.get_version(&first, &second), 0) << version;
    EXPECT_TRUE(first == 7 && second == 7) << version;
  }
  EXPECT_LT(api_.get_aipq_info(nullptr), 0);
}

TEST_F(BaseParameters, KeepEachConnectorsValuesApart) {
  EXPECT_EQ(0, api_.set_brightness(14, 0, 50));
  EXPECT_EQ(0, api_.set_contrast(14, 0, 51));
  EXPECT_EQ(0, api_.set_saturation(14, 0, 52));
  EXPECT_EQ(0, api_.set_hue(14, 0, 53));
  EXPECT_EQ(0, api_.set_hue(11, 1, 65535));
  EXPECT_EQ("50", content("14-0/brightness"));
  EXPECT_EQ("51", content("14-0/contrast"));
  EXPECT_EQ("52", content("14-0/saturation"));
  EXPECT_EQ("53", content("14-0/hue"));
  EXPECT_EQ("65535", content("11-1/hue"));

  auto lut = std::make_unique<cubic_lut_data>();
  lut->size = 4913;
  lut->values[sizeof(lut->values) - 1] = 0xEE;
  EXPECT_EQ(0, api_.set_cubic_lut_data(14, 0, lut.get()));
  EXPECT_EQ(content("14-0/cubic_lut"),
            std::string(reinterpret_cast<const char*>(lut.get()), sizeof(*lut)));
}

// What the document that is made from them has to show to be trusted.
TEST(PanelDefaults, HaveTablesThatATestCanTellApart) {
  const auto tuning = panel_defaults(2, 0).tuning;
  for (size_t i = 1; i < 1024; ++i) {
    ASSERT_GE(tuning.gamma_tab_r[i], tuning.gamma_tab_r[i - 1]);
    ASSERT_GE(tuning.gamma_tab_g[i], tuning.gamma_tab_g[i - 1]);
    ASSERT_GE(tuning.gamma_tab_b[i], tuning.gamma_tab_b[i - 1]);
  }
  EXPECT_EQ(65535, tuning.gamma_tab_r[1023]);
  const std::set<int> middles{tuning.gamma_tab_r[512], tuning.gamma_tab_g[512],
                              tuning.gamma_tab_b[512]};
  EXPECT_EQ(3u, middles.size());
}

TEST(PanelDefaults, HaveRawTablesOutOfRangeInTheFirstVersionOnly) {
  const auto in_range = [](const int16_t value) { return value >= 0 && value <= 127; };
  const auto first_row_in_range = [&](const pq_tuning_info& tuning) {
    bool all = true;
    for (size_t i = 0; i < 9; ++i) {
      all = all && in_range(tuning.acm_table_gain_y_by_y[i]) &&
            in_range(tuning.acm_table_gain_s_by_y[i]);
    }
    return all;
  };
  EXPECT_FALSE(first_row_in_range(panel_defaults(2, 0).tuning));
  EXPECT_TRUE(first_row_in_range(panel_defaults(3, 1).tuning));
  EXPECT_EQ(128, panel_defaults(2, 0).tuning.acm_table_delta_y_by_h[32]);
  EXPECT_EQ(3, panel_defaults(2, 1).tuning.acm_table_delta_y_by_h[32]);
}

TEST(PanelDefaults, HaveNoTwoSharpeningOrAiValuesAlike) {
  const auto [version, tuning, sharp, ai] = panel_defaults(2, 0);
  std::vector<uint32_t> values{
      sharp.peaking_gain,     sharp.shoot_ctrl_over,       sharp.shoot_ctrl_under,
      ai.natural.usm_gain,    ai.natural.usm_ctrl_over,    ai.natural.usm_ctrl_under,
      ai.natural.fusion_gain, ai.natural.fusion_ctrl_over, ai.natural.fusion_ctrl_under,
      ai.textual.usm_gain,    ai.textual.usm_ctrl_over,    ai.textual.usm_ctrl_under,
      ai.textual.fusion_gain, ai.textual.fusion_ctrl_over, ai.textual.fusion_ctrl_under,
      ai.aisr_fix_model_idx};
  for (size_t i = 0; i < 4; ++i) {
    for (const uint32_t value :
         {sharp.coring_ctrl_ratio[i], sharp.coring_ctrl_zero[i], sharp.coring_ctrl_thrd[i],
          sharp.gain_ctrl_pos[i], sharp.limit_ctrl_pos0[i], sharp.limit_ctrl_pos1[i],
          sharp.limit_ctrl_bnd_pos[i], sharp.limit_ctrl_ratio[i]}) {
      values.push_back(value);
    }
  }
  const std::set<uint32_t> distinct(values.begin(), values.end());
  EXPECT_EQ(values.size(), distinct.size());
  EXPECT_FALSE(distinct.contains(0));
}

}  // namespace
}  // namespace board
