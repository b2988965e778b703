// The base-parameter store through the library that the daemon calls.
#include <baseparameter_api.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>

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

  baseparameter_api api_;
};

template <typename Record>
bool all_bytes_are(const Record& record, unsigned char value) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(&record);
  return std::all_of(bytes, bytes + sizeof(record), [&](auto byte) { return byte == value; });
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
  EXPECT_EQ(0, api_.set_saturation(14, 0, 52));
  EXPECT_EQ(0, api_.set_hue(14, 0, 53));
  EXPECT_EQ(0, api_.set_hue(11, 1, 65535));
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

}  // namespace
}  // namespace board
