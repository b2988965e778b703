#include "load/mixed_client.h"

#include <numeric>
#include <stdexcept>
#include <string>
#include <string_view>

#include "load/requests.h"

namespace load {
namespace {

using pqclient::Command;
using pqclient::DocumentCommand;

// Shares per 100 requests, in the order of Kind.
constexpr std::array<size_t, kKindCount> kShares = {36, 8, 20, 5, 6, 5, 4, 2, 5, 5, 4};
static_assert(std::accumulate(kShares.begin(), kShares.end(), size_t{0}) == 100);

constexpr std::array<std::string_view, 5> kSections = {"/csc", "/gamma", "/dci", "/acm", "/sharp"};
constexpr std::array<std::string_view, 2> kTables = {"/dci", "/acm"};

// A place in a document, and the number of different values to store there.
struct Place {
  std::string_view path;
  size_t values;
};
constexpr std::array<Place, 7> kPlaces = {{{"/csc/cscHue", 512},
                                           {"/csc/cscBrightness", 512},
                                           {"/csc/cscEnable", 2},
                                           {"/gamma/gammaTab_R/7", 65536},
                                           {"/dci/dciEnable", 2},
                                           {"/acm/lumGain", 1024},
                                           {"/sharp/sharpPeakingGain", 1024}}};
constexpr std::array<Place, 2> kAipqPlaces = {{{"/acm/3/lumGain", 1024}, {"/dci/5/dciEnable", 2}}};

constexpr size_t kLongPadding = 20'000;  // three receives

}  // namespace

Tally& Tally::operator+=(const Tally& other) {
  for (size_t i = 0; i < kKindCount; ++i)
    done[i] += other.done[i];
  answers += other.answers;
  dumps_received += other.dumps_received;
  return *this;
}

size_t Tally::total() const {
  return std::accumulate(done.begin(), done.end(), size_t{0});
}

void MixedClient::make_request() {
  const Kind kind = pick_kind();
  perform(kind);
  ++tally_.done[static_cast<size_t>(kind)];
}

// The connection that well-behaved requests share, as a tool's would.
Wire& MixedClient::kept() {
  if (!wire_) wire_.emplace();
  return *wire_;
}

size_t MixedClient::pick(size_t count) {
  return std::uniform_int_distribution<size_t>(0, count - 1)(random_);
}

Kind MixedClient::pick_kind() {
  return static_cast<Kind>(
      std::discrete_distribution<size_t>(kShares.begin(), kShares.end())(random_));
}

void MixedClient::perform(Kind kind) {
  switch (kind) {
    case Kind::kQuery:
      return query(false);
    case Kind::kAipqQuery:
      return query(true);
    case Kind::kChange:
      return change(false, 0);
    case Kind::kAipqChange:
      return change(true, 0);
    case Kind::kLongChange:
      return change(pick(2) == 0, kLongPadding);
    case Kind::kPattern:
      return show_pattern();
    case Kind::kPatternMode:
      return switch_pattern_mode();
    case Kind::kDump:
      return take_dump();
    case Kind::kHalfDocument:
      return send_half_a_document();
    case Kind::kNonsense:
      return send_nonsense();
    case Kind::kLeave:
      return leave_before_the_answer();
  }
}

void MixedClient::query(bool aipq) {
  if (aipq) {
    ask(kept(), DocumentCommand::kQueryAipq, kTables[pick(kTables.size())]);
  } else {
    ask(kept(), DocumentCommand::kQueryPq, kSections[pick(kSections.size())]);
  }
  ++tally_.answers;
}

void MixedClient::change(bool aipq, size_t padding) {
  const Place place = aipq ? kAipqPlaces[pick(kAipqPlaces.size())] : kPlaces[pick(kPlaces.size())];
  const std::string value = std::to_string(pick(place.values));
  kept().send(document_packet(aipq ? DocumentCommand::kUpdateAipq : DocumentCommand::kUpdatePq,
                              replace_text(place.path, value, padding)));
  kept().wait_until_taken();
  query(aipq);
}

void MixedClient::show_pattern() {
  const auto level = static_cast<uint8_t>(pick(256));
  kept().send(command_packet(Command::kPattern, {level, 128, 255}));
  receive_acknowledgement(kept(), Command::kPattern);
}

void MixedClient::switch_pattern_mode() {
  const uint8_t flag = pick(2) == 0 ? pqclient::kFlagFirst : pqclient::kFlagSecond;
  kept().send(command_packet(Command::kPatternMode, {flag}));
  receive_acknowledgement(kept(), Command::kPatternMode);
}

void MixedClient::take_dump() {
  Wire wire;
  wire.send(command_packet(Command::kDump, {pqclient::kFlagFirst}));
  wire.finish_sending();
  const std::string dump = wire.receive_rest();
  constexpr size_t kWidth = 64;
  constexpr size_t kHeight = 32;
  constexpr size_t kSize = sizeof(pqclient::DumpHeader) + kWidth * kHeight * 3 / 2;  // nv12
  if (!dump.empty() && dump.size() != kSize) {
    throw std::runtime_error("a dump of " + std::to_string(dump.size()) + " bytes");
  }
  if (!dump.empty()) ++tally_.dumps_received;
}

void MixedClient::send_half_a_document() {
  const std::string packet =
      document_packet(DocumentCommand::kUpdatePq, replace_text("/csc/cscHue", "1", kLongPadding));
  Wire wire;
  wire.send(std::string_view(packet).substr(0, 24 + pick(packet.size() - 25)));
  if (pick(2) == 0) return wire.reset();
  wire.finish_sending();
  wire.receive_rest();
}

void MixedClient::send_nonsense() {
  std::string bytes(1 + pick(200), '\0');
  for (char& byte : bytes)
    byte = static_cast<char>(pick(256));
  Wire wire;
  wire.send(bytes);
  wire.finish_sending();
  wire.receive_rest();
}

void MixedClient::leave_before_the_answer() {
  Wire wire;
  wire.send(document_packet(DocumentCommand::kQueryAipq, query_text("/acm")));
  wire.wait_until_taken();
  if (pick(2) == 0) wire.reset();
}

}  // namespace load
