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

// Error texts of the other kinds already name the address, or do not concern the board.
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

// Opens descriptors 0 to 2 if they are closed. Otherwise the connection would get one of these
// numbers, and printed text would go to the board. The open modes are reversed, so that reading and
// writing still fail.
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
