// The result of changes: old, new and stored value of everything that was written.
#ifndef PQCTL_REPORT_CHANGE_H_
#define PQCTL_REPORT_CHANGE_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "palette.h"
#include "pqclient/change.h"
#include "pqclient/json.h"

class ChangeReport {
 public:
  // before, asked, stored: the values at `place`; stored is null if it was not read back.
  // is_silent: prints no line unless something differs.
  void add(const pqclient::Target& place, const cJSON* before, const cJSON& asked,
           const cJSON* stored, bool is_silent);

  // For a person: "csc/cscHue: was 256, now 300, stored 300", the entries of a table together. A
  // stored value is not always visible: the board only logs values that a display refuses.
  void print(std::ostream& out, const Palette& palette) const;

  // An array of {"path", "was", "now", "stored"}, complete; without "stored" if not read back.
  void print_json(std::ostream& out) const;

  // Throws Error kMismatch with the first value that was not stored as asked.
  void throw_unless_stored() const;

 private:
  struct Write {
    pqclient::JsonPtr before;
    pqclient::JsonPtr asked;
    pqclient::JsonPtr stored;
    std::string place;                           // empty: print nothing unless something differs
    std::vector<pqclient::ChangedValue> values;  // point into the three trees
  };

  [[nodiscard]] std::vector<const pqclient::ChangedValue*> wrong_values() const;

  std::vector<Write> writes_;
};

#endif  // PQCTL_REPORT_CHANGE_H_
