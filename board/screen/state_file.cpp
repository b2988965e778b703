#include "screen/state_file.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <stdexcept>
#include <vector>

#include <cjson/cJSON.h>

#include "files/files.h"

namespace board::screen {
namespace {

template <auto Function>
struct Call {
  void operator()(auto* pointer) const { Function(pointer); }
};
using JsonPtr = std::unique_ptr<cJSON, Call<cJSON_Delete>>;
using TextPtr = std::unique_ptr<char, Call<cJSON_free>>;

// Adds an item to an object, which owns it from then on.
cJSON* add(cJSON* object, const char* key, JsonPtr item) {
  if (!cJSON_AddItemToObject(object, key, item.get())) throw std::bad_alloc();
  return item.release();
}

template <typename Number>
void add_list(cJSON* object, const char* key, std::span<const Number> values) {
  // Number by number: cJSON makes no list from an empty vector's null pointer.
  cJSON* list = add(object, key, JsonPtr(cJSON_CreateArray()));
  for (const Number value : values)
    cJSON_AddItemToArray(list, cJSON_CreateNumber(value));
}

std::vector<uint16_t> lut_values(const Lut3d& lut) {
  std::vector<uint16_t> values;
  values.reserve(lut.points.size() * 3);
  for (const Rgb16& point : lut.points)
    values.insert(values.end(), {point.red, point.green, point.blue});
  return values;
}

template <typename Number>
std::vector<Number> read_list(const cJSON* object, const char* key) {
  std::vector<Number> values;
  const cJSON* item = nullptr;
  cJSON_ArrayForEach(item, cJSON_GetObjectItemCaseSensitive(object, key)) {
    values.push_back(static_cast<Number>(item->valueint));
  }
  return values;
}

int read_control(const cJSON* controls, const char* key) {
  const cJSON* item = cJSON_GetObjectItemCaseSensitive(controls, key);
  return cJSON_IsNumber(item) ? item->valueint : 50;
}

std::optional<Lut3d> read_lut(const cJSON* root) {
  const auto values = read_list<uint16_t>(root, "lut");
  Lut3d lut;
  if (values.size() != lut.points.size() * 3) return std::nullopt;
  for (size_t i = 0; i < lut.points.size(); ++i) {
    lut.points[i] = {values[3 * i], values[3 * i + 1], values[3 * i + 2]};
  }
  return lut;
}

std::optional<PatternColour> read_pattern(const cJSON* root) {
  const auto values = read_list<uint8_t>(root, "pattern");
  if (values.size() != 3) return std::nullopt;
  return PatternColour{values[0], values[1], values[2]};
}

}  // namespace

std::filesystem::path state_file(const std::filesystem::path& board_folder) {
  return board_folder / "screen" / "current";
}

void write_state(const DisplayState& state, const std::filesystem::path& file) {
  const JsonPtr root(cJSON_CreateObject());
  cJSON* controls = add(root.get(), "controls", JsonPtr(cJSON_CreateObject()));
  cJSON_AddNumberToObject(controls, "brightness", state.controls.brightness);
  cJSON_AddNumberToObject(controls, "contrast", state.controls.contrast);
  cJSON_AddNumberToObject(controls, "saturation", state.controls.saturation);
  cJSON_AddNumberToObject(controls, "hue", state.controls.hue);
  if (state.pattern) {
    const auto [red, green, blue] = *state.pattern;
    add_list<uint8_t>(root.get(), "pattern", std::vector{red, green, blue});
  }
  cJSON* gamma = add(root.get(), "gamma", JsonPtr(cJSON_CreateObject()));
  add_list<uint16_t>(gamma, "red", state.gamma.red);
  add_list<uint16_t>(gamma, "green", state.gamma.green);
  add_list<uint16_t>(gamma, "blue", state.gamma.blue);
  if (state.lut) add_list<uint16_t>(root.get(), "lut", lut_values(*state.lut));

  const TextPtr text(cJSON_PrintUnformatted(root.get()));
  if (text == nullptr) throw std::bad_alloc();
  replace_file_or_throw(file, text.get());
}

DisplayState read_state(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const JsonPtr root(cJSON_ParseWithLength(text.data(), text.size()));
  const cJSON* controls = cJSON_GetObjectItemCaseSensitive(root.get(), "controls");
  const cJSON* gamma = cJSON_GetObjectItemCaseSensitive(root.get(), "gamma");
  if (controls == nullptr || gamma == nullptr) {
    throw std::runtime_error(file.string() + " holds no display state");
  }
  DisplayState state;
  state.controls = {read_control(controls, "brightness"), read_control(controls, "contrast"),
                    read_control(controls, "saturation"), read_control(controls, "hue")};
  state.gamma = {read_list<uint16_t>(gamma, "red"), read_list<uint16_t>(gamma, "green"),
                 read_list<uint16_t>(gamma, "blue")};
  state.lut = read_lut(root.get());
  state.pattern = read_pattern(root.get());
  return state;
}

}  // namespace board::screen
