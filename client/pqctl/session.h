// What a command works with: the options, the board that they choose, and where its words go.
// What was asked for goes to standard output, everything else to standard error.
#ifndef PQCTL_SESSION_H_
#define PQCTL_SESSION_H_

#include <optional>
#include <string>
#include <string_view>

#include "configuration.h"
#include "options.h"
#include "palette.h"
#include "pqclient/target.h"
#include "pqclient/tuning_client.h"

class Session {
 public:
  explicit Session(Options options) : options_(std::move(options)) {}

  [[nodiscard]] const Options& options() const { return options_; }

  // Reads the list of boards at first need. Throws Error kInput or kFile.
  const Board& board();

  // To that board; connects at first need.
  pqclient::TuningClient& client();

  // Throws Error kInput when the list of boards says that nothing may be changed on this one. To be
  // called before anything is sent that changes what the board stores or shows.
  void require_writable();

  // A section as the board has it. Throws Error kBadAnswer when it has none.
  pqclient::JsonPtr read_section(const pqclient::Target& section);

  // One line to standard error, unless the user wants quiet: "note: " and the text.
  void note(std::string_view text) const;

  // Progress bars and prompts make sense: standard error is a terminal, and nobody asked for quiet.
  [[nodiscard]] bool is_interactive() const;

  // For what goes to standard output and to standard error.
  [[nodiscard]] Palette palette() const;
  [[nodiscard]] Palette error_palette() const;

 private:
  Options options_;
  std::optional<Board> board_;
  std::optional<pqclient::TuningClient> client_;
};

#endif  // PQCTL_SESSION_H_
