#include "pqclient/tuning_client.h"

#include <utility>

#include "pqclient/error.h"

namespace pqclient {
namespace {

JsonPtr make_string(std::string_view text) {
  return JsonPtr(cJSON_CreateString(std::string(text).c_str()));
}

// A query is written as the one patch operation that changes nothing, whatever becomes of it.
// It carries no "value", because the board would send that back next to its own.
JsonPtr query_operation(std::string_view path) {
  JsonPtr operation(cJSON_CreateObject());
  add_member(*operation, "op", make_string("test"));
  add_member(*operation, "path", make_string(path));
  return operation;
}

Answer receive_answer(Connection& connection, const Deadline& deadline) {
  DocumentHeader header{};
  connection.receive_exactly(bytes_of(header), deadline);
  Bytes rest(reply_bytes_after(header));
  connection.receive_exactly(rest, deadline);
  return parse_answer(ByteView(rest).first(header.data_length));
}

}  // namespace

TuningClient::TuningClient(Address address, Timeouts timeouts, std::string tool_version)
    : address_(std::move(address)), timeouts_(timeouts), tool_version_(std::move(tool_version)) {}

Answer TuningClient::query_pq(std::string_view path) {
  return query(DocumentCommand::kReadPq, path);
}

Answer TuningClient::query_aipq(std::string_view path) {
  return query(DocumentCommand::kReadAipq, path);
}

Answer TuningClient::query(DocumentCommand command, std::string_view path) {
  Connection connection = take_connection();
  const Deadline deadline(timeouts_.answer);
  connection.send_all(make_document_packet(command, request_text(query_operation(path))), deadline);
  Answer answer = receive_answer(connection, deadline);
  if (answer.path != path) {
    throw Error(ErrorKind::kBadAnswer, "asked " + connection.address() + " for \"" +
                                           std::string(path) + "\", the answer is for \"" +
                                           answer.path + "\"");
  }
  platform_ = answer.platform.value_or(platform_);
  connection_ = std::move(connection);
  return answer;
}

// The text of a request: an array of the one operation, which also says who asks and for what
// board.
std::string TuningClient::request_text(JsonPtr operation) const {
  add_member(*operation, "toolversion", make_string(tool_version_));
  add_member(*operation, "platform", JsonPtr(cJSON_CreateNumber(platform_)));
  return "[" + print_json(*operation) + "]";
}

// Moved out, so that an exception on the way drops it; put back after a complete exchange.
Connection TuningClient::take_connection() {
  if (connection_) return *std::exchange(connection_, std::nullopt);
  return {address_, Deadline(timeouts_.connect)};
}

}  // namespace pqclient
