#include "j2s/values.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>

#include "base/memory.h"
#include "base/saturate.h"
#include "j2s/number_types.h"
#include "j2s/report.h"
#include "j2s/tables.h"

namespace j2s {
namespace {

constexpr const char* kNoSuchConstant = "INVALID";

// As cJSON_GetNumberValue, which takes two calls for each of thousands.
double number_of(const cJSON* item) {
  const bool is_number = (item->type & 0xff) == cJSON_Number;
  return is_number ? item->valuedouble : std::numeric_limits<double>::quiet_NaN();
}

const j2s_enum& enum_of(const j2s_ctx& ctx, const Member& member) {
  static constexpr j2s_enum kNone = {};
  const int index = member.record->enum_ref;
  return index >= 0 && index < ctx.enum_count ? ctx.enum_table[index] : kNone;
}

std::span<const j2s_enum_value> constants_of(const j2s_ctx& ctx, const j2s_enum& enumeration) {
  if (enumeration.value_count < 1) return {};
  const j2s_enum_value* first = ctx.enum_value_table + enumeration.first_value;
  return {first, first + enumeration.value_count};
}

}  // namespace

double read_number(const std::byte* structure, const Member& member) {
  const std::byte* address = address_of(structure, member);
  double value = 0;
  if (address == nullptr) return value;
  with_number_type(member.record->type, [&]<typename Number>(Number) {
    value = static_cast<double>(read_as<Number>(address));
  });
  return value;
}

void store_number(std::byte* structure, const Member& member, double value) {
  std::byte* address = address_of(structure, member);
  if (address == nullptr) return;
  with_number_type(member.record->type,
                   [&]<typename Number>(Number) { store_as<Number>(address, value); });
}

void store_text(std::byte* structure, const Member& member, std::string_view text) {
  std::byte* address = address_of(structure, member);
  if (address == nullptr) return;
  if (member.is_char_array()) {
    // A text that fills the array leaves no terminator; readers of the array know its size.
    const size_t length = std::min(text.size(), member.elem_count);
    std::memcpy(address, text.data(), length);
    std::memset(address + length, 0, member.elem_count - length);
    return;
  }
  char* copy = pq::noting_strndup(text.data(), text.size());
  std::free(read_pointer<char>(structure, member));
  std::memcpy(address, &copy, sizeof copy);
}

void store_numbers(std::byte* structure, const Member& array, const cJSON* first) {
  std::byte* address = address_of(structure, array);
  if (address == nullptr) return;
  with_number_type(array.record->type, [&]<typename Number>(Number) {
    const cJSON* item = first;
    for (size_t i = 0; i < array.elem_count && item != nullptr; ++i, item = item->next) {
      store_as<Number>(address + i * array.elem_size, number_of(item));
    }
  });
}

int read_length(const j2s_ctx& ctx, const std::byte* structure, const Member& array) {
  if (find_obj(ctx, array.len_obj) == nullptr) return 0;
  return pq::saturate<int32_t>(read_number(structure, Member(ctx, array.len_obj)));
}

const char* enum_name(const j2s_ctx& ctx, const Member& member, int32_t value) {
  const j2s_enum& enumeration = enum_of(ctx, member);
  for (const j2s_enum_value& constant : constants_of(ctx, enumeration)) {
    if (constant.value == value) return constant.name;
  }
  report_warning("j2s_enum_get_name", "unknown enum value: %d for %s", value, enumeration.name);
  return kNoSuchConstant;
}

int32_t enum_value(const j2s_ctx& ctx, const Member& member, const char* name) {
  const j2s_enum& enumeration = enum_of(ctx, member);
  for (const j2s_enum_value& constant : constants_of(ctx, enumeration)) {
    if (std::strcmp(constant.name, name) == 0) return constant.value;
  }
  report_warning("j2s_enum_get_value", "unknown enum name: %s for %s", name, enumeration.name);
  return -1;
}

const char* first_enum_name(const j2s_ctx& ctx, const Member& member) {
  const auto constants = constants_of(ctx, enum_of(ctx, member));
  return constants.empty() ? kNoSuchConstant : constants[0].name;
}

cJSON* create_number(double value) {
  cJSON* item = cJSON_CreateNumber(0);
  set_number(item, value);
  return item;
}

void set_number(cJSON* item, double value) {
  if (item == nullptr) return;
  item->valuedouble = value;
  item->valueint = pq::saturate<int>(value);  // NaN prints as null, whatever stands here
}

}  // namespace j2s

void j2s_obj_set_value(j2s_ctx* ctx, int obj_index, void* ptr, double value) {
  if (j2s::find_obj(*ctx, obj_index) == nullptr) return;
  j2s::store_number(static_cast<std::byte*>(ptr), j2s::Member(*ctx, obj_index), value);
}
