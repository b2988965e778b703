// A private network for the test program: a loopback interface and nothing else.
#ifndef TESTS_SUPPORT_PRIVATE_NETWORK_H_
#define TESTS_SUPPORT_PRIVATE_NETWORK_H_

namespace board {

bool in_private_network();

// Restarts this program inside a private network. Returns if that is not allowed here, or was done
// already. Must be called before any thread is started.
void enter_private_network(char** argv);

}  // namespace board

#endif  // TESTS_SUPPORT_PRIVATE_NETWORK_H_
