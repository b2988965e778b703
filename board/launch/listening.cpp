#include "launch/listening.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace board {
namespace {

// proc(5): "sl local_address rem_address st tx_queue:rx_queue ...", addresses as ADDRESS:PORT, all
// numbers hexadecimal.
constexpr const char* kSockets = "/proc/self/net/tcp";

struct Socket {
  unsigned long remote_port;
  std::string state;
  unsigned long unread;
};

constexpr const char* kEstablished = "01";
constexpr const char* kListening = "0A";

unsigned long after_colon(const std::string& text) {
  const size_t colon = text.rfind(':');
  return colon == std::string::npos ? 0 : std::strtoul(text.c_str() + colon + 1, nullptr, 16);
}

std::vector<Socket> sockets_on(uint16_t port) {
  std::vector<Socket> sockets;
  std::ifstream list(kSockets);
  for (std::string line; std::getline(list, line);) {
    std::istringstream words(line);
    std::string number, local, remote, state, queues;
    words >> number >> local >> remote >> state >> queues;
    if (after_colon(local) == port)
      sockets.push_back({after_colon(remote), state, after_colon(queues)});
  }
  return sockets;
}

}  // namespace

bool listening(uint16_t port) {
  return std::ranges::any_of(sockets_on(port),
                             [](const Socket& socket) { return socket.state == kListening; });
}

bool holds_unread_bytes(uint16_t port, uint16_t client_port) {
  return std::ranges::any_of(sockets_on(port), [client_port](const Socket& socket) {
    return socket.state == kEstablished && socket.unread > 0 &&
           (client_port == 0 || socket.remote_port == client_port);
  });
}

}  // namespace board
