// The context of a command: its options, the board that they choose, and its output. Results go to
// standard output, everything else to standard error.
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
  // command: the command line without the program's name.
  explicit Session(Options options, std::string command)
      : options_(std::move(options)), command_(std::move(command)) {}

  [[nodiscard]] const Options& options() const { return options_; }

  [[nodiscard]] const std::string& command() const { return command_; }

  // Reads the list of boards on the first call. Throws Error kInput or kFile.
  const Board& board();

  // The client of that board; connects on the first request.
  pqclient::TuningClient& client();

  // Throws Error kInput if the list of boards marks this one as read-only. Must be called before
  // sending anything that changes what the board stores or shows.
  void require_writable();

  // Queries a section. Throws Error kBadAnswer if the board does not have it.
  pqclient::JsonPtr read_section(const pqclient::Target& section);

  // Sets the exit status for the case that nothing else goes wrong.
  void end_with(ExitStatus status) { status_ = status; }
  [[nodiscard]] ExitStatus status() const { return status_; }

  // Prints "note: " and the text as one line on standard error, unless --quiet is given.
  void note(std::string_view text) const;

  // True if progress bars and prompts make sense: standard error is a terminal, without --quiet.
  [[nodiscard]] bool is_interactive() const;

  // The palettes of standard output and standard error.
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
