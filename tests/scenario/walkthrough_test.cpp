// docs/pqctl.md, command by command: the output must be as shown.
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "scenario/daemon_test.h"
#include "support/slack.h"
#include "support/temporary_folder.h"

namespace scenario {
namespace {

struct Step {
  int line = 0;  // in the document
  std::string command;
  std::string shown;  // "..." stands for any text
};

// The commands after "$ " in the document's `console` blocks, each with the lines below it.
std::vector<Step> steps_of(const std::string& document) {
  std::ifstream file(document);
  std::vector<Step> steps;
  bool in_block = false;
  int number = 0;
  for (std::string line; std::getline(file, line);) {
    ++number;
    if (line.starts_with("```")) {
      in_block = line == "```console";
    } else if (in_block && line.starts_with("$ ")) {
      steps.push_back({number, line.substr(2), ""});
    } else if (in_block) {
      steps.back().shown += line + "\n";
    }
  }
  return steps;
}

// The pieces between the dots must occur in this order, the first at the start, the last at the
// end.
bool matches(const std::string& text, const std::string& shown) {
  constexpr std::string_view kAny = "...";
  std::string_view rest = text;
  std::string_view pieces = shown;
  for (bool is_first = true;; is_first = false) {
    const size_t dots = pieces.find(kAny);
    const std::string_view piece = pieces.substr(0, dots);
    if (dots == std::string_view::npos) {
      return is_first ? rest == piece : rest.ends_with(piece);
    }
    const size_t found = rest.find(piece);
    if (found == std::string_view::npos || (is_first && found != 0)) return false;
    rest.remove_prefix(found + piece.size());
    pieces.remove_prefix(dots + kAny.size());
  }
}

// Standard output and standard error combined, followed by the exit status unless it is 0.
std::string output_of(const std::string& command) {
  FILE* pipe = ::popen(("exec 2>&1; " + command).c_str(), "r");
  std::string text;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;)
    text += static_cast<char>(c);
  const int status = ::pclose(pipe);
  if (status != 0) text += "(ended with " + std::to_string(WEXITSTATUS(status)) + ")\n";
  return text;
}

class Walkthrough : public DaemonTest {};

TEST_F(Walkthrough, ShowsWhatHappens) {
  const auto steps = steps_of(PQCTL_WALKTHROUGH);
  ASSERT_GT(steps.size(), 40U);
  board::BoardOptions options;
  // In real time it would take a minute and a half; a dump needs its second, or the whole on a slow
  // build.
  options.hurry = kSlack.count() > 0 ? 1 : 3;
  power_on("tv", options);
  put_documents("tv");
  start_daemon();
  const TemporaryFolder folder;
  const std::string home = folder.path().string();
  setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
  setenv("XDG_STATE_HOME", (home + "/state").c_str(), 1);
  setenv("PATH", (PQCTL_FOLDER ":" + std::string(std::getenv("PATH"))).c_str(), 1);
  for (const auto& [line, command, shown] : steps) {
    const std::string text = output_of("cd " + home + "; " + command);
    EXPECT_TRUE(matches(text, shown)) << "docs/pqctl.md:" << line << ": " << command << "\nshows:\n"
                                      << shown << "but now:\n"
                                      << text;
  }
}

}  // namespace
}  // namespace scenario
