#include "j2s/values.h"

#include <cstring>
#include <span>

#include "j2s/report.h"
#include "j2s/saturate.h"
#include "j2s/tables.h"

namespace j2s {
namespace {

constexpr const char* kNoSuchConstant = "INVALID";

template <typename Number>
double read_as(const std::byte* address) {
  Number number = {};
  std::memcpy(&number, address, sizeof number);
  return static_cast<double>(number);
}

template <typename Number>
void store_as(std::byte* address, Number number) {
  std::memcpy(address, &number, sizeof number);
}

const j2s_enum& enum_of(const j2s_ctx& ctx, const Member& member) {
  static constexpr j2s_enum kNone = {};
  const int index = member.record->enum_ref;
  return index >= 0 && index < ctx.enum_count ? ctx.enum_table[index] : kNone;
}

std::span<const j2s_enum_value> constants_of(const j2s_ctx& ctx, const j2s_enum& enumeration) {
  if (enumeration.value_count < 1) return {};
  return {ctx.enum_value_table + enumeration.first_value,
          static_cast<size_t>(enumeration.value_count)};
}

}  // namespace

double read_number(const std::byte* structure, const Member& member) {
  const std::byte* address = address_of(structure, member);
  if (address == nullptr) return 0;
  switch (member.record->type) {
    case J2S_TYPE_INT8:
      return read_as<int8_t>(address);
    case J2S_TYPE_UINT8:
      return read_as<uint8_t>(address);
    case J2S_TYPE_INT16:
      return read_as<int16_t>(address);
    case J2S_TYPE_UINT16:
      return read_as<uint16_t>(address);
    case J2S_TYPE_INT32:
      return read_as<int32_t>(address);
    case J2S_TYPE_UINT32:
      return read_as<uint32_t>(address);
    case J2S_TYPE_INT64:
      return read_as<int64_t>(address);
    case J2S_TYPE_UINT64:
      return read_as<uint64_t>(address);
    case J2S_TYPE_FLOAT:
      return read_as<float>(address);
    case J2S_TYPE_DOUBLE:
      return read_as<double>(address);
    default:
      return 0;
  }
}

void store_number(std::byte* structure, const Member& member, double value) {
  std::byte* address = address_of(structure, member);
  if (address == nullptr) return;
  switch (member.record->type) {
    // The narrow types keep the low bits of 32: tools see 300 come back as 44.
    case J2S_TYPE_INT8:
    case J2S_TYPE_UINT8:
      return store_as(address, static_cast<uint8_t>(saturate<int32_t>(value)));
    case J2S_TYPE_INT16:
    case J2S_TYPE_UINT16:
      return store_as(address, static_cast<uint16_t>(saturate<int32_t>(value)));
    case J2S_TYPE_INT32:
      return store_as(address, saturate<int32_t>(value));
    case J2S_TYPE_UINT32:
      return store_as(address, saturate<uint32_t>(value));
    case J2S_TYPE_INT64:
      return store_as(address, saturate<int64_t>(value));
    case J2S_TYPE_UINT64:
      return store_as(address, saturate<uint64_t>(value));
    case J2S_TYPE_FLOAT:
      return store_as(address, static_cast<float>(value));
    case J2S_TYPE_DOUBLE:
      return store_as(address, value);
    default:
      return;
  }
}

int read_length(const j2s_ctx& ctx, const std::byte* structure, const Member& array) {
  if (find_obj(ctx, array.len_obj) == nullptr) return 0;
  return saturate<int32_t>(read_number(structure, Member(ctx, array.len_obj)));
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
  return constants.empty() ? kNoSuchConstant : constants.front().name;
}

cJSON* create_number(double value) {
  cJSON* item = cJSON_CreateNumber(0);
  set_number(item, value);
  return item;
}

void set_number(cJSON* item, double value) {
  if (item == nullptr) return;
  item->valuedouble = value;
  item->valueint = saturate<int>(value);  // NaN prints as null, whatever stands here
}

}  // namespace j2s

void j2s_obj_set_value(j2s_ctx* ctx, int obj_index, void* ptr, double value) {
  if (j2s::find_obj(*ctx, obj_index) == nullptr) return;
  j2s::store_number(static_cast<std::byte*>(ptr), j2s::Member(*ctx, obj_index), value);
}
