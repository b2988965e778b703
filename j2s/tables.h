// Reading a context's tables: looking up structures and following chains of members.
// Indexes come from callers and from records; one that names no record is treated as -1.
#ifndef J2S_TABLES_H_
#define J2S_TABLES_H_

#include "j2s/j2s.h"

namespace j2s {

// Index of the first structure of that name, of the context's root for a null name; -1 for none.
int find_struct(const j2s_ctx& ctx, const char* name);

// Index of the structure that holds the member, -1 for none.
int find_owner(const j2s_ctx& ctx, int obj_index);

// Null for an index that names no member.
inline const j2s_obj* find_obj(const j2s_ctx& ctx, int obj_index) {
  return obj_index >= 0 && obj_index < ctx.obj_count ? &ctx.obj_table[obj_index] : nullptr;
}

// A structure's members, for use in a range-based for, which yields their indexes in chain order.
// Empty for an index that names no structure.
class MemberChain {
 public:
  MemberChain(const j2s_ctx& ctx, int struct_index)
      : ctx_(&ctx),
        first_(struct_index >= 0 && struct_index < ctx.struct_count
                   ? ctx.struct_table[struct_index].first_obj
                   : -1) {}

  class Iterator {
   public:
    Iterator(const j2s_ctx* ctx, int index) : ctx_(ctx), index_(index) {}
    int operator*() const { return index_; }
    Iterator& operator++() {
      index_ = ctx_->obj_table[index_].next_obj;
      return *this;
    }
    bool operator!=(const Iterator& other) const { return index_ != other.index_; }

   private:
    const j2s_ctx* ctx_;
    int index_;
  };

  [[nodiscard]] Iterator begin() const { return {ctx_, first_ >= 0 ? first_ : -1}; }
  [[nodiscard]] Iterator end() const { return {ctx_, -1}; }
  [[nodiscard]] bool empty() const { return first_ < 0; }

 private:
  const j2s_ctx* ctx_;
  int first_;
};

// True if the member counts the elements of a dynamic array beside it.
bool is_length_member(const j2s_ctx& ctx, int obj_index);

}  // namespace j2s

#endif  // J2S_TABLES_H_
