// Fixture for the board's libraries: they find their files in a temporary folder, as they find them
// in /board on a board.
#ifndef TESTS_BOARD_BOARD_FILES_TEST_H_
#define TESTS_BOARD_BOARD_FILES_TEST_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/temporary_folder.h"

class BoardFilesTest : public testing::Test {
 protected:
  BoardFilesTest() {
    ::setenv("BOARD_DIR", folder().path().c_str(), 1);
    for (const char* name : {"properties", "baseparameter"}) {
      std::filesystem::remove_all(folder().path() / name);
      std::filesystem::create_directories(folder().path() / name);
    }
  }

  // One for the whole program: a library may look its folder up only once.
  static const TemporaryFolder& folder() {
    static const TemporaryFolder temporary;
    return temporary;
  }
};

#endif  // TESTS_BOARD_BOARD_FILES_TEST_H_
