// Changes that are verified: stored, read back, compared.
#ifndef PQCLIENT_CHANGE_H_
#define PQCLIENT_CHANGE_H_

#include <string>
#include <vector>

#include "pqclient/target.h"
#include "pqclient/tuning_client.h"

namespace pqclient {

// The smallest place that holds all that differs between two states of a section: an entry, a
// member, a scene, or the section itself; that also when nothing differs. One write to it changes
// all of it. The order of members counts: the AIPQ document keeps it.
Target narrowest_difference(const Target& section, const cJSON& before, const cJSON& asked);

// Puts `value` (checked before, see check.h) in the place of `target` and reads the section back.
// Where the value came to the board in several pieces and something else was stored, the leftovers
// of an interrupted upload may be to blame: then clears the board's buffer and tries once more.
// Whether it was stored in the end, the answer tells.
Answer store(TuningClient& client, const Target& target, const cJSON& value);

// One single value, or one entry of a table. Null where there was none.
struct ChangedValue {
  std::string path;   // "gamma/gammaTab_R/512"
  std::string table;  // of an entry, that of its table: "gamma/gammaTab_R"; else empty
  int index = 0;      // in the table
  const cJSON* before;
  const cJSON* asked;
  const cJSON* stored;

  [[nodiscard]] bool is_stored_as_asked() const;
};

// The single values at and below `place` that were to be changed, or that are not stored as asked.
// What is returned points into the three trees; each of them may be null.
std::vector<ChangedValue> compare_change(const Target& place, const cJSON* before,
                                         const cJSON* asked, const cJSON* stored);

// The same of two states.
inline std::vector<ChangedValue> compare_states(const Target& place, const cJSON* before,
                                                const cJSON* after) {
  return compare_change(place, before, after, after);
}

}  // namespace pqclient

#endif  // PQCLIENT_CHANGE_H_
