// A board inside the test's process: listens on loopback and plays a script to each client.
#ifndef TESTS_CLIENT_FAKE_BOARD_H_
#define TESTS_CLIENT_FAKE_BOARD_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "pqclient/connection.h"
#include "pqclient/packets.h"

// A reply in the board's framing: "[", text, a zero byte, no closing bracket.
pqclient::Bytes document_reply(std::string_view text);

// The board's end of one connection. Nothing here waits longer than 10 seconds.
class Visitor {
 public:
  explicit Visitor(int socket) : socket_(socket) {}

  // Receives one packet. Returns the text of a document packet; empty for a command packet, or if
  // the client has closed.
  std::string receive_request();

  void send(pqclient::ByteView bytes);

  void reply(std::string_view text) { send(document_reply(text)); }

  // Sends nothing until the client closes.
  void stall();

 private:
  pqclient::Bytes receive(std::size_t n);

  int socket_;
};

class FakeBoard {
 public:
  // The script runs for each connection, one connection after the other.
  explicit FakeBoard(std::function<void(Visitor&)> script);
  ~FakeBoard();
  FakeBoard(const FakeBoard&) = delete;
  FakeBoard& operator=(const FakeBoard&) = delete;

  [[nodiscard]] pqclient::Address address() const { return {"127.0.0.1", port_}; }

 private:
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::thread thread_;
};

#endif  // TESTS_CLIENT_FAKE_BOARD_H_
