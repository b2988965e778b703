// One place in a document, and the one way in which people write it:
//
//   SECTION[/MEMBER[/INDEX]]             csc  csc/cscBrightness  gamma/gammaTab_R/512
//   ai/SECTION[/SCENE[/MEMBER[/INDEX]]]  ai/dci  ai/dci/nature-sky  ai/dci/nature-sky/dciEnable
//
// "ai" stands for the AIPQ document, where dci and acm are there once for each scene. A scene goes
// by its name or its number, 0 to 11. A slash in front is taken, too.
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
  std::optional<int> index;          // of a table's entry, in 0 .. count - 1

  // As people write it, a scene by its name.
  [[nodiscard]] std::string text() const;

  // JSON Pointer (RFC 6901), from where the document's requests start: "/gamma/gammaTab_R/512",
  // "/dci/4/dciEnable".
  [[nodiscard]] std::string pointer() const;
  [[nodiscard]] std::string section_pointer() const { return "/" + std::string(section->name); }

  // The value at this place in the answer to a query of the section; null when it is not there.
  [[nodiscard]] const cJSON* find_in(const cJSON& section_value) const;

  // Puts `value` there instead; in place of the whole section when this is one. Throws Error
  // kBadAnswer when it is not there.
  void replace_in(JsonPtr& section_value, JsonPtr value) const;

  // The section that this place is in.
  [[nodiscard]] Target whole_section() const { return {document, section, {}, nullptr, {}}; }
};

// Throws Error kInput that names the nearest known members, or the scenes or indices that exist.
Target parse_target(std::string_view text);

// All sections of both documents, in the order in which they are safe to write: a write to gamma
// loads the tables without the gains of csc, and the next write to csc brings the gains back. So
// csc comes last of the PQ document.
std::span<const Target> sections_in_writing_order();

}  // namespace pqclient

#endif  // PQCLIENT_TARGET_H_
