// What a command works with: the options, the board that they choose, and where its words go.
// What was asked for goes to standard output, everything else to standard error.
#ifndef PQCTL_SESSION_H_
#define PQCTL_SESSION_H_

#include <optional>
#include <string>
#include <string_view>

#include "configuration.h"
#include "exit_status.h"
#include "options.h"
#include "palette.h"
#include "pqclient/target.h"
#include "pqclient/tuning_client.h"

class Session {
 public:
  // command: what the user has typed, without the program's name.
  explicit Session(Options options, std::string command)
      : options_(std::move(options)), command_(std::move(command)) {}

  [[nodiscard]] const Options& options() const { return options_; }

  [[nodiscard]] const std::string& command() const { return command_; }

  // Reads the list of boards at first need. Throws Error kInput or kFile.
  const Board& board();

  // To that board; connects at first need.
  pqclient::TuningClient& client();

  // Throws Error kInput when the list of boards says that nothing may be changed on this one. To be
  // called before anything is sent that changes what the board stores or shows.
  void require_writable();

  // A section as the board has it. Throws Error kBadAnswer when it has none.
  pqclient::JsonPtr read_section(const pqclient::Target& section);

  // How pqctl ends if nothing else goes wrong.
  void end_with(ExitStatus status) { status_ = status; }
  [[nodiscard]] ExitStatus status() const { return status_; }

  // One line to standard error, unless the user wants quiet: "note: " and the text.
  void note(std::string_view text) const;

  // Progress bars and prompts make sense: standard error is a terminal, and nobody asked for quiet.
  [[nodiscard]] bool is_interactive() const;

  // For what goes to standard output and to standard error.
  [[nodiscard]] Palette palette() const;
  [[nodiscard]] Palette error_palette() const;

 private:
  Options options_;
  std::string command_;
  ExitStatus status_ = ExitStatus::kOk;
  std::optional<Board> board_;
  std::optional<pqclient::TuningClient> client_;
};

#endif  // PQCTL_SESSION_H_
