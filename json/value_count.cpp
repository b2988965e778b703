#include "json/value_count.h"

#include <cjson/cJSON.h>

namespace pq {
namespace {

// An allocation is rounded up to 16 bytes with its own 8, and never below 32.
constexpr size_t kItemMemory = sizeof(cJSON) + 16;
constexpr size_t kStringMemory = 32;

size_t end_of_string(std::string_view text, size_t at) {
  for (; at < text.size() && text[at] != '"'; ++at) {
    if (text[at] == '\\') ++at;
  }
  return at;
}

}  // namespace

// A value follows a comma or an opening bracket, or is the first.
ValueCount count_values(std::string_view text) {
  ValueCount count{1, 0};
  for (size_t i = 0; i < text.size(); ++i) {
    const char character = text[i];
    if (character == '"') {
      ++count.strings;
      i = end_of_string(text, i + 1);
    } else if (character == ',' || character == '[' || character == '{') {
      ++count.values;
    }
  }
  return count;
}

size_t tree_memory(ValueCount count, size_t text_size) {
  return count.values * kItemMemory + count.strings * kStringMemory +
         (count.strings > 0 ? text_size : 0);
}

}  // namespace pq
