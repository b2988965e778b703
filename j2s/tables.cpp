#include "j2s/tables.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace j2s {

int find_struct(const j2s_ctx& ctx, const char* name) {
  if (name == nullptr) return ctx.root_struct < ctx.struct_count ? ctx.root_struct : -1;
  for (int index = 0; index < ctx.struct_count; ++index) {
    if (std::strcmp(ctx.struct_table[index].name, name) == 0) return index;
  }
  return -1;
}

int find_owner(const j2s_ctx& ctx, int obj_index) {
  for (int index = 0; index < ctx.struct_count; ++index) {
    for (const int member : MemberChain(ctx, index)) {
      if (member == obj_index) return index;
    }
  }
  return -1;
}

bool is_length_member(const j2s_ctx& ctx, int obj_index) {
  const std::span<const j2s_obj> objs(ctx.obj_table, static_cast<size_t>(ctx.obj_count));
  return std::any_of(objs.begin(), objs.end(),
                     [&](const j2s_obj& obj) { return obj.len_obj == obj_index; });
}

}  // namespace j2s
