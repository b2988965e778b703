#include "session.h"

#include <unistd.h>

#include <chrono>
#include <iostream>

#include "pqclient/error.h"

namespace {

using std::chrono::milliseconds;

// One time-out replaces all of them, but not the pause that the board needs.
pqclient::Timing timing_of(std::optional<double> seconds) {
  pqclient::Timing timing;
  if (seconds) {
    const auto time = std::chrono::ceil<milliseconds>(std::chrono::duration<double>(*seconds));
    timing.connect = timing.answer = timing.slow_answer = timing.dump = time;
  }
  return timing;
}

}  // namespace

const Board& Session::board() {
  if (!board_) board_ = choose_board(options_, read_configuration());
  return *board_;
}

pqclient::TuningClient& Session::client() {
  if (!client_) {
    const auto seconds =
        options_.timeout_seconds ? options_.timeout_seconds : board().timeout_seconds;
    client_.emplace(board().address, timing_of(seconds), "pqctl " PQCTL_VERSION);
  }
  return *client_;
}

void Session::require_writable() {
  if (!board().is_read_only) return;
  throw pqclient::Error(pqclient::ErrorKind::kInput,
                        "board " + board().text() +
                            " is read-only, nothing sent: to change it, "
                            "remove read-only = true from " +
                            read_configuration().file);
}

pqclient::JsonPtr Session::read_section(const pqclient::Target& section) {
  const pqclient::Answer answer = client().query(section.document, section.section_pointer());
  const bool is_as_expected =
      answer.value != nullptr &&
      (section.document == pqclient::Document::kPq ? cJSON_IsObject(answer.value) != 0
                                                   : cJSON_IsArray(answer.value) != 0);
  if (!is_as_expected) {
    throw pqclient::Error(pqclient::ErrorKind::kBadAnswer,
                          "the answer has no " + std::string(section.section->name));
  }
  return pqclient::copy_json(*answer.value);
}

void Session::note(std::string_view text) const {
  if (!options_.quiet) std::cerr << error_palette().yellow("note: ") << text << '\n';
}

bool Session::is_interactive() const {
  return !options_.quiet && isatty(STDERR_FILENO) != 0;
}

Palette Session::palette() const {
  return {options_.color, STDOUT_FILENO};
}

Palette Session::error_palette() const {
  return {options_.color, STDERR_FILENO};
}
