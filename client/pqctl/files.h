// Whole files, read and written. All functions throw Error kFile with the system's reason.
#ifndef PQCTL_FILES_H_
#define PQCTL_FILES_H_

#include <filesystem>
#include <string>
#include <string_view>

#include "pqclient/error.h"

// "-" is standard input.
std::string read_input(const std::string& path);

// "-" is standard output.
void write_output(const std::string& path, std::string_view bytes);

// Writes to a side file first, so that the file is never incomplete, even after a power failure.
void replace_file(const std::filesystem::path& path, std::string_view bytes);

// The reason is taken from errno: "cannot read x.json: Permission denied".
pqclient::Error file_error(const char* what, const std::filesystem::path& path);

#endif  // PQCTL_FILES_H_
