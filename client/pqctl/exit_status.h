// How pqctl ends: one status for each kind of trouble, so that scripts can tell them apart.
#ifndef PQCTL_EXIT_STATUS_H_
#define PQCTL_EXIT_STATUS_H_

#include "pqclient/error.h"

enum class ExitStatus : int {
  kOk = 0,
  kUsage = 1,
  kConnect = 2,
  kMismatch = 3,
  kTimeout = 4,
  kBadAnswer = 5,
  kConnectionLost = 6,
  kFile = 7,
};

// The same list for --help.
inline constexpr const char* kExitStatusHelp =
    "Exit status:\n"
    "  0  done\n"
    "  1  wrong usage: unknown command, name or index, value out of range\n"
    "  2  cannot connect to the board\n"
    "  3  the board stored something else than was asked\n"
    "  4  time-out: the board did not answer, or not completely\n"
    "  5  the board's answer makes no sense\n"
    "  6  the board closed the connection before it had answered\n"
    "  7  a file cannot be read or written\n";

constexpr ExitStatus exit_status_of(pqclient::ErrorKind kind) {
  using pqclient::ErrorKind;
  switch (kind) {
    case ErrorKind::kInput:
      return ExitStatus::kUsage;
    case ErrorKind::kConnect:
      return ExitStatus::kConnect;
    case ErrorKind::kMismatch:
      return ExitStatus::kMismatch;
    case ErrorKind::kTimeout:
      return ExitStatus::kTimeout;
    case ErrorKind::kBadAnswer:
      return ExitStatus::kBadAnswer;
    case ErrorKind::kConnectionLost:
      return ExitStatus::kConnectionLost;
    case ErrorKind::kFile:
      return ExitStatus::kFile;
  }
  return ExitStatus::kUsage;
}

#endif  // PQCTL_EXIT_STATUS_H_
