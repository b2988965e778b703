// The object behind a handle of the engine's C interface.
#ifndef BOARD_ENGINE_CONTEXT_H_
#define BOARD_ENGINE_CONTEXT_H_

#include <cstdint>
#include <filesystem>
#include <optional>

#include "colour/lut3d.h"

namespace board::engine {

// The results of the entry points.
enum Result : int32_t {
  kDone = 0,
  kNullArgument = -1,
  kUnknownConfiguration = -2,  // not the four words that this engine knows
  kUnreadableDocument = -3,    // no document, or one without parameters
  kNotRun = -4,                // asked for a table before any was computed
  kBroken = -5,                // the board's description has the engine fail
  kNotWritten = -6,            // the .cube file could not be written
};

struct Context {
  std::optional<Lut3d> lut;  // of the last run that succeeded
};

// Puts one line on standard error and returns the result.
Result complain(Result result, const char* what);

// Computes the context's table from a PQ document. On failure it keeps the table it had.
Result run(Context& context, const std::filesystem::path& document);

// Writes the context's table as a .cube file; a file that could not be written whole is removed.
Result save(const Context& context, const char* path);

}  // namespace board::engine

#endif  // BOARD_ENGINE_CONTEXT_H_
