#include "pqclient/tuning_client.h"

#include <array>
#include <thread>
#include <utility>

#include "pqclient/error.h"

namespace pqclient {
namespace {

// Longer than either document, so longer than any leftovers of an interrupted upload.
constexpr std::size_t kClearingLength = std::size_t{512} * 1024;

constexpr std::string_view kStrayChunk = "no packet starts like this";

JsonPtr make_operation(std::string_view name, std::string_view path) {
  JsonPtr operation(cJSON_CreateObject());
  add_member(*operation, "op", make_string(name));
  add_member(*operation, "path", make_string(path));
  return operation;
}

DocumentCommand query_command(Document document) {
  return document == Document::kPq ? DocumentCommand::kQueryPq : DocumentCommand::kQueryAipq;
}

DocumentCommand update_command(Document document) {
  return document == Document::kPq ? DocumentCommand::kUpdatePq : DocumentCommand::kUpdateAipq;
}

Answer receive_answer(Connection& connection, const Deadline& deadline) {
  DocumentHeader header{};
  connection.receive_exactly(bytes_of(header), deadline);
  Bytes rest(reply_bytes_after(header));
  connection.receive_exactly(rest, deadline);
  return parse_answer(ByteView(rest).first(header.data_length));
}

DumpHeader receive_dump_header(Connection& connection, const Deadline& deadline) {
  DumpHeader header{};
  try {
    connection.receive_exactly(bytes_of(header), deadline);
  } catch (const Error& error) {
    if (error.kind() != ErrorKind::kTimeout) throw;
    throw Error(ErrorKind::kTimeout, std::string(error.what()) +
                                         ". The board also stays silent when its display service "
                                         "writes no dump: is a picture on screen?");
  }
  return header;
}

}  // namespace

JsonPtr replace_operation(std::string_view path, const cJSON& value) {
  JsonPtr operation = make_operation("replace", path);
  add_member(*operation, "value", copy_json(value));
  return operation;
}

TuningClient::TuningClient(Address address, Timing timing, std::string tool_version)
    : address_(std::move(address)), timing_(timing), tool_version_(std::move(tool_version)) {}

// A query is sent as the patch operation "test", which never changes anything.
// It has no "value", because the board would return that next to its own.
Answer TuningClient::query(Document document, std::string_view path) {
  Connection connection = take_connection();
  const Deadline deadline(change_pending_ ? timing_.slow_answer : timing_.answer);
  const std::string text = request_text(make_operation("test", path));
  connection.send_all(make_document_packet(query_command(document), text), deadline);
  Answer answer = receive_answer(connection, deadline);
  if (answer.path != path) {
    throw Error(ErrorKind::kBadAnswer, "asked for \"" + std::string(path) +
                                           "\", the answer is for " + quoted_text(answer.path));
  }
  if (answer.platform) platform_ = answer.platform;
  change_pending_ = false;
  connection_ = std::move(connection);
  return answer;
}

void TuningClient::update(Document document, const cJSON& operation) {
  if (cJSON_IsString(cJSON_GetObjectItemCaseSensitive(&operation, "path")) == 0) {
    throw Error(ErrorKind::kInput, "a patch operation needs a \"path\": " + print_json(operation));
  }
  send_unanswered(
      make_document_packet(update_command(document), request_text(copy_json(operation))));
}

// Takes two steps, because the board restarts its byte count at the start of a document but keeps
// counting after its end. The first is a document of several pieces, which sets the count to a
// known value; it is a failing test, so it changes nothing. The second is a chunk that starts no
// packet: it pushes the count past the end, and the board discards everything collected.
void TuningClient::clear_upload_buffer() {
  JsonPtr operation = make_operation("test", "/nothing");
  add_member(*operation, "value", JsonPtr(cJSON_CreateNull()));
  std::string text = request_text(std::move(operation));
  text.insert(text.size() - 1, kClearingLength - text.size(), ' ');
  send_unanswered(make_document_packet(DocumentCommand::kUpdatePq, text));
  send_unanswered({reinterpret_cast<const std::uint8_t*>(kStrayChunk.data()), kStrayChunk.size()});
}

void TuningClient::show_pattern(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
  run_command(Command::kPattern, std::array{red, green, blue});
}

void TuningClient::pattern_mode(bool enter) {
  run_command(Command::kPatternMode, std::array{enter ? kFlagFirst : kFlagSecond});
}

// The connection is not reused: a dump does not contain its length, and surplus bytes would be
// taken for the next answer.
Dump TuningClient::request_dump(DumpSide side) {
  Connection connection = take_connection();
  const std::array flag{side == DumpSide::kInput ? kFlagFirst : kFlagSecond};
  const Deadline deadline(timing_.dump);
  connection.send_all(make_command_packet(Command::kDump, flag), deadline);
  Dump dump = start_dump(receive_dump_header(connection, deadline));
  connection.receive_exactly(dump.data, Deadline(timing_.dump));
  return dump;
}

// Moved out, so that an exception drops it; put back after a complete exchange. A connection that
// the board has closed is replaced, except after an update: a query on a new connection does not
// prove that the update was handled.
Connection TuningClient::take_connection() {
  std::this_thread::sleep_until(quiet_until_);
  std::optional<Connection> kept = std::exchange(connection_, std::nullopt);
  if (kept && (change_pending_ || kept->is_idle())) return std::move(*kept);
  return {address_, Deadline(timing_.connect)};
}

// The text of a request: an array of one operation, which also names the tool and the expected
// board.
std::string TuningClient::request_text(JsonPtr operation) const {
  add_member(*operation, "toolversion", make_string(tool_version_));
  add_member(*operation, "platform", JsonPtr(cJSON_CreateNumber(platform_.value_or(0))));
  return "[" + print_json(*operation) + "]";
}

void TuningClient::send_unanswered(ByteView bytes) {
  Connection connection = take_connection();
  const Deadline deadline(timing_.slow_answer);
  connection.send_all(bytes, deadline);
  connection.wait_until_arrived(deadline);  // the pause must not start while bytes are still queued
  quiet_until_ = std::chrono::steady_clock::now() + timing_.gap;
  change_pending_ = true;
  connection_ = std::move(connection);
}

void TuningClient::run_command(Command command, ByteView arguments) {
  Connection connection = take_connection();
  const Deadline deadline(timing_.slow_answer);
  connection.send_all(make_command_packet(command, arguments), deadline);
  CommandPacket packet{};
  connection.receive_exactly(bytes_of(packet), deadline);
  check_acknowledgement(packet, command);
  change_pending_ = false;
  connection_ = std::move(connection);
}

}  // namespace pqclient
