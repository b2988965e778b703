// What pqctl can do. Each function is one command, free of the command line's grammar, and may
// throw pqclient::Error. What was asked for goes to standard output, everything else to standard
// error.
#ifndef PQCTL_COMMANDS_H_
#define PQCTL_COMMANDS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "pqclient/tuning_client.h"

// Options that go with any command.
struct GlobalOptions {
  pqclient::Address address;
  std::optional<double> timeout_seconds;  // in place of every default time-out
  bool json = false;                      // values as JSON on standard output, and nothing else

  [[nodiscard]] pqclient::TuningClient client() const;
};

// path: SECTION[/MEMBER[/INDEX]], with a scene behind the section in the AIPQ document.
void show_value(const GlobalOptions& options, pqclient::Document document, const std::string& path);

// Sends the value, reads it back and shows old, new and stored. Throws kMismatch when they differ.
void set_value(const GlobalOptions& options, pqclient::Document document, const std::string& path,
               const std::string& value);

// Applies a JSON Patch file (RFC 6902; "-" is standard input) to the PQ document.
// The operations are applied here, to the sections as the board has them. What came out is checked
// and sent section by section: one change and one redraw for each, however many operations there
// are, and nothing at all when one of them is wrong.
void patch_document(const GlobalOptions& options, const std::string& file);

// red, green, blue
void show_pattern(const GlobalOptions& options, const std::array<std::uint8_t, 3>& colour);

// force: also when DCI is off already, which may lose the switch that the board has saved.
void enter_pattern_mode(const GlobalOptions& options, bool force);

// Closes the test colour; DCI is then never off because pattern mode had not been entered.
void leave_pattern_mode(const GlobalOptions& options);

// Writes a PNG file; "-" is standard output.
void save_dump(const GlobalOptions& options, pqclient::DumpSide side, const std::string& file);

#endif  // PQCTL_COMMANDS_H_
