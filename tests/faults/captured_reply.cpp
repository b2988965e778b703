#include "faults/captured_reply.h"

#include <utility>

#include "faults/fault.h"

namespace faults {
namespace {

std::string reply;

}  // namespace

std::string take_reply() {
  return std::exchange(reply, {});
}

ssize_t capture(const void* bytes, size_t size) {
  const Exempt exempt;
  reply.append(static_cast<const char*>(bytes), size);
  return static_cast<ssize_t>(size);
}

}  // namespace faults
