#include "j2s/json_cursor.h"

#include <cjson/cJSON.h>

#include <array>
#include <cstdlib>
#include <cstring>

namespace j2s {
namespace {

bool is_digit(char c) {
  return c >= '0' && c <= '9';
}

bool is_space(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte != 0 && byte <= ' ';
}

const char* skip_digits(const char* at) {
  return at + std::strspn(at, "0123456789");
}

// Behind the number that begins there; null when none does.
const char* end_of_number(const char* at) {
  if (*at == '-') ++at;
  if (!is_digit(*at)) return nullptr;
  at = *at == '0' ? at + 1 : skip_digits(at);
  if (*at == '.') {
    if (!is_digit(*++at)) return nullptr;
    at = skip_digits(at);
  }
  if ((*at | 0x20) == 'e') {
    ++at;
    if (*at == '+' || *at == '-') ++at;
    if (!is_digit(*at)) return nullptr;
    at = skip_digits(at);
  }
  return at;
}

bool is_printed_as(double number, std::string_view text) {
  cJSON item = {};
  item.type = cJSON_Number;
  cJSON_SetNumberHelper(&item, number);
  std::array<char, 64> printed{};  // more than any number takes
  return cJSON_PrintPreallocated(&item, printed.data(), printed.size(), true) != 0 &&
         text == printed.data();
}

// True if the white space is a line break and that many tabs.
bool begins_line(std::string_view space, int tabs) {
  return !space.empty() && space[0] == '\n' && space.size() == static_cast<size_t>(tabs) + 1 &&
         space.find_first_not_of('\t', 1) == std::string_view::npos;
}

}  // namespace

bool JsonCursor::fail() {
  at_ = "";
  failed_ = true;
  return false;
}

bool JsonCursor::close() {
  ++at_;
  --depth_;
  return false;
}

std::string_view JsonCursor::skip_space() {
  const char* start = at_;
  while (is_space(*at_))
    ++at_;
  return {start, static_cast<size_t>(at_ - start)};
}

bool JsonCursor::open(char bracket) {
  if (*at_ != bracket || depth_ >= kDeepest) return fail();
  ++at_;
  ++depth_;
  return true;
}

// No value ends in an opening bracket, so that one tells the first member from the others.
bool JsonCursor::next_member(std::string_view& name) {
  if (failed_) return false;
  const bool first = at_[-1] == '{';
  std::string_view space = skip_space();
  if (*at_ == '}') {
    note_form(begins_line(space, depth_ - 1));
    return close();
  }
  if (!first) {
    if (*at_ != ',') return fail();
    note_form(space.empty());
    ++at_;
    space = skip_space();
  }
  note_form(begins_line(space, depth_));
  if (!read_string(name)) return false;
  has_index_keys_ = has_index_keys_ || (!name.empty() && name[0] == '@');
  note_form(skip_space().empty());
  if (*at_ != ':') return fail();
  ++at_;
  note_form(skip_space() == "\t");
  return true;
}

bool JsonCursor::next_element() {
  if (failed_) return false;
  const bool first = at_[-1] == '[';
  note_form(skip_space().empty());
  if (*at_ == ']') return close();
  if (first) return true;
  if (*at_ != ',') return fail();
  ++at_;
  note_form(skip_space() == " ");
  return true;
}

bool JsonCursor::read_number(double& number) {
  const char* end = end_of_number(at_);
  if (end == nullptr) return fail();
  number = std::strtod(at_, nullptr);
  at_ = end;
  return true;
}

bool JsonCursor::read_string(std::string_view& text) {
  if (*at_ != '"') return fail();
  const char* start = ++at_;
  while (static_cast<unsigned char>(*at_) >= ' ' && *at_ != '"' && *at_ != '\\')
    ++at_;
  if (*at_ != '"') return fail();
  text = {start, static_cast<size_t>(at_ - start)};
  name_and_text_bytes_ += text.size();
  ++at_;
  return true;
}

bool JsonCursor::skip_word(std::string_view word) {
  if (std::strncmp(at_, word.data(), word.size()) != 0) return fail();
  at_ += word.size();
  return true;
}

bool JsonCursor::skip_number() {
  const char* start = at_;
  double number = 0;
  if (!read_number(number)) return false;
  note_form(as_printed_ && is_printed_as(number, {start, static_cast<size_t>(at_ - start)}));
  return true;
}

bool JsonCursor::skip_object() {
  if (!open('{')) return false;
  std::string_view name;
  while (next_member(name)) {
    if (!skip()) return false;
  }
  return good();
}

bool JsonCursor::skip_array() {
  if (!open('[')) return false;
  read_integers([](int32_t) {});
  while (next_element()) {
    if (!skip()) return false;
    read_integers([](int32_t) {});
  }
  return good();
}

bool JsonCursor::skip() {
  ++values_;
  std::string_view text;
  switch (*at_) {
    case '{':
      return skip_object();
    case '[':
      return skip_array();
    case '"':
      return read_string(text);
    case 't':
      return skip_word("true");
    case 'f':
      return skip_word("false");
    case 'n':
      return skip_word("null");
    default:
      return skip_number();
  }
}

bool JsonCursor::skip(SkippedValue& value) {
  const char* start = at_;
  as_printed_ = true;
  has_index_keys_ = false;
  values_ = 0;
  name_and_text_bytes_ = 0;
  if (!skip()) return false;
  value = {{start, static_cast<size_t>(at_ - start)},
           as_printed_,
           has_index_keys_,
           values_,
           name_and_text_bytes_};
  return true;
}

}  // namespace j2s
