// The terminal's size in characters.
#ifndef PQCTL_TERMINAL_SIZE_H_
#define PQCTL_TERMINAL_SIZE_H_

#include <sys/ioctl.h>
#include <unistd.h>

#include "plot/terminal.h"

// The size of the terminal at standard output, or the usual size if there is none.
inline plot::TerminalSize terminal_size() {
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return {};
  return {.columns = size.ws_col, .rows = size.ws_row};
}

#endif  // PQCTL_TERMINAL_SIZE_H_
