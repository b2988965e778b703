#include "load/requests.h"

#include <cstring>
#include <stdexcept>

namespace load {
namespace {

std::string to_text(const pqclient::Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

template <typename Record>
Record receive_record(Wire& wire) {
  const std::string bytes = wire.receive(sizeof(Record));
  Record record{};
  std::memcpy(&record, bytes.data(), sizeof(record));
  return record;
}

}  // namespace

std::string document_packet(pqclient::DocumentCommand command, std::string_view text) {
  return to_text(pqclient::make_document_packet(command, text));
}

std::string command_packet(pqclient::Command command, std::initializer_list<uint8_t> arguments) {
  return to_text(pqclient::make_command_packet(command, {arguments.begin(), arguments.size()}));
}

std::string query_text(std::string_view path) {
  return R"([{"op":"test","path":")" + std::string(path) +
         R"(","toolversion":"load","platform":1}])";
}

std::string replace_text(std::string_view path, std::string_view value, size_t padding) {
  return R"([{"op":"replace","path":")" + std::string(path) + R"(","value":)" + std::string(value) +
         R"(,"toolversion":"load","platform":1,"padding":")" + std::string(padding, 'x') + R"("}])";
}

pqclient::Answer receive_answer(Wire& wire, std::string_view path) {
  const auto header = receive_record<pqclient::DocumentHeader>(wire);
  const std::string rest = wire.receive(pqclient::reply_bytes_after(header));
  auto answer =
      pqclient::parse_answer({reinterpret_cast<const uint8_t*>(rest.data()), header.data_length});
  if (answer.path != path || answer.value == nullptr) {
    throw std::runtime_error("asked for " + std::string(path) + ", got " +
                             (answer.value == nullptr ? "no value for " : "") + answer.path);
  }
  return answer;
}

pqclient::Answer ask(Wire& wire, pqclient::DocumentCommand command, std::string_view path) {
  wire.send(document_packet(command, query_text(path)));
  return receive_answer(wire, path);
}

void receive_acknowledgement(Wire& wire, pqclient::Command command) {
  pqclient::check_acknowledgement(receive_record<pqclient::CommandPacket>(wire), command);
}

}  // namespace load
