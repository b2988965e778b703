// The folders of the user's pqctl files, by the XDG Base Directory rules.
#ifndef PQCTL_USER_FOLDERS_H_
#define PQCTL_USER_FOLDERS_H_

#include <filesystem>

// $XDG_CONFIG_HOME/pqctl, or ~/.config/pqctl. Empty if the user has no home folder either.
std::filesystem::path configuration_folder();

// $XDG_STATE_HOME/pqctl, or ~/.local/state/pqctl. Empty if the user has no home folder either.
std::filesystem::path state_folder();

#endif  // PQCTL_USER_FOLDERS_H_
