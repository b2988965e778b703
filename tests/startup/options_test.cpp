#include "startup/options.h"

#include <getopt.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

// Parses a command line; null if the daemon must not start with it.
struct Parsed {
  explicit Parsed(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "qxaiq_tool_server");
    std::vector<char*> argv;
    for (std::string& argument : arguments)
      argv.push_back(argument.data());
    argv.push_back(nullptr);
    optind = 0;  // restarts getopt
    valid = parse_options(static_cast<int>(arguments.size()), argv.data(), options);
  }
  Options options;
  bool valid = false;
};

TEST(CommandLine, FrameRateIsClamped) {
  for (const auto& [given, kept] : std::vector<std::pair<std::string, int>>{
           {"0", 1}, {"1", 1}, {"100", 100}, {"101", 100}, {"150", 100}, {"-3", 100}, {"x", 1}}) {
    EXPECT_EQ(Parsed({"-f", given}).options.frame_rate, kept) << given;
    EXPECT_EQ(Parsed({"--frame_rate=" + given}).options.frame_rate, kept) << given;
  }
}

TEST(CommandLine, MmapNumberOutOfRangeBecomesFour) {
  for (const auto& [given, kept] : std::vector<std::pair<std::string, int>>{
           {"3", 4}, {"4", 4}, {"5", 5}, {"200", 200}, {"201", 4}, {"-1", 4}}) {
    EXPECT_EQ(Parsed({"-n", given}).options.mmap_number, kept) << given;
  }
}

TEST(CommandLine, OnlyEnableRtspIsRefused) {
  EXPECT_TRUE(Parsed({"-r", "0"}).valid);
  EXPECT_TRUE(Parsed({"-r", "1"}).valid);
  EXPECT_FALSE(Parsed({"-r", "2"}).valid);
  EXPECT_FALSE(Parsed({"--enable_rtsp", "-1"}).valid);
  EXPECT_TRUE(Parsed({"-D", "--unknown", "-x", "stray"}).valid);
}

TEST(CommandLine, LongFormsWithoutAnArgumentSetZeroAndHelpIsTheHeight) {
  const Options options = Parsed({"--width", "--help", "-m", "3", "-d", "2"}).options;
  EXPECT_EQ(options.width, 0);
  EXPECT_EQ(options.height, 0);
  EXPECT_EQ(options.mode, 3);
  EXPECT_EQ(options.device_id, 2);
}

TEST(CommandLine, TheIqFileHasADefault) {
  EXPECT_EQ(Parsed({}).options.iq_file, "/vendor/etc/camera/qxisp2");
  EXPECT_EQ(Parsed({"-i", "other"}).options.iq_file, "other");
}

}  // namespace
