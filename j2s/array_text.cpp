#include "j2s/array_text.h"

#include <charconv>
#include <limits>
#include <type_traits>

#include "j2s/number_types.h"

namespace j2s {
namespace {

// Collects the text "[1, 2, 3]", or "[1,2,3]".
template <typename Integer>
class ArrayText {
 public:
  ArrayText(size_t max_numbers, ArrayForm form)
      : text_(static_cast<char*>(cJSON_malloc(max_numbers * (kMaxDigits + 2) + sizeof "[]"))),
        end_(text_.get()),
        spaced_(form == ArrayForm::kFormattedText) {
    if (end_ != nullptr) *end_++ = '[';
  }

  // False: there was no memory for it.
  [[nodiscard]] bool valid() const { return end_ != nullptr; }

  void add(Integer number) {
    if (end_[-1] != '[') {
      *end_++ = ',';
      if (spaced_) *end_++ = ' ';
    }
    end_ = std::to_chars(end_, end_ + kMaxDigits, number).ptr;
  }

  // Turns `item`, which has no children and no text, into the raw text.
  void move_into(cJSON* item) {
    *end_++ = ']';
    *end_ = '\0';
    item->type = (item->type & ~0xff) | cJSON_Raw;
    item->valuestring = text_.release();
  }

 private:
  // With a sign.
  static constexpr size_t kMaxDigits =
      std::numeric_limits<Integer>::digits10 + (std::is_signed_v<Integer> ? 2 : 1);

  std::unique_ptr<char, pq::Call<cJSON_free>> text_;
  char* end_;  // where the next character goes, null without memory
  bool spaced_;
};

template <typename Number>
JsonPtr numbers_to_text(const std::byte* first, size_t stride, size_t count, ArrayForm form) {
  ArrayText<Number> text(count, form);
  JsonPtr item(cJSON_CreateNull());
  if (!text.valid() || item == nullptr) return nullptr;
  for (size_t i = 0; i < count; ++i)
    text.add(read_as<Number>(first + i * stride));
  text.move_into(item.get());
  return item;
}

// As cJSON decides whether it prints the number as an integer.
bool is_integer(const cJSON* item) {
  return (item->type & 0xff) == cJSON_Number && item->valuedouble == item->valueint;
}

// Counts the elements; 0 when one of them is no integer.
size_t count_integers(const cJSON* array) {
  size_t count = 0;
  for (const cJSON* child = array->child; child != nullptr; child = child->next, ++count) {
    if (!is_integer(child)) return 0;
  }
  return count;
}

bool collapse_integers(cJSON* array, ArrayForm form) {
  const size_t count = count_integers(array);
  if (count == 0) return false;
  ArrayText<int> text(count, form);
  if (!text.valid()) return false;
  for (const cJSON* child = array->child; child != nullptr; child = child->next)
    text.add(child->valueint);
  cJSON_Delete(array->child);
  array->child = nullptr;
  text.move_into(array);
  return true;
}

void collapse_arrays(cJSON* tree, ArrayForm form) {
  if (tree->type == cJSON_Array && collapse_integers(tree, form)) return;
  for (cJSON* child = tree->child; child != nullptr; child = child->next)
    collapse_arrays(child, form);
}

}  // namespace

JsonPtr array_to_text(const Member& array, const std::byte* structure, ArrayForm form) {
  const Member element = first_element(array);
  const std::byte* first = address_of(structure, element);
  if (first == nullptr || !element.is_plain_number()) return nullptr;
  JsonPtr item;
  with_number_type(element.record->type, [&]<typename Number>(Number) {
    if constexpr (std::is_integral_v<Number> && sizeof(Number) <= sizeof(int)) {
      item = numbers_to_text<Number>(first, array.elem_size, array.elem_count, form);
    }
  });
  return item;
}

}  // namespace j2s

void j2s_make_printable(cJSON* json, bool formatted) {
  if (json == nullptr) return;
  j2s::collapse_arrays(json,
                       formatted ? j2s::ArrayForm::kFormattedText : j2s::ArrayForm::kCompactText);
}
