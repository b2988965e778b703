// One place in a document, as people write it:
//
//   SECTION[/MEMBER[/INDEX]]             csc  csc/cscBrightness  gamma/gammaTab_R/512
//   ai/SECTION[/SCENE[/MEMBER[/INDEX]]]  ai/dci  ai/dci/nature-sky  ai/dci/nature-sky/dciEnable
//
// "ai" stands for the AIPQ document, which has dci and acm once for each scene. A scene is given by
// name or number, 0 to 11. A leading slash is accepted.
#ifndef PQCLIENT_TARGET_H_
#define PQCLIENT_TARGET_H_

#include <optional>
#include <string>
#include <string_view>

#include "pqclient/json.h"
#include "pqclient/schema.h"

namespace pqclient {

struct Target {
  Document document = Document::kPq;
  const Section* section = nullptr;  // never null
  std::optional<int> scene;          // AIPQ only, in 0 .. 11
  const Member* member = nullptr;    // null: all members
  std::optional<int> index;          // a table's entry, in 0 .. count - 1

  // As people write it, scenes by name.
  [[nodiscard]] std::string text() const;

  // JSON Pointer (RFC 6901) as requests need it: "/gamma/gammaTab_R/512",
  // "/dci/4/dciEnable".
  [[nodiscard]] std::string pointer() const;
  [[nodiscard]] std::string section_pointer() const { return "/" + std::string(section->name); }

  // The value at this place in the reply to a query of the section; null if it is not there.
  [[nodiscard]] const cJSON* find_in(const cJSON& section_value) const;

  // Replaces the value at this place, or the whole section if the place is one. Throws Error
  // kBadAnswer if it is not there.
  void replace_in(JsonPtr& section_value, JsonPtr value) const;

  // The section that contains this place.
  [[nodiscard]] Target whole_section() const { return {document, section, {}, nullptr, {}}; }
};

// Throws Error kInput with the nearest known members, or the valid scenes or indices.
Target parse_target(std::string_view text);

// All sections of both documents, in a safe order for writing: an update of gamma loads the tables
// without the gains of csc, and the next update of csc applies the gains again. So csc comes last
// of the PQ document.
std::span<const Target> sections_in_writing_order();

}  // namespace pqclient

#endif  // PQCLIENT_TARGET_H_
