// A mutex that serves its waiters in the order of their arrival. A std::mutex may let a busy thread
// take its lock again and again while others wait; clients whose requests wait would notice.
#ifndef BASE_FAIR_MUTEX_H_
#define BASE_FAIR_MUTEX_H_

#include <atomic>
#include <condition_variable>
#include <mutex>

#include "base/thread_annotations.h"

namespace pq {

// Callable from any thread. Allocates nothing and throws nothing.
class CAPABILITY("mutex") FairMutex {
 public:
  void lock() ACQUIRE();

  // Gives up, without the lock, soon after `stop` has become true. Returns whether it has the lock.
  // Waiters poll `stop` ten times a second and need no wake-up.
  [[nodiscard]] bool lock_unless(const std::atomic<bool>& stop) TRY_ACQUIRE(true);

  void unlock() RELEASE();

 private:
  // On the stack of the thread that waits.
  struct Waiter {
    std::condition_variable turn;
    Waiter* next = nullptr;
  };

  [[nodiscard]] bool is_next(const Waiter& waiter) const { return !held_ && first_ == &waiter; }
  bool take_if_free();
  void enqueue(Waiter& waiter);
  void dequeue(Waiter& waiter);
  void wake_first();

  std::mutex mutex_;  // guards the rest, for a few steps
  bool held_ = false;
  Waiter* first_ = nullptr;
};

// Holds the mutex from here to the end of the scope.
class SCOPED_CAPABILITY FairMutexLock {
 public:
  explicit FairMutexLock(FairMutex& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  // For a caller that has the lock already.
  FairMutexLock(FairMutex& mutex, std::adopt_lock_t) REQUIRES(mutex) : mutex_(mutex) {}
  ~FairMutexLock() RELEASE() { mutex_.unlock(); }
  FairMutexLock(const FairMutexLock&) = delete;
  FairMutexLock& operator=(const FairMutexLock&) = delete;

 private:
  FairMutex& mutex_;
};

}  // namespace pq

#endif  // BASE_FAIR_MUTEX_H_
