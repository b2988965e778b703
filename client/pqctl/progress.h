// A progress line on the terminal. Prints nothing with --quiet, or if standard error is a pipe or a
// file.
#ifndef PQCTL_PROGRESS_H_
#define PQCTL_PROGRESS_H_

#include <string_view>

#include "session.h"

class Progress {
 public:
  explicit Progress(const Session& session) : is_shown_(session.is_interactive()) {}
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // part: 0 to 1. text: a few words after the bar.
  void show(double part, std::string_view text);

  // Removes the line, so that other text can take its place.
  void clear();

 private:
  bool is_shown_;
  bool is_drawn_ = false;
};

#endif  // PQCTL_PROGRESS_H_
