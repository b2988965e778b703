#include "launch/session.h"

#include <csignal>
#include <cstdio>

namespace board {
namespace {

using std::chrono::milliseconds;

// For companions that are told to end.
constexpr milliseconds kCompanionTimeout{1000};

}  // namespace

Session::Companion::Companion(const Options& options, const std::filesystem::path& file)
    : path(file), program(options.container, {file}, options.environment, options.output) {}

Session::Session(const Options& options) : output_(options.output) {
  for (const auto& path : options.companions)
    companions_.emplace_back(options, path);
  daemon_.emplace(options.container, options.daemon, options.environment, options.output);
}

std::optional<int> Session::wait(milliseconds timeout) {
  report_lost_companions();
  const auto status = daemon_->wait(timeout);
  if (status) end_companions();
  return status;
}

void Session::report_lost_companions() {
  companions_.remove_if([this](Companion& companion) {
    const auto status = companion.program.wait(milliseconds(0));
    if (status) {
      ::dprintf(output_, "board: %s ended with status %d\n", companion.path.c_str(), *status);
    }
    return status.has_value();
  });
}

void Session::end_companions() {
  for (const auto& companion : companions_)
    companion.program.signal(SIGTERM);
  for (auto& companion : companions_)
    (void)companion.program.wait(kCompanionTimeout);
  companions_.clear();
}

}  // namespace board
