// Reads JSON text in place, value by value, without a tree. Knows no tables.
//
// Accepts JSON as RFC 8259 has it, with bytes 1 to 32 as white space, up to 64 levels deep and
// without escapes or control characters in strings, so that a text's bytes are its value. cJSON
// accepts all of that too and finds the same values in it. The cursor fails at anything else, even
// if cJSON may accept it; the caller then asks cJSON.
//
// It also finds out whether a value is written exactly as cJSON_Print would write it, and can be
// copied as it is.
#ifndef J2S_JSON_CURSOR_H_
#define J2S_JSON_CURSOR_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace j2s {

// A value that was passed over.
struct SkippedValue {
  std::string_view text;
  bool as_printed = false;      // cJSON_Print would write the same bytes at this depth
  bool has_index_keys = false;  // members whose names begin with "@" are somewhere in it
  size_t values = 0;            // with itself
  size_t name_and_text_bytes = 0;
};

// All functions that return bool: false after a failure, and from then on.
class JsonCursor {
 public:
  // Stands before the first value of `text`, which a 0 has to follow somewhere, and which has to
  // outlive the cursor. depth: the levels around the value where it would be printed.
  explicit JsonCursor(const char* text, int depth = 0) : at_(text), depth_(depth) { skip_space(); }

  [[nodiscard]] bool good() const { return !failed_; }

  // Where the next value begins, or the last one ended.
  [[nodiscard]] const char* position() const { return at_; }
  [[nodiscard]] int depth() const { return depth_; }

  // Enters the object ('{') or array ('[') that comes next.
  bool open(char bracket);

  // In an object: goes to the next member's value, which has to be read or skipped. Also false when
  // there is none, behind the closing bracket then.
  bool next_member(std::string_view& name);

  // The same for an array's elements.
  bool next_element();

  // Between elements of an array: passes those that follow, as long as they are integers of at most
  // nine digits, and calls use(int32_t) with each. The others come by next_element.
  template <typename Use>
  void read_integers(Use use);

  bool read_number(double& number);
  bool read_string(std::string_view& text);

  // Passes one value of any kind.
  bool skip();
  bool skip(SkippedValue& value);

 private:
  static constexpr int kDeepest = 64;
  static constexpr ptrdiff_t kMaxDigits = 9;  // an int32_t holds all numbers of so many

  bool fail();
  bool close();
  std::string_view skip_space();
  const char* behind_comma(const char* at);
  void note_form(bool as_printed) { as_printed_ = as_printed_ && as_printed; }
  bool skip_word(std::string_view word);
  bool skip_number();
  bool skip_object();
  bool skip_array();

  const char* at_;
  int depth_;
  bool failed_ = false;
  bool as_printed_ = true;
  bool has_index_keys_ = false;
  size_t values_ = 0;
  size_t name_and_text_bytes_ = 0;
};

// Nearly all of a document is integers: this loop is where the time goes.
template <typename Use>
void JsonCursor::read_integers(Use use) {
  if (failed_) return;
  const char* at = at_;
  size_t count = 0;
  if (at[-1] != '[') at = behind_comma(at);
  while (at != nullptr) {
    const bool negative = *at == '-';
    const char* const digits = at + (negative ? 1 : 0);
    uint32_t magnitude = 0;
    const char* end = digits;
    for (uint32_t digit = 0; (digit = static_cast<uint32_t>(*end) - '0') <= 9; ++end)
      magnitude = magnitude * 10 + digit;
    if (end == digits || end - digits > kMaxDigits || *end == '.' || (*end | 0x20) == 'e') break;
    // 07 is none, and -0 is not what is printed for it.
    if (*digits == '0' && (end - digits > 1 || negative)) break;
    const auto number = static_cast<int32_t>(magnitude);
    use(negative ? -number : number);
    ++count;
    at_ = end;
    at = behind_comma(end);
  }
  values_ += count;
}

// Null where no comma is.
inline const char* JsonCursor::behind_comma(const char* at) {
  if (*at != ',') return nullptr;
  if (at[1] == ' ') return at + 2;
  as_printed_ = false;
  return at + 1;
}

}  // namespace j2s

#endif  // J2S_JSON_CURSOR_H_
