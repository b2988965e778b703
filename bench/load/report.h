// The result of a run of load: one line of figures, and one for each exceeded bound.
#ifndef BENCH_LOAD_REPORT_H_
#define BENCH_LOAD_REPORT_H_

#include <iostream>
#include <sstream>
#include <string>
#include <utility>

namespace load {

class Report {
 public:
  explicit Report(std::string run) : run_(std::move(run)) {}

  // Any number of values and texts, one after another.
  template <typename... Parts>
  Report& figure(const Parts&... parts) {
    std::ostringstream text;
    (text << ... << parts);
    line_ += (line_.empty() ? "" : "; ") + text.str();
    return *this;
  }

  void require(bool held, const std::string& what) {
    if (!held) failures_ += run_ + ": FAILED: " + what + '\n';
  }

  // Prints the lines. Returns whether every bound was kept.
  [[nodiscard]] bool finish() const {
    std::cout << run_ << ": " << line_ << '\n' << failures_ << std::flush;
    return failures_.empty();
  }

 private:
  std::string run_;
  std::string line_;
  std::string failures_;
};

}  // namespace load

#endif  // BENCH_LOAD_REPORT_H_
