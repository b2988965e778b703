// A network of the test program's own: a loopback interface and nothing else.
#ifndef TESTS_SUPPORT_PRIVATE_NETWORK_H_
#define TESTS_SUPPORT_PRIVATE_NETWORK_H_

namespace board {

bool in_private_network();

// Starts this program anew inside a private network. Returns when that is not allowed here, or done
// already. To be called before any thread is started.
void enter_private_network(char** argv);

}  // namespace board

#endif  // TESTS_SUPPORT_PRIVATE_NETWORK_H_
