// Memory: the C functions by the linker's --wrap, in the daemon's libraries and cJSON; operator new
// and delete by replacement. Allocations inside the C library and the board's libraries are not
// covered.
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "faults/fault.h"

extern "C" {

void* __real_malloc(size_t size);
void* __real_calloc(size_t count, size_t size);
void* __real_realloc(void* block, size_t size);
void __real_free(void* block);
int __real_vasprintf(char** text, const char* format, va_list arguments);

}  // extern "C"

namespace {

bool denied() {
  if (faults::strike(faults::Call::kAllocation) == 0) return false;
  errno = ENOMEM;
  return true;
}

void* counted(void* block) {
  if (block != nullptr) faults::count_block(1);
  return block;
}

void release(void* block) {
  if (block != nullptr) faults::count_block(-1);
  __real_free(block);
}

void* allocate(size_t size) {
  return denied() ? nullptr : counted(__real_malloc(size == 0 ? 1 : size));
}

char* copy_of(const char* text, size_t length) {
  auto* copy = static_cast<char*>(allocate(length + 1));
  if (copy == nullptr) return nullptr;
  std::memcpy(copy, text, length);
  copy[length] = '\0';
  return copy;
}

}  // namespace

extern "C" {

void* __wrap_malloc(size_t size) {
  return allocate(size);
}
void* __wrap_calloc(size_t count, size_t size) {
  return denied() ? nullptr : counted(__real_calloc(count, size));
}
void* __wrap_realloc(void* block, size_t size) {
  if (denied()) return nullptr;
  void* moved = __real_realloc(block, size);
  return block == nullptr ? counted(moved) : moved;
}
void __wrap_free(void* block) {
  release(block);
}
char* __wrap_strndup(const char* text, size_t most) {
  return copy_of(text, strnlen(text, most));
}
char* __wrap_strdup(const char* text) {
  return copy_of(text, std::strlen(text));
}
int __wrap_vasprintf(char** text, const char* format, va_list arguments) {
  if (denied()) return -1;
  const int length = __real_vasprintf(text, format, arguments);
  if (length >= 0) faults::count_block(1);
  return length;
}
// The name in fortified programs.
int __wrap___vasprintf_chk(char** text, int /*flag*/, const char* format, va_list arguments) {
  return __wrap_vasprintf(text, format, arguments);
}

}  // extern "C"

void* operator new(size_t size) {
  void* block = allocate(size);
  if (block == nullptr) throw std::bad_alloc();
  return block;
}
void* operator new(size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void* operator new[](size_t size) {
  return operator new(size);
}
void* operator new[](size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return allocate(size);
}
void operator delete(void* block) noexcept {
  release(block);
}
void operator delete(void* block, size_t /*size*/) noexcept {
  release(block);
}
void operator delete[](void* block) noexcept {
  release(block);
}
void operator delete[](void* block, size_t /*size*/) noexcept {
  release(block);
}
