// Verified changes: written, queried again, compared.
#ifndef PQCLIENT_CHANGE_H_
#define PQCLIENT_CHANGE_H_

#include <string>
#include <vector>

#include "pqclient/target.h"
#include "pqclient/tuning_client.h"

namespace pqclient {

// The smallest place that contains every difference between two states of a section: an entry, a
// member, a scene, or the section itself (also if nothing differs). One write to it makes all the
// changes. Member order counts, because the AIPQ document keeps it.
Target narrowest_difference(const Target& section, const cJSON& before, const cJSON& asked);

// Replaces the value of `target` by `value` (checked before, see check.h) and queries the section.
// If a different value was stored and the update did not fit into one piece, leftovers of an
// interrupted upload may be the cause: then clears the board's buffer and tries once more. The
// returned answer shows the value that is stored in the end.
Answer store(TuningClient& client, const Target& target, const cJSON& value);

// One single value, or one entry of a table. A value is null where there was none.
struct ChangedValue {
  std::string path;   // "gamma/gammaTab_R/512"
  std::string table;  // for an entry, its table: "gamma/gammaTab_R"; otherwise empty
  int index = 0;      // in the table
  const cJSON* before;
  const cJSON* asked;
  const cJSON* stored;

  [[nodiscard]] bool is_stored_as_asked() const;
};

// The single values at and below `place` that were to change, or that are not stored as asked.
// The result points into the three trees; each of them may be null.
std::vector<ChangedValue> compare_change(const Target& place, const cJSON* before,
                                         const cJSON* asked, const cJSON* stored);

// The same for two states.
inline std::vector<ChangedValue> compare_states(const Target& place, const cJSON* before,
                                                const cJSON* after) {
  return compare_change(place, before, after, after);
}

}  // namespace pqclient

#endif  // PQCLIENT_CHANGE_H_
