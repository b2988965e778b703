#include "screen/state_file.h"

#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "files/files.h"

namespace board::screen {
namespace {

constexpr uint32_t kMark = 0x31736373;  // changes whenever the layout does

struct Record {
  uint32_t mark;
  PictureControls controls;
  uint32_t gamma_entries;
  uint16_t has_lut;
  uint8_t has_pattern;
  PatternColour pattern;
  Lut3d lut;
};
static_assert(std::is_trivially_copyable_v<Record>);

void append(std::string& bytes, const void* data, size_t size) {
  bytes.append(static_cast<const char*>(data), size);
}

}  // namespace

std::filesystem::path state_file(const std::filesystem::path& board_folder) {
  return board_folder / "screen" / "current";
}

void write_state(const ScreenState& state, const std::filesystem::path& file) {
  const GammaTable& gamma = state.gamma;
  const Record record{kMark,
                      state.controls,
                      static_cast<uint32_t>(gamma.red.size()),
                      state.lut.has_value(),
                      state.pattern.has_value(),
                      state.pattern.value_or(PatternColour{}),
                      state.lut.value_or(Lut3d{})};
  std::string bytes;
  append(bytes, &record, sizeof(record));
  for (const auto* channel : {&gamma.red, &gamma.green, &gamma.blue})
    append(bytes, channel->data(), channel->size() * sizeof(uint16_t));
  replace_file_or_throw(file, bytes);
}

ScreenState read_state(const std::filesystem::path& file) {
  const auto bytes = read_file(file);
  if (!bytes) throw std::runtime_error("cannot read " + file.string());
  Record record{};
  if (bytes->size() >= sizeof(record)) std::memcpy(&record, bytes->data(), sizeof(record));
  const size_t channel_size = size_t{record.gamma_entries} * sizeof(uint16_t);
  if (record.mark != kMark || bytes->size() != sizeof(record) + 3 * channel_size) {
    throw std::runtime_error(file.string() + " does not contain a display state");
  }
  ScreenState state;
  state.controls = record.controls;
  if (record.has_lut != 0) state.lut = record.lut;
  if (record.has_pattern != 0) state.pattern = record.pattern;
  const char* entries = bytes->data() + sizeof(record);
  for (auto* channel : {&state.gamma.red, &state.gamma.green, &state.gamma.blue}) {
    channel->resize(record.gamma_entries);
    if (channel_size > 0) std::memcpy(channel->data(), entries, channel_size);
    entries += channel_size;
  }
  return state;
}

}  // namespace board::screen
