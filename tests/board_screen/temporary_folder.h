// A folder of a test's own, gone with it.
#ifndef TESTS_BOARD_SCREEN_TEMPORARY_FOLDER_H_
#define TESTS_BOARD_SCREEN_TEMPORARY_FOLDER_H_

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = std::filesystem::temp_directory_path() / "screen_test_XXXXXX";
    path_ = mkdtemp(name.data());
  }
  ~TemporaryFolder() { std::filesystem::remove_all(path_); }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }

  void write(const std::filesystem::path& file, const std::string& content) const {
    std::filesystem::create_directories((path_ / file).parent_path());
    std::ofstream(path_ / file, std::ios::binary) << content;
  }
  std::string read(const std::filesystem::path& file) const {
    std::ifstream stream(path_ / file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }

 private:
  std::filesystem::path path_;
};

#endif  // TESTS_BOARD_SCREEN_TEMPORARY_FOLDER_H_
