#include "launch/listening.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace board {
namespace {

// proc(5): "sl local_address rem_address st ...", addresses as hexadecimal ADDRESS:PORT.
constexpr const char* kSockets = "/proc/self/net/tcp";
constexpr const char* kListenState = "0A";

}  // namespace

bool listening(uint16_t port) {
  std::ifstream sockets(kSockets);
  for (std::string line; std::getline(sockets, line);) {
    std::istringstream words(line);
    std::string number, local, remote, state;
    words >> number >> local >> remote >> state;
    const size_t colon = local.rfind(':');
    if (state == kListenState && colon != std::string::npos &&
        std::strtoul(local.c_str() + colon + 1, nullptr, 16) == port) {
      return true;
    }
  }
  return false;
}

}  // namespace board
