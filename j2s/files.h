// Reading and saving whole files: for the cache, for j2s_read_file and j2s_save_file, and for the
// documents.
#ifndef J2S_FILES_H_
#define J2S_FILES_H_

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>

#include "base/owner.h"

namespace j2s {

// Opens for reading; `extra_flags` go to open. `status` then describes what was opened.
// Refuses anything but files and directories, without waiting for a writer at the other end of a
// pipe. Not valid after a message in the name of j2s_read_file.
pq::UniqueFd open_for_reading(const char* path, int extra_flags, struct stat& status);

// Reads the file whose `status` says its size, in one read; a terminating 0 follows the content.
// Null after a message in the name of j2s_read_file.
pq::TextPtr read_opened(const pq::UniqueFd& file, const char* path, const struct stat& status);

// A file's content with a terminating 0, or why there is none.
struct FileText {
  pq::TextPtr text;
  int error = 0;  // errno's numbers; 0 with a text
};

// As j2s_read_file, but closes the file on every path and does not read more than `max_size` bytes.
// Errors beyond those of the system calls: ENODEV for what is neither file nor directory, EFBIG for
// a larger file, EIO for one that became shorter meanwhile.
FileText read_file(const char* path, size_t max_size = SIZE_MAX);

// As j2s_save_file, whose result `result` is. `error` says why it is negative; with a result of 0
// or more, why it is not certain that the content has reached the disk, or 0.
struct FileSaved {
  int result = -1;
  int error = 0;
};
FileSaved save_file(const char* path, const char* text);

}  // namespace j2s

#endif  // J2S_FILES_H_
