// One place in a document: what a person writes as SECTION[/MEMBER[/INDEX]], and in the AIPQ
// document, where every section is there once for each scene, as SECTION[/SCENE[/MEMBER[/INDEX]]].
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
  std::optional<int> scene;          // AIPQ only, in 0 .. 11
  const Member* member = nullptr;    // null: all members
  std::optional<int> index;          // of a table's entry, in 0 .. count - 1

  // As the user writes it, a scene by its number: "gamma/gammaTab_R/512", "dci/4/dciEnable".
  [[nodiscard]] std::string text() const;

  // JSON Pointer (RFC 6901), from where the document's requests start: "/gamma/gammaTab_R/512".
  [[nodiscard]] std::string pointer() const { return "/" + text(); }
  [[nodiscard]] std::string section_pointer() const { return "/" + std::string(section->name); }

  // The value at this place in the answer to a query of the section; null when it is not there.
  [[nodiscard]] const cJSON* find_in(const cJSON& section_value) const;
};

// Throw Error kInput that names the nearest known members, or the scenes or indices that exist.
// A slash in front is taken too; a scene by its number or its name.
Target parse_target(std::string_view text);
Target parse_aipq_target(std::string_view text);

}  // namespace pqclient

#endif  // PQCLIENT_TARGET_H_
