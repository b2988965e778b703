// What changes came to: old, new and stored value of everything that was touched.
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
  // before, asked, stored: what is at `place`; stored is null when it was not read back.
  // is_silent: worth no line as long as nothing differs.
  void add(const pqclient::Target& place, const cJSON* before, const cJSON& asked,
           const cJSON* stored, bool is_silent);

  // For a person: "csc/cscHue: was 256, now 300, stored 300", the entries of a table together.
  // That it is stored does not say that it can be seen: the board only logs what a display refuses.
  void print(std::ostream& out, const Palette& palette) const;

  // An array of {"path", "was", "now", "stored"}, complete; without "stored" if not read back.
  void print_json(std::ostream& out) const;

  // Throws Error kMismatch that names the first value which is stored otherwise than asked.
  void throw_unless_stored() const;

 private:
  struct Write {
    pqclient::JsonPtr before;
    pqclient::JsonPtr asked;
    pqclient::JsonPtr stored;
    std::string place;                           // empty: silent when nothing differs
    std::vector<pqclient::ChangedValue> values;  // point into the three
  };

  [[nodiscard]] std::vector<const pqclient::ChangedValue*> wrong_values() const;

  std::vector<Write> writes_;
};

#endif  // PQCTL_REPORT_CHANGE_H_
