// Whole files, in and out. All throw Error kFile with the system's reason.
#ifndef PQCTL_FILES_H_
#define PQCTL_FILES_H_

#include <string>
#include <string_view>

// "-" is standard input.
std::string read_input(const std::string& path);

// "-" is standard output.
void write_output(const std::string& path, std::string_view bytes);

#endif  // PQCTL_FILES_H_
