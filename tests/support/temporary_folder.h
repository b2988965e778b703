// A folder for one test, removed at its end.
#ifndef TESTS_SUPPORT_TEMPORARY_FOLDER_H_
#define TESTS_SUPPORT_TEMPORARY_FOLDER_H_

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <system_error>

// Empty if there is no such file.
inline std::string text_of(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "pq-test-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) std::abort();
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  // Takes paths relative to the folder; missing parent folders are created.
  [[nodiscard]] std::string read(const std::filesystem::path& file) const {
    return text_of(path_ / file);
  }
  void write(const std::filesystem::path& file, const std::string& text) const {
    std::filesystem::create_directories((path_ / file).parent_path());
    std::ofstream(path_ / file, std::ios::binary) << text;
  }

 private:
  std::filesystem::path path_;
};

#endif  // TESTS_SUPPORT_TEMPORARY_FOLDER_H_
