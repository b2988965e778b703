// What a change came to: old, new and stored value of everything that was touched.
#ifndef PQCTL_REPORT_CHANGE_H_
#define PQCTL_REPORT_CHANGE_H_

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "pqclient/json.h"

class ChangeReport {
 public:
  explicit ChangeReport(bool as_json) : as_json_(as_json) {}

  // path: as pqctl writes it. old and stored are null when there is no such value.
  void add(const std::string& path, const cJSON* old, const cJSON& asked, const cJSON* stored);

  // For a person: one line for each value, of a big change the first few.
  // As JSON: an array of {"path", "old", "new", "stored"}, complete.
  void print(std::ostream& out) const;

  // Throws Error kMismatch that names the first value which is stored otherwise than asked.
  void throw_unless_stored() const;

 private:
  struct Line {
    std::string path;
    std::string old;
    std::string asked;
    std::string stored;
    bool is_stored_as_asked;
  };
  void print_lines(std::ostream& out) const;
  void print_json(std::ostream& out) const;

  bool as_json_;
  std::vector<Line> lines_;
};

#endif  // PQCTL_REPORT_CHANGE_H_
