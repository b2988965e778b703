// Where pqctl keeps what is the user's, by the XDG Base Directory rules.
#ifndef PQCTL_USER_FOLDERS_H_
#define PQCTL_USER_FOLDERS_H_

#include <filesystem>

// $XDG_CONFIG_HOME/pqctl, else ~/.config/pqctl. Empty when the user has no home either.
std::filesystem::path configuration_folder();

// $XDG_STATE_HOME/pqctl, else ~/.local/state/pqctl. Empty when the user has no home either.
std::filesystem::path state_folder();

#endif  // PQCTL_USER_FOLDERS_H_
