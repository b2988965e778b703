#include "base/fair_mutex.h"

#include <chrono>

namespace pq {
namespace {

constexpr std::chrono::milliseconds kStopInterval{100};

}  // namespace

void FairMutex::lock() {
  std::unique_lock lock(mutex_);
  if (take_if_free()) return;
  Waiter waiter;
  enqueue(waiter);
  waiter.turn.wait(lock, [&] { return is_next(waiter); });
  dequeue(waiter);
  held_ = true;
}

bool FairMutex::lock_unless(const std::atomic<bool>& stop) {
  std::unique_lock lock(mutex_);
  if (stop) return false;
  if (take_if_free()) return true;
  Waiter waiter;
  enqueue(waiter);
  while (!waiter.turn.wait_for(lock, kStopInterval, [&] { return is_next(waiter); }) && !stop) {
  }
  dequeue(waiter);
  if (stop) {
    wake_first();  // the turn may have been this waiter's
    return false;
  }
  held_ = true;
  return true;
}

void FairMutex::unlock() {
  const std::lock_guard lock(mutex_);
  held_ = false;
  wake_first();
}

bool FairMutex::take_if_free() {
  if (held_ || first_ != nullptr) return false;
  held_ = true;
  return true;
}

void FairMutex::enqueue(Waiter& waiter) {
  Waiter** end = &first_;
  while (*end != nullptr)
    end = &(*end)->next;
  *end = &waiter;
}

void FairMutex::dequeue(Waiter& waiter) {
  Waiter** place = &first_;
  while (*place != &waiter)
    place = &(*place)->next;
  *place = waiter.next;
}

// With mutex_ held: a waiter that has its turn takes its condition variable with it.
void FairMutex::wake_first() {
  if (!held_ && first_ != nullptr) first_->turn.notify_one();
}

}  // namespace pq
