// The packets that the load consists of, and the check of what comes back.
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

// A document packet around the request's text, which need be no JSON.
std::string document_packet(pqclient::DocumentCommand command, std::string_view text);
std::string command_packet(pqclient::Command command, std::initializer_list<uint8_t> arguments);

// The text of a query, and of an operation that puts `value` (JSON) in the place of `path`.
// padding: letters in a member that nobody reads, to make the document as long as wanted.
std::string query_text(std::string_view path);
std::string replace_text(std::string_view path, std::string_view value, size_t padding = 0);

// Receives one reply. Throws when it is none, or answers another path.
pqclient::Answer receive_answer(Wire& wire, std::string_view path);

// Both in one: the stored value behind the path, on a connection where nothing else is under way.
pqclient::Answer ask(Wire& wire, pqclient::DocumentCommand command, std::string_view path);

// Throws unless the acknowledgement of the command comes.
void receive_acknowledgement(Wire& wire, pqclient::Command command);

}  // namespace load

#endif  // BENCH_LOAD_REQUESTS_H_
