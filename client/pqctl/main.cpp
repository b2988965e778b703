// pqctl: reads and changes the picture quality of a board from the command line.
#include <fcntl.h>
#include <unistd.h>

#include <exception>
#include <iostream>

#include "command_line.h"
#include "interrupt.h"
#include "pqclient/error.h"
#include "session.h"

namespace {

// The texts of the other kinds name the address already, or have nothing to do with it.
void print_error(Session& session, const pqclient::Error& error) {
  std::cerr << session.error_palette().red("pqctl: ") << error.what();
  if (error.kind() == pqclient::ErrorKind::kBadAnswer) {
    std::cerr << " (board: " << session.board().text() << ")";
  }
  std::cerr << '\n';
}

ExitStatus run(const CommandLine& line) {
  Session session(line.options, line.text);
  try {
    line.command(session);
    if (!std::cout.flush()) {
      throw pqclient::Error(pqclient::ErrorKind::kFile, "cannot write to standard output");
    }
    return session.status();
  } catch (const pqclient::Error& error) {
    print_error(session, error);
    return exit_status_of(error.kind());
  } catch (const Interrupted&) {
    return ExitStatus::kInterrupted;
  }
}

// What the caller has closed would be given to the connection, and what is printed would go to the
// board. Opened the wrong way round, so that reading and writing fail as they would have.
void fill_closed_descriptors() {
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) >= 0) continue;
    (void)open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

int main(int argc, char** argv) {
  fill_closed_descriptors();
  try {
    CommandLine line;
    const auto ended = parse_command_line(argc, argv, line);
    return static_cast<int>(ended ? *ended : run(line));
  } catch (const std::exception& error) {
    std::cerr << "pqctl: " << error.what() << '\n';
    return static_cast<int>(ExitStatus::kUsage);
  }
}
