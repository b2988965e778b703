// A board in the test's own process: listens on loopback and plays a script to whoever connects.
#ifndef TESTS_CLIENT_FAKE_BOARD_H_
#define TESTS_CLIENT_FAKE_BOARD_H_

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <thread>

#include "pqclient/connection.h"
#include "pqclient/packets.h"

// A reply as the board frames it: "[", text, a zero byte, no closing bracket.
pqclient::Bytes document_reply(std::string_view text);

// The board's end of one connection. Nothing here waits longer than 10 seconds.
class Visitor {
 public:
  explicit Visitor(int socket) : socket_(socket) {}

  // Takes one packet. Returns the text of a document packet; empty for a command packet, and when
  // the client has gone.
  std::string receive_request();

  void send(pqclient::ByteView bytes);

  void reply(std::string_view text) { send(document_reply(text)); }

  // Says nothing until the client has gone.
  void stall();

 private:
  pqclient::Bytes receive(std::size_t n);

  int socket_;
};

class FakeBoard {
 public:
  // The script runs once for each connection, one connection after the other.
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
