// The one exception type of the client library.
// Everything here runs on the caller's thread and throws nothing else but std::bad_alloc.
#ifndef PQCLIENT_ERROR_H_
#define PQCLIENT_ERROR_H_

#include <stdexcept>
#include <string>

namespace pqclient {

enum class ErrorKind {
  kInput,           // what the caller asked for is not possible: unknown name, value out of range
  kConnect,         // no connection to the board
  kMismatch,        // the board stored something else than was asked
  kTimeout,         // connected, but no (complete) answer in time
  kBadAnswer,       // an answer came that makes no sense
  kConnectionLost,  // the board closed the connection before the answer was complete
  kFile,            // a local file or stream cannot be read or written
};

// what() is a whole sentence for a person: what was wrong, with which value, at which address, and
// what to do.
class Error : public std::runtime_error {
 public:
  Error(ErrorKind kind, const std::string& text) : std::runtime_error(text), kind_(kind) {}

  [[nodiscard]] ErrorKind kind() const { return kind_; }

 private:
  ErrorKind kind_;
};

}  // namespace pqclient

#endif  // PQCLIENT_ERROR_H_
