// The packets that make up the load, and the checks of the replies.
#ifndef BENCH_LOAD_REQUESTS_H_
#define BENCH_LOAD_REQUESTS_H_

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>

#include "load/wire.h"
#include "pqclient/answer.h"
#include "pqclient/packets.h"

namespace load {

// A document packet around the text, which need not be JSON.
std::string document_packet(pqclient::DocumentCommand command, std::string_view text);
std::string command_packet(pqclient::Command command, std::initializer_list<uint8_t> arguments);

// The text of a query, and of an operation that replaces the value at `path` by `value` (JSON).
// padding: letters in an ignored member, to make the document as long as wanted.
std::string query_text(std::string_view path);
std::string replace_text(std::string_view path, std::string_view value, size_t padding = 0);

// Receives one reply. Throws if it is invalid, or answers another path.
pqclient::Answer receive_answer(Wire& wire, std::string_view path);

// Sends a query and receives its answer, on a connection with no other request in progress.
pqclient::Answer ask(Wire& wire, pqclient::DocumentCommand command, std::string_view path);

// Throws unless the acknowledgement of the command arrives.
void receive_acknowledgement(Wire& wire, pqclient::Command command);

}  // namespace load

#endif  // BENCH_LOAD_REQUESTS_H_
