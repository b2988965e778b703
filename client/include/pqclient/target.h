// One place in a document: what a person writes as SECTION[/MEMBER[/INDEX]].
#ifndef PQCLIENT_TARGET_H_
#define PQCLIENT_TARGET_H_

#include <optional>
#include <string>
#include <string_view>

#include "pqclient/json.h"
#include "pqclient/schema.h"

namespace pqclient {

struct Target {
  const Section* section = nullptr;  // never null
  const Member* member = nullptr;    // null: the whole section
  std::optional<int> index;          // of a table's entry, in 0 .. count - 1

  // As the user writes it: "gamma/gammaTab_R/512".
  [[nodiscard]] std::string text() const;

  // JSON Pointer (RFC 6901) into the "pq_tuning_param" object: "/gamma/gammaTab_R/512".
  [[nodiscard]] std::string pointer() const { return "/" + text(); }

  // The value at this place in `section_value`, the section's object; null when it is not there.
  [[nodiscard]] const cJSON* find_in(const cJSON& section_value) const;
};

// Throws Error kInput that names the nearest known members, or the indices that exist.
// A slash in front is taken too.
Target parse_target(std::string_view text);

}  // namespace pqclient

#endif  // PQCLIENT_TARGET_H_
