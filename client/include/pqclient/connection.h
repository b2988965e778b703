// A TCP connection that cannot hang: every operation ends by its deadline.
// It carries bytes only; packets.h and tuning_client.h give them meaning.
// One thread at a time. Failures throw Error and leave the connection open, but the amount sent or
// received is then unknown: open a new connection to start over.
#ifndef PQCLIENT_CONNECTION_H_
#define PQCLIENT_CONNECTION_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "pqclient/error.h"
#include "pqclient/packets.h"

namespace pqclient {

struct Address {
  std::string host = "127.0.0.1";  // name, IPv4 or IPv6 address
  std::uint16_t port = kDefaultPort;

  // "192.0.2.7:5543", "[2001:db8::7]:5543"
  [[nodiscard]] std::string text() const;

  bool operator==(const Address&) const = default;
};

// "192.0.2.7", "192.0.2.7:5543", "board.example:5543", "2001:db8::7", "[2001:db8::7]:5543".
// Throws Error kInput if there is no host or the port is invalid.
Address parse_address(std::string_view text);

// A point in time that remembers its original distance, for the error text.
class Deadline {
 public:
  explicit Deadline(std::chrono::milliseconds budget)
      : budget_(budget), end_(std::chrono::steady_clock::now() + budget) {}

  [[nodiscard]] std::chrono::milliseconds budget() const { return budget_; }
  // Never negative.
  [[nodiscard]] std::chrono::milliseconds left() const;

 private:
  std::chrono::milliseconds budget_;
  std::chrono::steady_clock::time_point end_;
};

class Connection {
 public:
  // Tries the host's addresses in turn. Throws kConnect, also after the deadline.
  // Name resolution uses the resolver's own time-outs.
  Connection(const Address& address, Deadline deadline);
  Connection(Connection&& other) noexcept
      : address_(std::move(other.address_)), socket_(std::exchange(other.socket_, -1)) {}
  Connection& operator=(Connection&& other) noexcept;
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;
  ~Connection();

  // Throws kTimeout, or kConnectionLost if the board has closed; never raises SIGPIPE.
  void send_all(ByteView bytes, Deadline deadline);

  // Waits until the peer's TCP has acknowledged everything that was sent (through adb: adb's own).
  // Throws kTimeout, or kConnectionLost on a reset.
  void wait_until_arrived(Deadline deadline);

  // Waits for at least one byte; returns the number received, 0 if the board has closed.
  // Throws kTimeout, or kConnectionLost on a reset.
  std::size_t receive_some(std::span<std::uint8_t> into, Deadline deadline);

  // Fills all of `into`. Throws kTimeout, or kConnectionLost if the board closes before that.
  void receive_exactly(std::span<std::uint8_t> into, Deadline deadline);

  // True if open with no unexpected bytes received. False once the board has closed.
  [[nodiscard]] bool is_idle() const;

  // The address as the user gave it, for messages.
  [[nodiscard]] const std::string& address() const { return address_; }

 private:
  [[nodiscard]] std::string busy_text(const Deadline& deadline) const;
  [[nodiscard]] Error lost_while_sending(int error) const;
  std::optional<std::size_t> try_receive(std::span<std::uint8_t> into, const Deadline& deadline);

  std::string address_;
  int socket_ = -1;
};

}  // namespace pqclient

#endif  // PQCLIENT_CONNECTION_H_
