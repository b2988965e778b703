// The one exception type of the client library.
// Everything here runs on the caller's thread and throws nothing else except std::bad_alloc.
#ifndef PQCLIENT_ERROR_H_
#define PQCLIENT_ERROR_H_

#include <stdexcept>
#include <string>

namespace pqclient {

enum class ErrorKind {
  kInput,           // the request is impossible: unknown name, value out of range
  kConnect,         // no connection to the board
  kMismatch,        // the board stored a different value than asked
  kTimeout,         // connected, but no (complete) answer in time
  kBadAnswer,       // the answer is invalid
  kConnectionLost,  // the board closed the connection before the answer was complete
  kFile,            // a local file or stream cannot be read or written
};

// what() is a whole sentence for a person: the fault, the value, the address, and the remedy.
class Error : public std::runtime_error {
 public:
  Error(ErrorKind kind, const std::string& text) : std::runtime_error(text), kind_(kind) {}

  [[nodiscard]] ErrorKind kind() const { return kind_; }

 private:
  ErrorKind kind_;
};

}  // namespace pqclient

#endif  // PQCLIENT_ERROR_H_
