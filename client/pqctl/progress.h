// A line on the terminal that says how far something is. Nothing at all in a pipe, with --quiet, or
// where standard error is a file.
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

  // part: 0 to 1. text: a few words behind the bar.
  void show(double part, std::string_view text);

  // Takes the line away, for other words to stand there.
  void clear();

 private:
  bool is_shown_;
  bool is_drawn_ = false;
};

#endif  // PQCTL_PROGRESS_H_
