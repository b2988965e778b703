// Delays Ctrl-C while something must be completed first.
#ifndef PQCTL_INTERRUPT_H_
#define PQCTL_INTERRUPT_H_

#include <chrono>
#include <csignal>
#include <optional>

// While a guard lives, SIGINT, SIGTERM and SIGHUP do not end the program: they stay pending, and
// the guard's owner checks for them where it is safe to stop. No send or receive is interrupted.
// SIGPIPE also stays pending until the guard is destroyed.
// Destroying the guard does not end the program; throw Interrupted for that.
// On the main thread only.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

  // True if one of the signals has arrived since the program started. Guards may nest and share
  // this state.
  [[nodiscard]] bool is_interrupted() const;
  [[nodiscard]] static bool was_interrupted();

  enum class End { kTime, kKey, kInterrupt };

  // Waits until the time is over (none: no limit), a key is pressed, or one of the signals arrives.
  // Keys count only if standard input is a terminal. `key`: set to the key that was pressed.
  End wait(std::optional<std::chrono::milliseconds> time, char* key = nullptr);

 private:
  sigset_t ending_{};  // SIGINT, SIGTERM, SIGHUP
  sigset_t previous_{};
};

// Ends pqctl silently with the status of a program that Ctrl-C has ended.
struct Interrupted {};

#endif  // PQCTL_INTERRUPT_H_
