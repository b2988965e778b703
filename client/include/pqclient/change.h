// Changes that are verified: stored, read back, compared.
#ifndef PQCLIENT_CHANGE_H_
#define PQCLIENT_CHANGE_H_

#include <string>
#include <vector>

#include "pqclient/target.h"
#include "pqclient/tuning_client.h"

namespace pqclient {

// Puts `value` (checked before, see check.h) in the place of `target` and reads the section back.
// Where the value came to the board in several pieces and something else was stored, the leftovers
// of an interrupted upload may be to blame: then clears the board's buffer and tries once more.
// Whether it was stored in the end, the answer tells.
Answer store(TuningClient& client, const Target& target, const cJSON& value);

// One single value, or one entry of a table. Null where there was none.
struct ChangedValue {
  std::string path;  // "gamma/gammaTab_R/512"
  const cJSON* before;
  const cJSON* asked;
  const cJSON* stored;

  [[nodiscard]] bool is_stored_as_asked() const;
};

// The single values below `path` that were to be changed, or that are not stored as asked.
// What is returned points into the three trees; `before` and `stored` may be null.
std::vector<ChangedValue> compare_change(const std::string& path, const cJSON* before,
                                         const cJSON& asked, const cJSON* stored);

}  // namespace pqclient

#endif  // PQCLIENT_CHANGE_H_
