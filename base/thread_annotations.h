// A mutex that the compiler checks: clang refuses code that touches a GUARDED_BY variable without
// its lock (-Wthread-safety, an error in tools/check-style). Other compilers see a plain mutex.
// The attributes are those of clang's documentation, "Thread Safety Analysis".
#ifndef BASE_THREAD_ANNOTATIONS_H_
#define BASE_THREAD_ANNOTATIONS_H_

#include <mutex>

// Macros, since no other construct adds an attribute for one compiler alone.
#if defined(__clang__)
#define PQ_THREAD_ANNOTATION(attribute) __attribute__((attribute))
#else
#define PQ_THREAD_ANNOTATION(attribute)
#endif

// On a variable: read and written only with `mutex` held.
#define GUARDED_BY(mutex) PQ_THREAD_ANNOTATION(guarded_by(mutex))
// On a function: the caller holds `mutex`.
#define REQUIRES(...) PQ_THREAD_ANNOTATION(requires_capability(__VA_ARGS__))
// On a function: the caller does not hold `mutex`, because the function takes it.
#define EXCLUDES(...) PQ_THREAD_ANNOTATION(locks_excluded(__VA_ARGS__))
// On a function that hands a held mutex to its caller, which the analysis cannot follow.
#define NO_THREAD_SAFETY_ANALYSIS PQ_THREAD_ANNOTATION(no_thread_safety_analysis)
// On a lock's own functions.
#define CAPABILITY(name) PQ_THREAD_ANNOTATION(capability(name))
#define SCOPED_CAPABILITY PQ_THREAD_ANNOTATION(scoped_lockable)
#define ACQUIRE(...) PQ_THREAD_ANNOTATION(acquire_capability(__VA_ARGS__))
#define TRY_ACQUIRE(...) PQ_THREAD_ANNOTATION(try_acquire_capability(__VA_ARGS__))
#define RELEASE(...) PQ_THREAD_ANNOTATION(release_capability(__VA_ARGS__))

namespace pq {

// lock() and unlock() are for std::condition_variable_any; code takes a MutexLock.
class CAPABILITY("mutex") Mutex {
 public:
  void lock() ACQUIRE() { mutex_.lock(); }
  void unlock() RELEASE() { mutex_.unlock(); }

 private:
  std::mutex mutex_;
};

// Holds a mutex from here to the end of the scope.
class SCOPED_CAPABILITY MutexLock {
 public:
  explicit MutexLock(Mutex& mutex) ACQUIRE(mutex) : mutex_(mutex) { mutex_.lock(); }
  ~MutexLock() RELEASE() { mutex_.unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex& mutex_;
};

}  // namespace pq

#endif  // BASE_THREAD_ANNOTATIONS_H_
