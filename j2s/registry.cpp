// The registry of the buffers that belong to a context.

#include <cstdlib>
#include <span>

#include "j2s/cache.h"
#include "j2s/j2s.h"
#include "j2s/report.h"

namespace {

std::span<j2s_data_entry> entries_of(const j2s_data_list* list) {
  if (list == nullptr || list->count < 1) return {};
  return {list->entries, list->entries + list->count};
}

j2s_data_entry* find_entry(const j2s_data_list* list, const void* ptr) {
  for (j2s_data_entry& entry : entries_of(list)) {
    if (entry.ptr == ptr) return &entry;
  }
  return nullptr;
}

// Returns a free slot at the end, or null after a message.
j2s_data_entry* grow(j2s_data_list& list) {
  const auto old_count = static_cast<size_t>(list.count);
  void* grown = std::realloc(list.entries, (old_count + 1) * sizeof(j2s_data_entry));
  if (grown == nullptr) {
    j2s::report_error({j2s::Origin::Source::kUtilities, "j2s_add_data"}, "failed to realloc");
    // The registry forgets its buffers rather than freeing them under the structures they are in.
    list.count = 0;
    list.entries = nullptr;
    return nullptr;
  }
  list.entries = static_cast<j2s_data_entry*>(grown);
  list.count = static_cast<int32_t>(old_count + 1);
  return &list.entries[old_count];
}

}  // namespace

void* j2s_alloc_data(j2s_ctx* ctx, size_t size) {
  void* data = std::calloc(size, 1);
  if (data != nullptr && j2s_add_data(ctx, data, true) != 0) {
    std::free(data);
    return nullptr;
  }
  return data;
}

int j2s_add_data(j2s_ctx* ctx, void* ptr, bool owned) {
  if (ctx->data_list == nullptr) {
    ctx->data_list = static_cast<j2s_data_list*>(std::calloc(1, sizeof(j2s_data_list)));
    if (ctx->data_list == nullptr) {
      j2s::report_assertion({j2s::Origin::Source::kUtilities, "j2s_add_data"}, "data_list");
      return -1;
    }
  }
  j2s_data_entry* slot = find_entry(ctx->data_list, nullptr);
  if (slot == nullptr) slot = grow(*ctx->data_list);
  if (slot == nullptr) return -1;
  *slot = {ptr, static_cast<uint8_t>(owned ? 1 : 0)};
  return 0;
}

void j2s_release_data(j2s_ctx* ctx, void* ptr) {
  j2s_data_entry* entry = find_entry(ctx->data_list, ptr);
  if (entry == nullptr || entry->owned != 0) std::free(ptr);
  if (entry != nullptr) entry->ptr = nullptr;
}

void j2s_deinit(j2s_ctx* ctx) {
  if (ctx->data_list == nullptr) return;
  for (const j2s_data_entry& entry : entries_of(ctx->data_list)) {
    if (entry.owned == 0) continue;
    if (ctx->owns_data != 0 || j2s::is_cache_buffer(*ctx, entry.ptr)) std::free(entry.ptr);
  }
  std::free(ctx->data_list->entries);
  std::free(ctx->data_list);
}
