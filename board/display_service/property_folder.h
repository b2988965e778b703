// The board's system properties as files: one a property, named as it, holding its value.
#ifndef BOARD_DISPLAY_SERVICE_PROPERTY_FOLDER_H_
#define BOARD_DISPLAY_SERVICE_PROPERTY_FOLDER_H_

#include <filesystem>
#include <string>
#include <string_view>

namespace board::screen {

class PropertyFolder {
 public:
  explicit PropertyFolder(const std::filesystem::path& board_folder)
      : folder_(board_folder / "properties") {}

  const std::filesystem::path& path() const { return folder_; }

  // Empty for a property that was never set.
  std::string get(const std::string& name) const;

  // Throws std::runtime_error when the file cannot be written.
  void set(const std::string& name, std::string_view value) const;

 private:
  std::filesystem::path folder_;
};

}  // namespace board::screen

#endif  // BOARD_DISPLAY_SERVICE_PROPERTY_FOLDER_H_
