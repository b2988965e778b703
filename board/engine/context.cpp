#include "engine/context.h"

#include <unistd.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <string>
#include <system_error>

#include "description/description.h"
#include "engine/cube_file.h"
#include "engine/model.h"

namespace board::engine {
namespace {

// A process that runs outside of a board has no description; its engine is a sound one.
Engine described_engine() {
  const std::filesystem::path file = board_folder() / "description.json";
  return std::filesystem::exists(file) ? read_description(file).engine : Engine::kComplete;
}

[[noreturn]] void hang() {
  for (;;)
    pause();
}

// Only what the write itself has made: a device or a link that the path names is not ours to
// remove.
void remove_part(const char* path) {
  std::error_code error;
  if (std::filesystem::is_regular_file(std::filesystem::symlink_status(path, error))) {
    std::filesystem::remove(path, error);
  }
}

}  // namespace

Result complain(Result result, const char* what) {
  (void)std::fprintf(stderr, "hwpq_lite: %s (result %d)\n", what, result);
  return result;
}

Result run(Context& context, const std::filesystem::path& document) {
  try {
    const Engine engine = described_engine();
    if (engine == Engine::kRunHangs) hang();
    if (engine == Engine::kRunFails)
      return complain(kBroken, "run fails, as this board's description asks");
    context.lut = compute_lut(read_parameters(document));
    return kDone;
  } catch (const std::exception& error) {
    return complain(kUnreadableDocument, error.what());
  }
}

Result save(const Context& context, const char* path) {
  if (!context.lut) return complain(kNotRun, "save_3dlut: there is no table, run first");
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  if (file) {
    file << to_cube_text(*context.lut);
    file.close();
    if (file) return kDone;
    remove_part(path);
  }
  return complain(kNotWritten, (std::string("save_3dlut: cannot write ") + path).c_str());
}

}  // namespace board::engine
