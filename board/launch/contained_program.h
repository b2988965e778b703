// One program of the board together with everything that it starts: all of it inside a container
// (isolation.h), all of it gone once the program has ended.
#ifndef BOARD_LAUNCH_CONTAINED_PROGRAM_H_
#define BOARD_LAUNCH_CONTAINED_PROGRAM_H_

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "files/file_descriptor.h"
#include "launch/isolation.h"

namespace board {

// Any process of this machine, held so that its id cannot come to mean another one.
class Process {
 public:
  Process() = default;  // none: has ended
  explicit Process(pid_t id);

  [[nodiscard]] pid_t id() const { return id_; }
  [[nodiscard]] bool has_ended(std::chrono::milliseconds timeout) const;
  void signal(int number) const;  // does nothing once it has ended

 private:
  pid_t id_ = -1;
  FileDescriptor descriptor_;
};

class ContainedProgram {
 public:
  // program: its path and arguments. environment: NAME=VALUE, for the program alone.
  // output: becomes standard output and error; stays the caller's to close.
  // Returns when the program is about to start. Throws std::runtime_error when the container cannot
  // be made; the reason is on `output`. A program that cannot be run ends with status 126 or 127.
  // Everything ends with the thread that calls this: it has to outlive the program.
  ContainedProgram(const Container& container, const std::vector<std::string>& program,
                   const std::vector<std::string>& environment, int output);
  // Ends everything at once (SIGKILL).
  ~ContainedProgram();
  ContainedProgram(const ContainedProgram&) = delete;
  ContainedProgram& operator=(const ContainedProgram&) = delete;

  // As seen from outside the container; -1 when it ended at once.
  [[nodiscard]] pid_t id() const { return program_.id(); }

  void signal(int number) const { program_.signal(number); }

  // The exit status, 128 + N when signal N ended it; nothing when it still runs after the timeout.
  // Once it has ended, so has everything that it started.
  std::optional<int> wait(std::chrono::milliseconds timeout);

 private:
  void end_container();
  void end_traced_processes() const;

  int end_signal_;
  FileDescriptor report_;  // of the shell
  Process container_;      // our child: bubblewrap or proot
  Process shell_;          // the container's only child
  Process program_;        // the shell's only child
  std::optional<int> status_;
};

}  // namespace board

#endif  // BOARD_LAUNCH_CONTAINED_PROGRAM_H_
