// The signals that end the daemon: SIGINT, SIGQUIT and SIGTERM.
//
// They stay blocked in every thread from the start of main on and are let in only while the main
// thread waits: so none is lost between looking at the flags and waiting, and the handler
// interrupts nothing that holds a lock.
#ifndef SIGNALS_H_
#define SIGNALS_H_

#include <memory>

#include "netserver/tcp_server.h"

// Blocks the ending signals in this thread and those it starts.
void block_ending_signals();

// Installs the handler. A signal that our parent had ignored stays ignored.
void install_signal_handlers();

// Waits until an ending signal has been handled or the server has stopped. What signal_handle shuts
// down is `server`.
void wait_for_end(TCPServer& server);

// Asks everything to end and joins the server's threads, which takes up to 3 seconds, or as long as
// a request that is being handled. A further signal meanwhile does no harm.
void signal_handle(int sig);

#endif  // SIGNALS_H_
