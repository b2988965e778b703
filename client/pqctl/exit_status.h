// The exit statuses of pqctl: one for each kind of failure, so that scripts can tell them apart.
// The help explains them, see command_line.cpp.
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
  kDifferent = 8,
  kInterrupted = 130,  // 128 + SIGINT, as in shells
};

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
