// Fixture of the tests that talk to the real daemon on a simulated board, as a tool would.
#ifndef TESTS_SCENARIO_DAEMON_TEST_H_
#define TESTS_SCENARIO_DAEMON_TEST_H_

#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "pqclient/connection.h"
#include "pqclient/packets.h"
#include "pqclient/tuning_client.h"
#include "support/board_test.h"

namespace scenario {

inline constexpr char kPqDocument[] = "/data/vendor/qxalgo/pq_config.json";
inline constexpr char kAipqDocument[] = "/data/vendor/qxalgo/aipq_config.json";

class DaemonTest : public board::BoardTest {
 protected:
  // Starts the daemon on a board that has both documents already, as the daemon once created them,
  // so that start-up takes no time.
  board::Board& start_with_documents(const std::string& board = "tv",
                                     board::BoardOptions options = {});
  // The same on a custom board, with the documents of "tv".
  board::Board& start_with_documents(const board::Description& board);

  // Puts those documents in place, for tests that change more before the start.
  void put_documents(const std::string& board);

  static pqclient::TuningClient client() { return pqclient::TuningClient({}); }

  // The numbers of a table.
  static std::vector<int> table(const cJSON* section, const char* name);

  // A bare connection, for requests that no well-behaved tool would send.
  static pqclient::Connection connect() {
    return {pqclient::Address{}, pqclient::Deadline(std::chrono::seconds(20))};
  }
  static void send(pqclient::Connection& connection, std::string_view bytes);
  // Receives until `size` bytes have arrived or the time is over.
  static std::string receive(pqclient::Connection& connection, size_t size,
                             std::chrono::milliseconds time = std::chrono::seconds(20));

  // One command and its arguments, as a packet.
  static std::string command_packet(uint16_t number, const std::vector<uint8_t>& arguments);
  // Sends it on a connection of its own. Returns the bytes received until there are `size` of them
  // or the time is over.
  static std::string command(uint16_t number, const std::vector<uint8_t>& arguments,
                             std::chrono::milliseconds time = std::chrono::seconds(20),
                             size_t size = sizeof(pqclient::CommandPacket));

  // Sends one operation for the PQ or the AIPQ document and waits until the daemon has handled it,
  // redraw included.
  static void change(const std::string& operation) { change(operation, kUpdatePq); }
  static void change_aipq(const std::string& operation) { change(operation, kUpdateAipq); }

  // The daemon answers a well-formed query.
  static bool serves();

  // Waits until the daemon has taken everything off the stream.
  static void wait_until_taken();

  // A document packet, and only its start: magic, command, data length.
  static std::string document_packet(uint32_t command, const std::string& text);
  static std::string header(uint32_t command, uint32_t data_length);

 private:
  static constexpr uint32_t kUpdatePq = 0;
  static constexpr uint32_t kUpdateAipq = 2;
  static void change(const std::string& operation, uint32_t command);
};

}  // namespace scenario

#endif  // TESTS_SCENARIO_DAEMON_TEST_H_
