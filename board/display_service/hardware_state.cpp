#include "display_service/hardware_state.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <system_error>

namespace board::screen {
namespace {

namespace fs = std::filesystem;

// The store keeps a table for each connector that ever was the primary display; the one that was
// stored last is the one on display. Empty when no table was stored.
fs::path last_stored_table(const fs::path& store) {
  fs::path newest;
  fs::file_time_type newest_time;
  std::error_code no_store;
  for (const auto& connector : fs::directory_iterator(store, no_store)) {
    const fs::path table = connector.path() / "cubic_lut";
    std::error_code no_table;
    const auto time = fs::last_write_time(table, no_table);
    if (no_table || (!newest.empty() && time <= newest_time)) continue;
    newest = table;
    newest_time = time;
  }
  return newest;
}

std::optional<Lut3d> read_table(const fs::path& store) {
  const fs::path file = last_stored_table(store);
  if (file.empty()) return std::nullopt;
  cubic_lut_data record{};
  std::ifstream stream(file, std::ios::binary);
  const bool whole =
      static_cast<bool>(stream.read(reinterpret_cast<char*>(&record), sizeof(record)));
  std::optional<Lut3d> lut = whole ? from_record(record) : std::nullopt;
  if (!lut) {
    (void)std::fprintf(stderr,
                       "display_service: %s holds no table of %zu points, shown without it\n",
                       file.c_str(), Lut3d::kPoints);
  }
  return lut;
}

std::optional<PatternColour> read_pattern(const fs::path& file) {
  std::ifstream stream(file);
  int red = 0;
  int green = 0;
  int blue = 0;
  if (!(stream >> red >> green >> blue)) return std::nullopt;
  const auto level = [](int value) { return static_cast<uint8_t>(std::clamp(value, 0, 255)); };
  return PatternColour{level(red), level(green), level(blue)};
}

}  // namespace

DisplayState read_hardware_state(const fs::path& board_folder) {
  DisplayState state;
  state.lut = read_table(board_folder / "baseparameter");
  state.pattern = read_pattern(board_folder / "screen" / "pattern");
  return state;
}

}  // namespace board::screen
