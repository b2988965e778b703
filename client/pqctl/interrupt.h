// Ctrl-C while something has to be brought to an end first.
#ifndef PQCTL_INTERRUPT_H_
#define PQCTL_INTERRUPT_H_

#include <chrono>
#include <csignal>
#include <optional>

// While one lives, SIGINT, SIGTERM and SIGHUP do not end the program: they stay pending, and
// whoever holds the guard asks for them where it is safe to stop. No send or receive is cut short.
// SIGPIPE waits, too, until the guard has gone.
// When the guard goes, the program goes on; throw Interrupted to end it as the user expects.
// On the main thread only.
class InterruptGuard {
 public:
  InterruptGuard();
  ~InterruptGuard();
  InterruptGuard(const InterruptGuard&) = delete;
  InterruptGuard& operator=(const InterruptGuard&) = delete;

  // Somebody has wanted us to end since the program began. Guards may nest: what one of them has
  // seen, all know.
  [[nodiscard]] bool is_interrupted() const;
  [[nodiscard]] static bool was_interrupted();

  enum class End { kTime, kKey, kInterrupt };

  // Waits until the time is over (none: without end), a key is pressed, or somebody wants us to
  // end. Keys count only when standard input is a terminal. `key`: which one it was.
  End wait(std::optional<std::chrono::milliseconds> time, char* key = nullptr);

 private:
  sigset_t ending_{};  // the three
  sigset_t previous_{};
};

// Ends pqctl with the status of a program that Ctrl-C has ended, and without a message.
struct Interrupted {};

#endif  // PQCTL_INTERRUPT_H_
