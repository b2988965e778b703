// Whole small files that several processes share: a reader sees the old content or the new one,
// never a part of it. Any thread may call; two writers of one file leave one of the two contents.
#ifndef BOARD_FILES_FILES_H_
#define BOARD_FILES_FILES_H_

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace board {

// Writes a hidden file beside `file` (its name starts with a dot) and renames it, which is also
// what somebody who watches the folder is told of. Returns 0 or a negative errno; then the file is
// as it was.
[[nodiscard]] int replace_file(const std::filesystem::path& file, std::string_view content);

// The same for callers that cannot go on without the file. Throws std::runtime_error that names the
// file and the reason.
void replace_file_or_throw(const std::filesystem::path& file, std::string_view content);

// As replace_file, but an existing file stays and the result is -EEXIST.
[[nodiscard]] int create_file(const std::filesystem::path& file, std::string_view content);

// Appends one line, its newline added here, in a single write, so that lines of several processes
// never mix. Returns 0 or a negative errno.
[[nodiscard]] int append_line(const std::filesystem::path& file, std::string_view line);

// The whole content; nothing when the file cannot be read.
std::optional<std::string> read_file(const std::filesystem::path& file);

}  // namespace board

#endif  // BOARD_FILES_FILES_H_
