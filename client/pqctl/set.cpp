#include <iostream>
#include <string>

#include "commands.h"
#include "effect.h"
#include "pqclient/change.h"
#include "pqclient/check.h"
#include "pqclient/error.h"
#include "report_change.h"

using pqclient::Answer;
using pqclient::Document;
using pqclient::Target;

void set_value(const GlobalOptions& options, Document document, const std::string& path,
               const std::string& value) {
  const bool is_pq = document == Document::kPq;
  const Target target = is_pq ? pqclient::parse_target(path) : pqclient::parse_aipq_target(path);
  const pqclient::JsonPtr asked = pqclient::parse_value(target, value);

  pqclient::TuningClient client = options.client();
  const Answer before = client.query(document, target.section_pointer());
  const cJSON* old = before.value != nullptr ? target.find_in(*before.value) : nullptr;
  if (old == nullptr) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer,
                          "the board's document has no " + target.text() + " to change");
  }
  const Answer after = pqclient::store(client, document, target, *asked);
  const cJSON* stored = after.value != nullptr ? target.find_in(*after.value) : nullptr;

  ChangeReport report(options.json);
  report.add(target.text(), old, *asked, stored);
  report.print(std::cout);
  if (is_pq && after.value != nullptr) print_effect_note(std::cerr, target, *after.value);
  report.throw_unless_stored();
}
