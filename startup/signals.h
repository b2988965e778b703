// The signals that shut the daemon down: SIGINT, SIGQUIT and SIGTERM.
//
// They stay blocked in every thread from the start of main on, except while the main thread waits
// for them. So no signal is lost between the test of the flags and the wait, and the handler
// interrupts nothing that holds a lock. The handler only sets a flag; the main thread shuts down
// after its wait, where a further signal cannot interrupt it.
//
// SIGPIPE stays blocked for good: a log or a property service that has gone away costs a line, not
// the daemon. Its disposition stays as it is, because the programs that we start inherit that; the
// mask they do not.
#ifndef STARTUP_SIGNALS_H_
#define STARTUP_SIGNALS_H_

#include "netserver/tcp_server.h"

// Blocks the shutdown signals and SIGPIPE in this thread and those it starts.
void block_signals();

// Installs the handler. A signal that our parent had ignored stays ignored.
void install_signal_handlers();

// Waits until a shutdown signal has arrived or the server has stopped.
void wait_for_shutdown(const TCPServer& server);

// The handler: sets pq::quit_requested.
void signal_handle(int sig);

#endif  // STARTUP_SIGNALS_H_
