#include <chrono>
#include <iostream>
#include <string>

#include "commands.h"
#include "pqclient/error.h"
#include "pqclient/target.h"
#include "print_value.h"

using pqclient::Document;

pqclient::TuningClient GlobalOptions::client() const {
  pqclient::Timing timing;
  if (timeout_seconds) {
    const auto time = std::chrono::ceil<std::chrono::milliseconds>(
        std::chrono::duration<double>(*timeout_seconds));
    timing.connect = timing.answer = timing.slow_answer = timing.dump = time;
  }
  return pqclient::TuningClient(address, timing, "pqctl " PQCTL_VERSION);
}

void show_value(const GlobalOptions& options, Document document, const std::string& path) {
  const pqclient::Target target =
      document == Document::kPq ? pqclient::parse_target(path) : pqclient::parse_aipq_target(path);
  pqclient::TuningClient client = options.client();
  const pqclient::Answer answer = client.query(document, target.section_pointer());
  const cJSON* value = answer.value != nullptr ? target.find_in(*answer.value) : nullptr;
  if (value == nullptr) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer, "the answer holds no " + target.text());
  }
  if (options.json) {
    std::cout << pqclient::print_json(*value) << '\n';
  } else {
    print_value(std::cout, *value, target);
  }
}
