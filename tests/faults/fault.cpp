#include "faults/fault.h"

#include <execinfo.h>

#include <array>
#include <atomic>
#include <mutex>

namespace faults {
namespace {

std::atomic<Call> armed_call = Call::kNone;
std::atomic<int> armed_error = 0;
std::atomic<size_t> first_failing = 0;
std::atomic<size_t> last_failing = 0;
std::atomic<size_t> calls = 0;
std::atomic<long> blocks = 0;

std::atomic<bool> recording = false;
std::mutex places_mutex;
std::vector<uint64_t> places;

thread_local int exemptions = 0;

uint64_t place_of_call() {
  std::array<void*, 40> stack{};
  const int depth = backtrace(stack.data(), static_cast<int>(stack.size()));
  uint64_t place = 0;
  for (int i = 0; i < depth; ++i) {
    place = place * 1'000'003 + reinterpret_cast<uintptr_t>(stack[static_cast<size_t>(i)]);
  }
  return place;
}

}  // namespace

void arm(const Fault& fault, size_t nth, bool lasting) {
  calls = 0;
  armed_error = fault.error;
  first_failing = nth;
  last_failing = lasting ? SIZE_MAX : nth;
  armed_call = fault.call;
}

void disarm() {
  armed_call = Call::kNone;
  recording = false;
}

void record(const Fault& fault) {
  const std::lock_guard lock(places_mutex);
  places.clear();
  recording = true;
  arm(fault, SIZE_MAX, false);
}

std::vector<uint64_t> recorded() {
  const std::lock_guard lock(places_mutex);
  return places;
}

int strike(Call call) {
  if (call == Call::kNone || call != armed_call || exemptions > 0) return 0;
  if (recording) {
    const Exempt exempt;
    const uint64_t place = place_of_call();
    const std::lock_guard lock(places_mutex);
    places.push_back(place);
  }
  const size_t number = ++calls;
  return number >= first_failing && number <= last_failing ? armed_error.load() : 0;
}

Exempt::Exempt() {
  ++exemptions;
}
Exempt::~Exempt() {
  --exemptions;
}

bool is_exempt() {
  return exemptions > 0;
}

long live_blocks() {
  return blocks;
}
void count_block(long change) {
  blocks += change;
}

}  // namespace faults
