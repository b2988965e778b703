// Replies on the wire, through a pair of connected sockets.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/time.h>

#include <array>
#include <chrono>
#include <string>
#include <thread>

#include "base/owner.h"
#include "qxaiq/document_packet.h"
#include "qxaiq/send.h"

namespace {

struct SocketPair {
  SocketPair() {
    std::array<int, 2> sockets{};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, sockets.data()), 0);
    ours.reset(sockets[0]);
    clients.reset(sockets[1]);
    // As the server sets it for its clients.
    const timeval second{0, 100'000};
    setsockopt(ours.get(), SOL_SOCKET, SO_SNDTIMEO, &second, sizeof(second));
  }
  [[nodiscard]] std::string receive(size_t size) const {
    std::string bytes(size, '\0');
    size_t received = 0;
    while (received < size) {
      const ssize_t length = recv(clients.get(), bytes.data() + received, size - received, 0);
      if (length <= 0) break;
      received += static_cast<size_t>(length);
    }
    bytes.resize(received);
    return bytes;
  }
  pq::UniqueFd ours, clients;
};

TEST(Reply, NothingIsSentForANullText) {
  SocketPair pair;
  EXPECT_EQ(sendData(pair.ours.get(), nullptr), -1);
  pair.ours.reset();
  EXPECT_EQ(pair.receive(1), "");
}

TEST(Reply, OfAnySizeArrivesWholeAtASlowReader) {
  const SocketPair pair;
  std::string text(3'000'000, 'x');
  std::thread sender([&] { EXPECT_EQ(sendData(pair.ours.get(), text.data()), 3'000'030); });
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  EXPECT_EQ(pair.receive(3'000'030).substr(25, text.size()), text);
  sender.join();
}

TEST(Reply, ToAReaderThatVanishedIsAFailureAndNoSignal) {
  SocketPair pair;
  pair.clients.reset();
  std::string text = "abc";
  EXPECT_EQ(sendData(pair.ours.get(), text.data()), -1);
}

}  // namespace
