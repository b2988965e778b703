// Runs the tests in a root of their own, where /dev/dri is the simulated device's. The board's
// folder lies in the same private /dev and vanishes with it.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

constexpr char kBoardFolder[] = "/dev/board";

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr ? value : "";
}

// The sanitizer wants to be loaded first, but works as well after a library that it doesn't watch.
std::string address_sanitizer_options() {
  return environment("ASAN_OPTIONS") + ":verify_asan_link_order=0";
}

// Its /dev holds no more than is needed: containers often lack some of the usual nodes.
std::vector<std::string> private_root() {
  return {"bwrap",     "--die-with-parent", "--bind",    "/",         "/",     "--tmpfs",
          "/dev",      "--dev-bind",        "/dev/null", "/dev/null", "--dir", kBoardFolder,
          "--symlink", "board/drm/dri",     "/dev/dri"};
}

// Does not return when the program could be started.
void run_program(std::vector<std::string> arguments) {
  std::vector<char*> pointers;
  pointers.reserve(arguments.size() + 1);
  for (std::string& argument : arguments)
    pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  ::execvp(pointers[0], pointers.data());
}

bool can_have_private_root() {
  const pid_t child = ::fork();
  if (child == 0) {
    std::vector<std::string> arguments = private_root();
    arguments.emplace_back("true");
    run_program(arguments);
    ::_exit(1);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return status == 0;
}

// The words by which CTest knows a skipped test; a test environment that skips says others.
int skip_everything() {
  std::puts("[  SKIPPED ] bubblewrap can't make a private /dev here");
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> settings = {
      "--setenv", "BOARD_DIR",    kBoardFolder,
      "--setenv", "LD_PRELOAD",   DEVICE_LIBRARY,
      "--setenv", "ASAN_OPTIONS", address_sanitizer_options()};
  std::vector<std::string> arguments = private_root();
  arguments.insert(arguments.end(), settings.begin(), settings.end());
  arguments.insert(arguments.end(), argv, argv + argc);

  testing::InitGoogleTest(&argc, argv);
  const bool inside = environment("BOARD_DIR") == kBoardFolder;
  if (!inside && !testing::GTEST_FLAG(list_tests)) {
    if (!can_have_private_root()) return skip_everything();
    run_program(arguments);
    std::perror("bwrap");
    return 1;
  }
  return RUN_ALL_TESTS();
}
