// Options of all commands.
#ifndef PQCTL_OPTIONS_H_
#define PQCTL_OPTIONS_H_

#include <cstdint>
#include <optional>
#include <string>

enum class ColorUse { kAuto, kAlways, kNever };

inline constexpr double kMaxTimeoutSeconds = 3600;

struct Options {
  std::string host;                       // as given: HOST or HOST:PORT; empty: not given
  std::optional<std::uint16_t> port;      // overrides the one in `host`
  std::string board;                      // a name in the configuration file; empty: not given
  std::optional<double> timeout_seconds;  // replaces every default time-out
  bool json = false;                      // only JSON on standard output
  bool quiet = false;                     // no notes and no progress on standard error
  ColorUse color = ColorUse::kAuto;
};

#endif  // PQCTL_OPTIONS_H_
