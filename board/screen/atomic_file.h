// Files that another program may read at any moment.
#ifndef BOARD_SCREEN_ATOMIC_FILE_H_
#define BOARD_SCREEN_ATOMIC_FILE_H_

#include <cstdint>
#include <filesystem>
#include <span>
#include <string_view>

namespace board::screen {

// Writes a hidden side file in the same folder and renames it over `file`: readers see the old
// content or the new one, never a part. Throws std::runtime_error with file and reason; the old
// content then stays.
void write_file_atomically(const std::filesystem::path& file, std::span<const uint8_t> content);
void write_file_atomically(const std::filesystem::path& file, std::string_view content);

}  // namespace board::screen

#endif  // BOARD_SCREEN_ATOMIC_FILE_H_
