#include "fuzz/support/board.h"

#include <algorithm>
#include <cstring>

namespace fuzz {
namespace {

bool fails(in_process::Call call) {
  switch (call) {
    case in_process::Call::kDisplay:
      return ++board.display_calls == board.failing_display_call;
    case in_process::Call::kProperty:
      return !board.properties_can_be_set;
    case in_process::Call::kParameters:
      return !board.has_parameters;
  }
  return false;
}

template <typename Record>
void fill(Record& record, std::string_view bytes) {
  std::memcpy(&record, bytes.data(), std::min(sizeof(record), bytes.size()));
}

}  // namespace

void power_on() {
  board = {};
  in_process::platform = {};
  in_process::platform.fails = fails;
}

void fill_parameters(std::string_view bytes) {
  board::PanelDefaults& parameters = in_process::platform.parameters;
  parameters = {};
  board.has_parameters = !bytes.empty();
  if (bytes.empty()) return;
  parameters.version[0] = bytes.front() % 4;
  fill(parameters.tuning, bytes);
  fill(parameters.sharp, bytes);
  fill(parameters.ai, bytes);
}

}  // namespace fuzz
