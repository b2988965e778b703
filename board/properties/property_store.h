// The board's system properties: one file a property, so that every process of the board, and
// everybody outside it, can read, set and watch them (inotify: IN_MOVED_TO, IN_CREATE) while the
// daemon runs. Any thread of any process may call.
#ifndef BOARD_PROPERTIES_PROPERTY_STORE_H_
#define BOARD_PROPERTIES_PROPERTY_STORE_H_

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace board {

class PropertyStore {
 public:
  // As on Android: with its zero byte a value fits 92 bytes; only read-only ones may be longer.
  static constexpr size_t kMaxValue = 91;

  // folder: holds the files; it must exist before the first set().
  explicit PropertyStore(std::filesystem::path folder) : folder_(std::move(folder)) {}

  // Nothing when the property was never set. A property may be set and empty.
  [[nodiscard]] std::optional<std::string> get(std::string_view name) const;

  // Returns 0; -EINVAL for a name or a value that Android would not take; -EPERM for a read-only
  // property (ro.) that is set already; else a negative errno. On failure nothing changes.
  [[nodiscard]] int set(std::string_view name, std::string_view value) const;

  // An error message for a negative result of set().
  static std::string refusal(std::string_view name, std::string_view value, int result);

  [[nodiscard]] std::map<std::string, std::string> all() const;

  // Starts the board: only properties that persist (persist.) are kept; `defaults`
  // are set where none is kept. Throws std::runtime_error that names a property it cannot set.
  void boot(const std::map<std::string, std::string>& defaults) const;

  // Letters, digits and . _ : @ -, no dot at either end, no two dots in a row.
  static bool name_allowed(std::string_view name);

 private:
  std::filesystem::path folder_;
};

}  // namespace board

#endif  // BOARD_PROPERTIES_PROPERTY_STORE_H_
