#include "baseparameter/parameter_store.h"

#include <cerrno>
#include <cstring>
#include <sstream>
#include <string>
#include <system_error>

#include "baseparameter/panel_defaults.h"
#include "files/files.h"

namespace board {
namespace {

template <typename Record>
std::string_view bytes_of(const Record& record) {
  return {reinterpret_cast<const char*>(&record), sizeof(record)};
}

}  // namespace

void ParameterStore::seed(const PanelDefaults& defaults) const {
  replace_file_or_throw(folder_ / "version", std::to_string(defaults.version[0]) + ' ' +
                                                 std::to_string(defaults.version[1]));
  replace_file_or_throw(folder_ / "pq_tuning_info", bytes_of(defaults.tuning));
  replace_file_or_throw(folder_ / "pq_sharp_info", bytes_of(defaults.sharp));
  replace_file_or_throw(folder_ / "aipq_info", bytes_of(defaults.ai));
}

std::optional<std::pair<uint16_t, uint16_t>> ParameterStore::version() const {
  std::istringstream text(read_file(folder_ / "version").value_or(""));
  uint16_t first = 0;
  uint16_t second = 0;
  if (!(text >> first >> second)) return std::nullopt;
  return std::pair(first, second);
}

int ParameterStore::read_record(std::string_view name, std::span<std::byte> record) const {
  const auto content = read_file(folder_ / name);
  if (!content) return -ENOENT;
  if (content->size() != record.size()) return -EIO;
  std::memcpy(record.data(), content->data(), record.size());
  return 0;
}

int ParameterStore::set_value(unsigned int type, unsigned int index, std::string_view name,
                              uint16_t value) const {
  const auto folder = connector_folder(type, index);
  return replace_file(folder / name, std::to_string(value));
}

int ParameterStore::set_cubic_lut(unsigned int type, unsigned int index,
                                  const cubic_lut_data& lut) const {
  return replace_file(connector_folder(type, index) / "cubic_lut", bytes_of(lut));
}

// Made when something is first stored for the connector; a failure shows in the write that follows.
std::filesystem::path ParameterStore::connector_folder(unsigned int type,
                                                       unsigned int index) const {
  auto folder = folder_ / (std::to_string(type) + '-' + std::to_string(index));
  std::error_code ignored;
  std::filesystem::create_directories(folder, ignored);
  return folder;
}

}  // namespace board
