// Where the launcher finds what a board is made of: its own installation, or this build.
#ifndef BOARD_LAUNCH_INSTALLATION_H_
#define BOARD_LAUNCH_INSTALLATION_H_

#include <filesystem>
#include <string>
#include <vector>

#include "description/description.h"

namespace board {

std::filesystem::path installation_folder();  // holds all that follows but the daemon
std::filesystem::path library_folder();       // the board's shared libraries
std::filesystem::path program_folder();       // becomes /system/bin
std::filesystem::path daemon_program();

// Programs that run as long as the board does, beside the daemon. The ones that this build has.
std::vector<std::filesystem::path> companion_programs();

// The folder that holds the board's 3D LUT engine, apart from the other libraries so that a board
// can do without. Empty when it does.
std::filesystem::path engine_folder(Engine engine);

// Libraries that every program of the board is started with, in this order. They and the next two
// are names in library_folder(): the loader takes a blank in a path for the end of it.
std::vector<std::filesystem::path> preload_libraries();

// For what runs under proot.
std::filesystem::path proot_workarounds_library();

// Shortens waits by the factor in the environment variable BOARD_HURRY.
std::filesystem::path quick_clock_library();

// The described boards by name, sorted.
std::vector<std::string> board_names();

// The description for a board's name, or the file itself when `name_or_file` is the path of one.
// Throws std::runtime_error that lists the boards there are.
std::filesystem::path description_file(const std::string& name_or_file);

}  // namespace board

#endif  // BOARD_LAUNCH_INSTALLATION_H_
