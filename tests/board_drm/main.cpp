// Runs the tests in a private root whose /dev/dri belongs to the simulated device. The board's
// folder is in the same private /dev and vanishes with it.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr char kBoardFolder[] = "/dev/board";

// Its /dev contains only what the tests need: containers often lack some of the usual nodes.
constexpr char kPrivateRoot[] =
    "bwrap --die-with-parent --bind / / --tmpfs /dev --dev-bind /dev/null /dev/null"
    " --dir /dev/board --symlink board/drm/dri /dev/dri ";

// The sanitizer insists on being loaded first, but also works after a library that it does not
// instrument. The loader splits paths at blanks, so a bare name and a search folder are used.
constexpr char kSettings[] =
    "--setenv BOARD_DIR /dev/board --setenv LD_LIBRARY_PATH '" DEVICE_FOLDER
    "' --setenv LD_PRELOAD " DEVICE_LIBRARY
    " --setenv ASAN_OPTIONS \"$ASAN_OPTIONS:verify_asan_link_order=0\" ";

// Returns only if there is no shell.
void run_inside(char** argv) {
  std::string command = std::string("exec ") + kPrivateRoot + kSettings + "\"$0\" \"$@\"";
  std::vector<char*> arguments{const_cast<char*>("sh"), const_cast<char*>("-c"), command.data()};
  while (*argv != nullptr)
    arguments.push_back(*argv++);
  arguments.push_back(nullptr);
  ::execv("/bin/sh", arguments.data());
}

bool is_inside() {
  const char* folder = std::getenv("BOARD_DIR");
  return folder != nullptr && std::string(folder) == kBoardFolder;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<char*> given(argv, argv + argc + 1);
  testing::InitGoogleTest(&argc, argv);
  if (is_inside() || testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  if (std::system((std::string(kPrivateRoot) + "true 2>/dev/null").c_str()) != 0) {
    // CTest recognises a skipped test by these words.
    std::puts("[  SKIPPED ] bubblewrap can't make a private /dev here");
    return 0;
  }
  run_inside(given.data());
  return 1;
}
