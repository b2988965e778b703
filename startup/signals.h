// The signals that end the daemon: SIGINT, SIGQUIT and SIGTERM.
//
// They stay blocked in every thread from the start of main on and are let in only while the main
// thread waits: so none is lost between looking at the flags and waiting, and the handler
// interrupts nothing that holds a lock. The handler only notes that the end has come; what takes
// time, the main thread does after its wait, where a further signal can't interrupt it.
//
// SIGPIPE stays blocked for good: a log or a property service that has gone away costs a line, not
// the daemon. Its disposition stays as it is, since the programs that we start inherit that; the
// mask they don't.
#ifndef STARTUP_SIGNALS_H_
#define STARTUP_SIGNALS_H_

#include "netserver/tcp_server.h"

// Blocks the ending signals and SIGPIPE in this thread and those it starts.
void block_signals();

// Installs the handler. A signal that our parent had ignored stays ignored.
void install_signal_handlers();

// Waits until an ending signal has arrived or the server has stopped.
void wait_for_end(const TCPServer& server);

// The handler: asks everything that can block for long to end.
void signal_handle(int sig);

#endif  // STARTUP_SIGNALS_H_
