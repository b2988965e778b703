#include "properties/property_store.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include "files/files.h"

namespace board {
namespace {

// A file's name has at most 255 bytes (NAME_MAX); Android itself sets no limit.
constexpr size_t kMaxName = 255;

bool name_character(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
         c == '_' || c == ':' || c == '@' || c == '-';
}

}  // namespace

bool PropertyStore::name_allowed(std::string_view name) {
  return !name.empty() && name.size() <= kMaxName && !name.starts_with('.') &&
         !name.ends_with('.') && name.find("..") == std::string_view::npos &&
         std::all_of(name.begin(), name.end(), name_character);
}

std::optional<std::string> PropertyStore::get(std::string_view name) const {
  if (!name_allowed(name)) return std::nullopt;
  return read_file(folder_ / name);
}

int PropertyStore::set(std::string_view name, std::string_view value) const {
  if (!name_allowed(name)) return -EINVAL;
  if (name.starts_with("ro.")) {
    const int result = create_file(folder_ / name, value);
    return result == -EEXIST ? -EPERM : result;
  }
  if (value.size() > kMaxValue) return -EINVAL;
  return replace_file(folder_ / name, value);
}

std::string PropertyStore::refusal(std::string_view name, std::string_view value, int result) {
  std::ostringstream text;
  text << "cannot set the property " << name << " to \"" << value << "\": ";
  switch (result) {
    case -EINVAL:
      text << "names have letters, digits and . _ : @ - (no dot at the ends, no two in a row), "
              "values at most "
           << kMaxValue << " bytes";
      break;
    case -EPERM:
      text << "a read-only property (ro.) can be set only once";
      break;
    default:
      text << std::strerror(-result);
  }
  return text.str();
}

std::map<std::string, std::string> PropertyStore::all() const {
  std::map<std::string, std::string> properties;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    const std::string name = entry.path().filename();
    if (const auto value = get(name)) properties[name] = *value;
  }
  return properties;
}

void PropertyStore::boot(const std::map<std::string, std::string>& defaults) const {
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    if (!entry.path().filename().string().starts_with("persist.")) {
      std::filesystem::remove(entry.path());
    }
  }
  for (const auto& [name, value] : defaults) {
    if (name.starts_with("persist.") && get(name)) continue;
    if (const int result = set(name, value); result != 0) {
      throw std::runtime_error(refusal(name, value, result));
    }
  }
}

}  // namespace board
