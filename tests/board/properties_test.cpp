// System properties through the daemon's library (libcutils) and through the store.
#include <cutils/properties.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "properties/property_store.h"
#include "support/temporary_folder.h"

namespace board {
namespace {

class Properties : public testing::Test {
 protected:
  Properties() {
    ::setenv("BOARD_DIR", folder().path().c_str(), 1);
    std::filesystem::remove_all(folder().path() / "properties");
    std::filesystem::create_directory(folder().path() / "properties");
  }
  // One folder for the whole program: the library may look it up only once.
  static const TemporaryFolder& folder() {
    static const TemporaryFolder temporary;
    return temporary;
  }
  static std::string get(const char* name, const char* default_value) {
    std::array<char, PROPERTY_VALUE_MAX> value{};
    const int length = property_get(name, value.data(), default_value);
    EXPECT_EQ(std::string(value.data()).size(), static_cast<size_t>(length));
    return value.data();
  }

  PropertyStore store_{folder().path() / "properties"};
};

TEST_F(Properties, GiveTheDefaultForMissingAndEmpty) {
  EXPECT_EQ("default", get("vendor.missing", "default"));
  EXPECT_EQ("", get("vendor.missing", nullptr));
  EXPECT_EQ(0, property_set("vendor.empty", ""));
  EXPECT_EQ("default", get("vendor.empty", "default"));
  EXPECT_EQ(0, property_set("vendor.null", nullptr));
  EXPECT_EQ("", store_.get("vendor.null"));
  EXPECT_EQ(0, property_set("vendor.set", "a value"));
  EXPECT_EQ("a value", get("vendor.set", "default"));
}

TEST_F(Properties, RefuseOtherNamesThanAndroid) {
  for (const char* name :
       {"", ".", "..", ".a", "a.", "a..b", "a/b", "../a", "a b", "a=b", "\xc3\xa4"}) {
    EXPECT_LT(property_set(name, "1"), 0) << name;
    EXPECT_EQ("default", get(name, "default")) << name;
  }
  const std::string longest(255, 'x');
  for (const char* name : {"a", "persist.vendor.a_b:c@d-e.F9", "-", longest.c_str()}) {
    EXPECT_EQ(0, property_set(name, "1")) << name;
  }
  EXPECT_LT(property_set((longest + "x").c_str(), "1"), 0);
}

TEST_F(Properties, HaveShortValuesUnlessReadOnly) {
  const std::string fits(91, 'v');
  EXPECT_EQ(0, property_set("vendor.long", fits.c_str()));
  EXPECT_LT(property_set("vendor.long", (fits + "w").c_str()), 0);
  EXPECT_EQ(fits, get("vendor.long", ""));
  EXPECT_EQ(0, property_set("ro.long", (fits + "w").c_str()));
  EXPECT_EQ(fits, get("ro.long", "")) << "cut to the caller's buffer";
}

TEST_F(Properties, ThatAreReadOnlyAreSetOnce) {
  EXPECT_EQ(0, property_set("ro.board.platform", "qxt100"));
  EXPECT_EQ(-EPERM, property_set("ro.board.platform", "qxt200"));
  EXPECT_EQ("qxt100", get("ro.board.platform", ""));
}

}  // namespace
}  // namespace board
