// Reading files: for the cache, for j2s_read_file, and for the documents.
#ifndef J2S_FILES_H_
#define J2S_FILES_H_

#include <sys/stat.h>

#include <cstddef>

#include "base/owner.h"

namespace j2s {

// Opens for reading; `extra_flags` go to open. `status` then describes what was opened.
// Refuses anything but files and directories, without waiting for a writer at the other end of a
// pipe. Not valid after a message in the name of j2s_read_file.
pq::UniqueFd open_for_reading(const char* path, int extra_flags, struct stat& status);

// Reads the file whose `status` says its size, in one read; a terminating 0 follows the content.
// Null after a message in the name of j2s_read_file.
pq::TextPtr read_opened(const pq::UniqueFd& file, const char* path, const struct stat& status);

// As j2s_read_file, but closes the file on every path. Null after a message; errno then says why:
// ENODEV for what is neither file nor directory, EIO for a file that became shorter meanwhile.
pq::TextPtr read_file(const char* path, size_t* size);

}  // namespace j2s

#endif  // J2S_FILES_H_
