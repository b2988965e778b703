// Structure to JSON.

#include <atomic>
#include <cstdlib>
#include <cstring>

#include "base/memory.h"
#include "base/saturate.h"
#include "j2s/array_text.h"
#include "j2s/report.h"
#include "j2s/tables.h"
#include "j2s/values.h"
#include "j2s/walk.h"

namespace j2s {
namespace {

// While on, nothing is read from structures.
std::atomic<bool> template_mode = false;

// Adds under a key, or drops the item: a member that can't be added is left out.
void add_member(cJSON* object, const char* name, JsonPtr item) {
  if (cJSON_AddItemToObject(object, name, item.get())) (void)item.release();
}

JsonPtr text_to_json(const Member& member, const std::byte* structure) {
  if (template_mode || structure == nullptr) return JsonPtr(cJSON_CreateString(""));
  if (member.is_char_pointer()) {
    const auto* text = read_pointer<const char>(structure, member);
    return JsonPtr(cJSON_CreateString(text == nullptr ? "" : text));
  }
  // A full char array has no terminator.
  const auto* text = reinterpret_cast<const char*>(address_of(structure, member));
  const pq::TextPtr copy(pq::noting_strndup(text, member.elem_count));
  return JsonPtr(copy == nullptr ? nullptr : cJSON_CreateString(copy.get()));
}

JsonPtr array_to_json(const j2s_ctx& ctx, const Member& array, const std::byte* structure,
                      ArrayForm form) {
  if (form != ArrayForm::kItems && !template_mode) {
    if (JsonPtr text = array_to_text(array, structure, form)) return text;
  }
  JsonPtr root(cJSON_CreateArray());
  if (root == nullptr) {
    report_assertion("_j2s_obj_to_json", "root");
    return nullptr;
  }
  Member element = first_element(array);
  for (size_t i = 0; i < array.elem_count; ++i, element.offset += array.elem_size) {
    JsonPtr item = member_to_json(ctx, element, structure, form);
    if (cJSON_AddItemToArray(root.get(), item.get())) (void)item.release();
  }
  return root;
}

JsonPtr dynamic_array_to_json(const j2s_ctx& ctx, const Member& pointer, const std::byte* structure,
                              ArrayForm form) {
  if (pointer.len_obj < 0) {
    report_missing_length("_j2s_obj_to_json", pointer);
    return nullptr;
  }
  if (template_mode) {
    return member_to_json(ctx, pointed_to_array(pointer, 1), nullptr, form);
  }
  const int length = read_length(ctx, structure, pointer);
  if (length == 0) return JsonPtr(cJSON_CreateArray());
  const auto* target = read_pointer<const std::byte>(structure, pointer);
  // No buffer can stand behind a length that is none.
  if (target == nullptr || !is_possible_length(length)) {
    report_null_pointer("_j2s_obj_to_json", pointer);
    return nullptr;
  }
  return member_to_json(ctx, pointed_to_array(pointer, length), target, form);
}

JsonPtr scalar_template(const j2s_ctx& ctx, const Member& member) {
  if (is_length_member(ctx, member.index)) return JsonPtr(create_number(1));
  if (member.record->enum_ref < 0) return JsonPtr(create_number(0));
  return JsonPtr(cJSON_CreateString(first_enum_name(ctx, member)));
}

JsonPtr scalar_to_json(const j2s_ctx& ctx, const Member& member, const std::byte* structure) {
  if (template_mode) return scalar_template(ctx, member);
  const double value = read_number(structure, member);
  if (member.record->enum_ref < 0) return JsonPtr(create_number(value));
  return JsonPtr(cJSON_CreateString(enum_name(ctx, member, pq::saturate<int32_t>(value))));
}

// Adds the member's description, if there is one. False: it could not be made.
bool add_description(const j2s_ctx& ctx, int obj_index, cJSON* object) {
  if (ctx.emit_desc == 0 || obj_index >= ctx.desc_count) return true;
  const char* text = ctx.desc_table[obj_index];
  if (text == nullptr) return true;
  char key[kJ2sNameSize + 1];
  (void)std::snprintf(key, sizeof key, "@%s", ctx.obj_table[obj_index].name);
  JsonPtr description(cJSON_CreateString(text));
  if (description == nullptr) {
    report_assertion("_j2s_struct_to_json", "json");
    return false;
  }
  add_member(object, key, std::move(description));
  return true;
}

JsonPtr struct_to_json(const j2s_ctx& ctx, int struct_index, const std::byte* structure,
                       ArrayForm form) {
  const MemberChain members(ctx, struct_index);
  if (members.empty()) return nullptr;
  JsonPtr root(cJSON_CreateObject());
  if (root == nullptr) {
    report_assertion("_j2s_struct_to_json", "root");
    return nullptr;
  }
  for (const int index : members) {
    JsonPtr item = member_to_json(ctx, Member(ctx, index), structure, form);
    if (item == nullptr) continue;
    if (!add_description(ctx, index, root.get())) return nullptr;
    add_member(root.get(), ctx.obj_table[index].name, std::move(item));
  }
  return root;
}

JsonPtr enum_to_json(const j2s_ctx& ctx, const j2s_enum& enumeration) {
  JsonPtr root(cJSON_CreateObject());
  if (root == nullptr) {
    report_assertion("_j2s_enum_to_json", "root");
    return nullptr;
  }
  for (int i = 0; i < enumeration.value_count; ++i) {
    const j2s_enum_value& constant = ctx.enum_value_table[enumeration.first_value + i];
    add_member(root.get(), constant.name, JsonPtr(create_number(constant.value)));
  }
  return root;
}

}  // namespace

JsonPtr member_to_json(const j2s_ctx& ctx, const Member& member, const std::byte* structure,
                       ArrayForm form) {
  if (member.is_char_array() || member.is_char_pointer()) return text_to_json(member, structure);
  if (member.is_array()) return array_to_json(ctx, member, structure, form);
  if (member.is_pointer()) return dynamic_array_to_json(ctx, member, structure, form);
  if (member.is_struct()) {
    return struct_to_json(ctx, member.record->struct_ref, address_of(structure, member), form);
  }
  return scalar_to_json(ctx, member, structure);
}

}  // namespace j2s

void _j2s_set_template(bool on) {
  j2s::template_mode = on;
}

cJSON* _j2s_obj_to_json(j2s_ctx* ctx, int obj_index, const void* ptr) {
  if (j2s::find_obj(*ctx, obj_index) == nullptr) return nullptr;
  const j2s::Member member(*ctx, obj_index);
  return j2s::member_to_json(*ctx, member, static_cast<const std::byte*>(ptr),
                             j2s::ArrayForm::kItems)
      .release();
}

cJSON* _j2s_struct_to_json(j2s_ctx* ctx, int struct_index, const void* ptr) {
  return j2s::struct_to_json(*ctx, struct_index, static_cast<const std::byte*>(ptr),
                             j2s::ArrayForm::kItems)
      .release();
}

cJSON* j2s_struct_to_json(j2s_ctx* ctx, const char* name, const void* ptr) {
  return _j2s_struct_to_json(ctx, j2s::find_struct(*ctx, name), ptr);
}

cJSON* j2s_struct_to_printable(j2s_ctx* ctx, const char* name, const void* ptr, bool formatted) {
  const auto form = formatted ? j2s::ArrayForm::kFormattedText : j2s::ArrayForm::kCompactText;
  return j2s::struct_to_json(*ctx, j2s::find_struct(*ctx, name), static_cast<const std::byte*>(ptr),
                             form)
      .release();
}

cJSON* j2s_enums_to_json(j2s_ctx* ctx) {
  if (ctx->enum_count < 1) return nullptr;
  pq::JsonPtr root(cJSON_CreateObject());
  if (root == nullptr) {
    j2s::report_assertion("j2s_enums_to_json", "root");
    return nullptr;
  }
  for (int index = 0; index < ctx->enum_count; ++index) {
    const j2s_enum& enumeration = ctx->enum_table[index];
    j2s::add_member(root.get(), enumeration.name, j2s::enum_to_json(*ctx, enumeration));
  }
  return root.release();
}

char* j2s_dump_struct(j2s_ctx* ctx, const char* name, const void* ptr) {
  const bool formatted = ctx->pretty_print != 0;
  const pq::JsonPtr json(j2s_struct_to_printable(ctx, name, ptr, formatted));
  if (json == nullptr) {
    j2s::report_assertion("j2s_dump_struct", "json");
    return nullptr;
  }
  if (ctx->emit_enums != 0) {
    j2s::add_member(json.get(), "@enum", pq::JsonPtr(j2s_enums_to_json(ctx)));
  }
  return formatted ? cJSON_Print(json.get()) : cJSON_PrintUnformatted(json.get());
}
