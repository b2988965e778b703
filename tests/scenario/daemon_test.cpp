#include "scenario/daemon_test.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <thread>

#include "launch/listening.h"
#include "pqclient/error.h"

namespace scenario {
namespace {

namespace fs = std::filesystem;

// The documents that this build's daemon creates on a board, cached for the other tests of the
// build.
fs::path created_documents(const std::string& board_name) {
  const fs::path folder = fs::path(PQ_DOCUMENT_CACHE) / board_name;
  fs::create_directories(folder);
  const int lock = open((folder / "lock").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
  flock(lock, LOCK_EX);
  const fs::path done = folder / "aipq_config.json";
  if (!fs::exists(done) || fs::last_write_time(done) < fs::last_write_time(PQ_DAEMON)) {
    board::Board board(board_name, {});
    board.start();
    if (!board.wait_until_listening(board::kDaemonPort)) {
      throw std::runtime_error("the daemon did not start on a new board:\n" + board.log());
    }
    board.stop();
    constexpr auto kReplace = fs::copy_options::overwrite_existing;
    fs::copy_file(board.file(kPqDocument), folder / "pq_config.json", kReplace);
    fs::copy_file(board.file(kAipqDocument), done, kReplace);
  }
  close(lock);  // and with it the lock is gone
  return folder;
}

}  // namespace

void DaemonTest::put_documents(const std::string& name) {
  const fs::path documents = created_documents(name);
  fs::create_directories(board().file(kPqDocument).parent_path());
  constexpr auto kReplace = fs::copy_options::overwrite_existing;
  fs::copy_file(documents / "pq_config.json", board().file(kPqDocument), kReplace);
  fs::copy_file(documents / "aipq_config.json", board().file(kAipqDocument), kReplace);
}

board::Board& DaemonTest::start_with_documents(const std::string& name,
                                               board::BoardOptions options) {
  power_on(name, std::move(options));
  put_documents(name);
  return start_daemon();
}

board::Board& DaemonTest::start_with_documents(const board::Description& description) {
  power_on(description);
  put_documents("tv");
  return start_daemon();
}

std::vector<int> DaemonTest::table(const cJSON* section, const char* name) {
  std::vector<int> values;
  const cJSON* item = nullptr;
  cJSON_ArrayForEach(item, cJSON_GetObjectItemCaseSensitive(section, name)) {
    values.push_back(item->valueint);
  }
  return values;
}

void DaemonTest::send(pqclient::Connection& connection, std::string_view bytes) {
  connection.send_all({reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size()},
                      pqclient::Deadline(std::chrono::seconds(20)));
}

std::string DaemonTest::receive(pqclient::Connection& connection, size_t size,
                                std::chrono::milliseconds time) {
  const pqclient::Deadline deadline(time);
  std::string bytes;
  std::vector<uint8_t> buffer(65536);
  try {
    while (bytes.size() < size) {
      const size_t length = connection.receive_some(buffer, deadline);
      if (length == 0) break;
      bytes.append(reinterpret_cast<const char*>(buffer.data()), length);
    }
  } catch (const pqclient::Error&) {
    // After a time-out or a closed connection the result is whatever has arrived.
  }
  return bytes;
}

std::string DaemonTest::command_packet(uint16_t number, const std::vector<uint8_t>& arguments) {
  const pqclient::Bytes packet = make_command_packet(pqclient::Command{number}, arguments);
  return {packet.begin(), packet.end()};
}

std::string DaemonTest::command(uint16_t number, const std::vector<uint8_t>& arguments,
                                std::chrono::milliseconds time, size_t size) {
  auto connection = connect();
  send(connection, command_packet(number, arguments));
  return receive(connection, size, time);
}

bool DaemonTest::serves() {
  return client().query_pq("/csc").value != nullptr;
}

// A query on the same connection is answered after the update was handled. It must arrive
// separately, so the update must have left the stream first.
void DaemonTest::change(const std::string& operation, uint32_t command) {
  auto connection = connect();
  send(connection, document_packet(command, "[" + operation + "]"));
  connection.wait_until_arrived(pqclient::Deadline(std::chrono::seconds(20)));
  wait_until_taken();
  send(connection, document_packet(1, R"([{"path":"/csc"}])"));
  EXPECT_NE(receive(connection, 1, std::chrono::seconds(20)), "")
      << "no answer after " << operation;
}

void DaemonTest::wait_until_taken() {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (board::holds_unread_bytes(board::kDaemonPort)) {
    ASSERT_LT(std::chrono::steady_clock::now(), end) << "the daemon reads no more";
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

std::string DaemonTest::document_packet(uint32_t command, const std::string& text) {
  return header(command, static_cast<uint32_t>(text.size())) + text + "0000";
}

std::string DaemonTest::header(uint32_t command, uint32_t data_length) {
  pqclient::DocumentHeader header{};
  header.magic = pqclient::kDocumentMagic;
  header.command = command;
  header.data_length = data_length;
  return {reinterpret_cast<const char*>(&header), sizeof(header)};
}

}  // namespace scenario
