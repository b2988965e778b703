// System properties as the daemon calls them (libcutils) and as everybody else finds them.
#include <cutils/properties.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <string>
#include <thread>

#include "board/board_files_test.h"
#include "properties/property_store.h"

namespace board {
namespace {

class Properties : public BoardFilesTest {
 protected:
  static std::string get(const char* name, const char* default_value) {
    std::array<char, PROPERTY_VALUE_MAX> value{};
    const int length = property_get(name, value.data(), default_value);
    EXPECT_EQ(std::string(value.data()).size(), static_cast<size_t>(length));
    return value.data();
  }

  PropertyStore store_{folder() / "properties"};
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

TEST_F(Properties, CanBeSetFromOutside) {
  ASSERT_EQ(0, store_.set("vendor.dump.path", "/data/x"));
  EXPECT_EQ("/data/x", get("vendor.dump.path", ""));
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

TEST_F(Properties, AreReadAsNumbersOfAnyBase) {
  struct Case {
    const char* text;
    int32_t number;
  };
  constexpr int32_t kDefault = 77;
  for (const auto& [text, number] :
       {Case{"", kDefault}, Case{"12", 12}, Case{"-12", -12}, Case{"0x1F", 31}, Case{"010", 8},
        Case{"x", kDefault}, Case{"5 apples", 5}, Case{"2147483647", 2147483647},
        Case{"2147483648", kDefault}, Case{"-2147483648", INT32_MIN},
        Case{"99999999999999999999999", kDefault}}) {
    ASSERT_EQ(0, property_set("vendor.number", text));
    EXPECT_EQ(number, property_get_int32("vendor.number", kDefault)) << text;
  }
  EXPECT_EQ(kDefault, property_get_int32("vendor.no.number", kDefault));
}

TEST_F(Properties, TellWhoWatchesTheirFolder) {
  const int watch = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  ::inotify_add_watch(watch, (folder() / "properties").c_str(), IN_MOVED_TO);
  ASSERT_EQ(0, property_set("vendor.watched", "1"));
  alignas(inotify_event) std::array<char, 512> events{};
  ASSERT_GT(::read(watch, events.data(), events.size()), 0);
  EXPECT_STREQ("vendor.watched", reinterpret_cast<const inotify_event*>(events.data())->name);
  ::close(watch);
}

TEST_F(Properties, AreNeverSeenHalfWritten) {
  const std::string ones(91, '1');
  const std::string twos(60, '2');
  ASSERT_EQ(0, property_set("vendor.busy", ones.c_str()));
  std::atomic<bool> done{false};
  const auto write = [&](const std::string& value) {
    for (int i = 0; i < 200; ++i)
      ASSERT_EQ(0, property_set("vendor.busy", value.c_str()));
  };
  std::thread reader([&] {
    while (!done) {
      const std::string value = get("vendor.busy", "");
      ASSERT_TRUE(value == ones || value == twos) << value;
    }
  });
  std::thread other([&] { write(twos); });
  write(ones);
  other.join();
  done = true;
  reader.join();
  EXPECT_EQ(1u, store_.all().size()) << "no working file is left";
}

TEST_F(Properties, OnlySurviveAPowerCycleWhenTheyPersist) {
  const std::map<std::string, std::string> defaults{{"ro.board.platform", "qxt200"},
                                                    {"persist.vendor.aiqtool.log", "5"}};
  store_.boot(defaults);
  ASSERT_EQ(0, property_set("persist.vendor.aiqtool.log", "3"));
  ASSERT_EQ(0, property_set("vendor.tvinput.qxpq.timeline", "12"));
  store_.boot(defaults);
  EXPECT_EQ((std::map<std::string, std::string>{{"ro.board.platform", "qxt200"},
                                                {"persist.vendor.aiqtool.log", "3"}}),
            store_.all());
  EXPECT_THROW(store_.boot({{"bad name", ""}}), std::runtime_error);
}

}  // namespace
}  // namespace board
