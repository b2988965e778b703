// The base-parameter store through the library that the daemon calls.
#include <baseparameter_api.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "board/board_files_test.h"

namespace board {
namespace {

class BaseParameters : public BoardFilesTest {
 protected:
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
    if (damage[0] != 'a')
      folder().write("baseparameter/pq_sharp_info", std::string(damage[0] == 's' ? 115 : 117, 'x'));
    std::memset(&sharp, kFill, sizeof(sharp));
    EXPECT_LT(api_.get_pq_sharp_info(&sharp), 0) << damage;
    EXPECT_TRUE(all_bytes_are(sharp, kFill)) << damage;
  }
  for (const char* version : {"", "2", "two zero", "70000 0"}) {
    folder().write("baseparameter/version", version);
    unsigned short first = 7;
    unsigned short second = 7;
    EXPECT_LT(api_.get_version(&first, &second), 0) << version;
    EXPECT_TRUE(first == 7 && second == 7) << version;
  }
  EXPECT_LT(api_.get_aipq_info(nullptr), 0);
}

}  // namespace
}  // namespace board
