// Faults of system and library calls in the daemon's code: the n-th call of a kind fails, or that
// call and all later ones.
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
  kProperty,    // property_set
  kLoad,        // dlopen, dlsym
  kEngine,      // the 3D LUT engine
  kParameters,  // the base-parameter store
};

// Instead of an errno: the call transfers half of the possible bytes.
inline constexpr int kShort = -1;

struct Fault {
  const char* name;
  Call call;
  int error;  // errno, or kShort
};

// Starts counting calls of the fault's kind and makes the `nth` one fail (counted from 1); if
// `lasting`, also all later ones.
void arm(const Fault& fault, size_t nth, bool lasting);

void disarm();

// Only counts. Records the call site of each call: equal numbers mean equal sites, callers
// included.
void record(const Fault& fault);
std::vector<uint64_t> recorded();

// For the wrappers: the error that this call must fail with, 0 for none.
int strike(Call call);

// While one lives, calls of its thread are neither counted nor failed: they belong to the board or
// the test.
class Exempt {
 public:
  Exempt();
  ~Exempt();
  Exempt(const Exempt&) = delete;
  Exempt& operator=(const Exempt&) = delete;
};

bool is_exempt();

// Memory blocks that are allocated and not yet freed.
long live_blocks();
void count_block(long change);

}  // namespace faults

#endif  // TESTS_FAULTS_FAULT_H_
