#include "json/tree_size.h"

#include "json/limits.h"

namespace pq {
namespace {

constexpr size_t kMaxNumberText = 24;  // "-1.2345678901234567e-308"

size_t number_text(const cJSON* number) {
  if (number->valuedouble != static_cast<double>(number->valueint)) return kMaxNumberText;
  size_t digits = number->valueint < 0 ? 2 : 1;
  for (int rest = number->valueint / 10; rest != 0; rest /= 10)
    ++digits;
  return digits;
}

// With quotation marks. Control characters without a letter of their own become "\u0001".
size_t quoted_text(std::string_view text) {
  constexpr std::string_view kEscapedByALetter = "\"\\\b\f\n\r\t";
  size_t size = text.size() + 2;
  for (const char character : text) {
    if (static_cast<unsigned char>(character) >= ' ' && character != '"' && character != '\\') {
      continue;
    }
    size += kEscapedByALetter.find(character) != std::string_view::npos ? 1 : 5;
  }
  return size;
}

std::string_view view(const char* text) {
  return text != nullptr ? text : "";
}

// The brackets are those of an empty array or object; what is inside is counted with the children.
size_t own_text(const cJSON* item, size_t depth) {
  constexpr std::string_view kBraces = "{\n}";
  constexpr std::string_view kBrackets = "[]";
  constexpr std::string_view kMaxWord = "false";
  switch (item->type & 0xff) {
    case cJSON_Object:
      return kBraces.size() + depth;
    case cJSON_Array:
      return kBrackets.size();
    case cJSON_Number:
      return number_text(item);
    case cJSON_String:
      return quoted_text(view(item->valuestring));
    case cJSON_Raw:
      return view(item->valuestring).size();  // as it is printed
    default:
      return kMaxWord.size();
  }
}

// A raw item says how many values its text holds (j2s/shallow_tree.h).
size_t own_items(const cJSON* item) {
  return cJSON_IsRaw(item) && item->valueint > 0 ? static_cast<size_t>(item->valueint) : 1;
}

bool add(TreeSize& size, const cJSON* item, size_t depth) {
  if (depth >= kMaxDepth) return false;
  size += {own_items(item), own_text(item, depth)};
  if (!fits(size)) return false;
  for (const cJSON* child = item->child; child != nullptr; child = child->next) {
    size.text += frame_size(item, view(child->string), depth + 1);
    if (!add(size, child, depth + 1)) return false;
  }
  return true;
}

}  // namespace

bool fits(TreeSize size) {
  return size.items <= kMaxItems && size.text <= kMaxDocumentSize;
}

std::optional<TreeSize> measure(const cJSON* item, size_t depth) {
  TreeSize size;
  if (!add(size, item, depth)) return std::nullopt;
  return size;
}

size_t frame_size(const cJSON* parent, std::string_view name, size_t depth) {
  constexpr std::string_view kInArray = ", ";
  constexpr std::string_view kInObject = ":\t,\n";
  if (cJSON_IsArray(parent)) return kInArray.size();
  return depth + quoted_text(name) + kInObject.size();
}

}  // namespace pq
