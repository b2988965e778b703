// The meaning of an error that reading a file gave.
#ifndef DOCUMENTS_READ_ERROR_H_
#define DOCUMENTS_READ_ERROR_H_

#include <cerrno>

namespace pq {

// True for errors that mean "no readable file here" and will not go away on a retry. After any
// other one nothing is known of what is stored.
inline bool means_no_readable_file(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
    case EISDIR:
    case ENODEV:
    case EACCES:
    case EPERM:
    case ELOOP:
    case ENAMETOOLONG:
      return true;
    default:
      return false;
  }
}

}  // namespace pq

#endif  // DOCUMENTS_READ_ERROR_H_
