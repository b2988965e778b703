// Faults of the calls that the daemon's code makes: the n-th call of a kind fails, or all from it
// on.
//
// The wrappers around the calls (wrapped_*.cpp) ask strike() and count memory blocks. Safe from
// several threads; one fault is armed at a time.
#ifndef TESTS_FAULTS_FAULT_H_
#define TESTS_FAULTS_FAULT_H_

#include <cstddef>
#include <cstdint>
#include <vector>

namespace faults {

enum class Call {
  kNone,
  kAllocation,
  kOpen,
  kStatus,  // stat, fstat, lstat, access
  kRead,
  kWrite,
  kSync,
  kSeek,
  kClose,
  kRemove,
  kSend,
  kReceive,
  kAccept,
  kSocket,  // socket, bind, listen
  kSocketOption,
  kFork,
  kThread,
  kDisplay,     // libdrm
  kProperty,    // setting one
  kLoad,        // dlopen, dlsym
  kEngine,      // of the 3D LUT
  kParameters,  // the base-parameter store
};

// In place of an errno: the call takes, or gives, half of what it could.
inline constexpr int kShort = -1;

struct Fault {
  const char* name;
  Call call;
  int error;  // errno, or kShort
};

// From now on counts the calls of the fault's kind and has the `nth` one fail (counted from 1), or,
// when it is lasting, that one and all that follow.
void arm(const Fault& fault, size_t nth, bool lasting);

void disarm();

// Counts too, but none fails. Notes for each call where in the code it was made: equal
// numbers are equal places, the callers' included.
void record(const Fault& fault);
std::vector<uint64_t> recorded();

// For the wrappers: the error that this call has to fail with, 0 for none.
int strike(Call call);

// While one lives, its thread's calls are neither counted nor failed: they are the board's own, or
// the test's.
class Exempt {
 public:
  Exempt();
  ~Exempt();
  Exempt(const Exempt&) = delete;
  Exempt& operator=(const Exempt&) = delete;
};

bool is_exempt();

// Blocks of memory that have been allocated and not freed.
long live_blocks();
void count_block(long change);

}  // namespace faults

#endif  // TESTS_FAULTS_FAULT_H_
