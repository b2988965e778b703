#include <algorithm>
#include <array>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

using pqclient::Command;
using pqclient::DocumentCommand;

constexpr unsigned kHurry = 1'000;
constexpr size_t kGoodEvery = 100;

std::vector<std::string> good_requests() {
  std::vector<std::string> requests;
  const auto add = [&](DocumentCommand command, const std::string& text) {
    requests.push_back(document_packet(command, text));
  };
  for (const char* section : {"/csc", "/gamma", "/dci", "/acm", "/sharp"})
    add(DocumentCommand::kQueryPq, query_text(section));
  add(DocumentCommand::kQueryAipq, query_text("/dci"));
  add(DocumentCommand::kUpdatePq, replace_text("/csc/cscMode", "\"LOW_LATENCY_MODE\""));
  add(DocumentCommand::kUpdatePq, replace_text("/gamma/gammaTab_R/7", "12"));
  add(DocumentCommand::kUpdatePq,
      replace_text("/gamma", R"({"@gammaTab_B_index":[3],"gammaTab_B":[9]})"));
  add(DocumentCommand::kUpdatePq, replace_text("/acm/acmTableGainYbyY", "[1,2,3]"));
  add(DocumentCommand::kUpdatePq,
      R"([{"op":"copy","from":"/csc","path":"/dci"},{"op":"move","from":"/acm","path":"/csc"},)"
      R"({"op":"test","path":"/sharp","value":{}},{"op":"remove","path":"/gamma"},)"
      R"({"op":"add","path":"/csc/cscHue","value":3}])");
  add(DocumentCommand::kUpdateAipq, replace_text("/acm/3/lumGain", "77"));
  add(DocumentCommand::kUpdateAipq, replace_text("/dci/2/dciEnable", "1", 10'000));
  requests.push_back(command_packet(Command::kDump, {pqclient::kFlagSecond}));
  requests.push_back(command_packet(Command::kPattern, {1, 2, 3}));
  requests.push_back(command_packet(Command::kPatternMode, {pqclient::kFlagFirst}));
  return requests;
}

// Texts that break parsers more often than random letters do.
constexpr std::array<std::string_view, 24> kFragments = {"null",
                                                         "-1",
                                                         "1e300",
                                                         "-0",
                                                         "4294967296",
                                                         "true",
                                                         "[]",
                                                         "{}",
                                                         R"("")",
                                                         R"("/")",
                                                         R"("/csc/-")",
                                                         R"("~1")",
                                                         "[[[[[[[[",
                                                         "}}}}",
                                                         R"(\u0000)",
                                                         R"("op":"test")",
                                                         R"("op":"move")",
                                                         R"("from":"")",
                                                         R"("path":"")",
                                                         R"("value":null)",
                                                         "%s%n%d",
                                                         R"("@gammaTab_R_index":[-1])",
                                                         "QXISP-AK",
                                                         "\x51\xAA\xFF\x58"};

class Mutator {
 public:
  Mutator() : good_(good_requests()) {}

  std::string next() {
    std::string request = good_[pick(good_.size())];
    for (size_t i = 1 + pick(4); i > 0; --i)
      change(request);
    return request;
  }

 private:
  size_t pick(size_t count) { return std::uniform_int_distribution<size_t>(0, count - 1)(random_); }

  void change(std::string& request) {
    const size_t at = pick(request.size() + 1);
    switch (pick(7)) {
      case 0:  // another byte
        if (at < request.size()) request[at] = static_cast<char>(pick(256));
        break;
      case 1:  // cut out
        request.erase(at, pick(20));
        break;
      case 2:  // cut off
        request.resize(std::max<size_t>(at, 1));
        break;
      case 3:  // a special text
        request.insert(at, kFragments[pick(kFragments.size())]);
        break;
      case 4:  // a piece of another request
        request.insert(at, good_[pick(good_.size())].substr(pick(60), pick(200)));
        break;
      case 5:  // a part repeated
        request.insert(at, request.substr(at, pick(100)));
        break;
      default:  // another command or length, in the header
        set_header_number(request, pick(2) == 0 ? 4 : 20);
        break;
    }
    if (pick(2) == 0) mend_length(request);
  }

  void set_header_number(std::string& request, size_t offset) {
    constexpr std::array<uint32_t, 10> kNumbers = {
        0, 1, 2, 3, 4, 28, 0x7FFFFFFB, 0x80000000, 0xFFFFFFFC, 0xFFFFFFFF};
    const uint32_t number = kNumbers[pick(kNumbers.size())];
    if (request.size() >= offset + sizeof(number))
      std::memcpy(request.data() + offset, &number, sizeof(number));
  }

  // Corrects the length, so that the text inside is read, and not only the header.
  static void mend_length(std::string& request) {
    constexpr size_t kAround = sizeof(pqclient::DocumentHeader) + pqclient::kDocumentTrailerSize;
    if (request.size() < kAround) return;
    const auto length = static_cast<uint32_t>(request.size() - kAround);
    std::memcpy(request.data() + offsetof(pqclient::DocumentHeader, data_length), &length,
                sizeof(length));
  }

  std::vector<std::string> good_;
  std::mt19937 random_{1};
};

// Sends it and waits until the daemon has handled it. Returns the number of bytes in the answer.
size_t send_alone(const std::string& request) {
  Wire wire;
  wire.send(request);
  wire.finish_sending();
  return wire.receive_rest().size();
}

// An update and a query of it, and a query of the other document.
bool good_request_works(int number) {
  Wire wire;
  wire.send(document_packet(DocumentCommand::kUpdatePq,
                            replace_text("/csc/cscHue", std::to_string(number))));
  wire.wait_until_taken();
  const auto answer = ask(wire, DocumentCommand::kQueryPq, "/csc");
  wire.send(document_packet(DocumentCommand::kQueryAipq, query_text("/acm")));
  (void)wire.receive(sizeof(pqclient::DocumentHeader));
  return cJSON_GetNumberValue(cJSON_GetObjectItemCaseSensitive(answer.value, "cscHue")) == number;
}

}  // namespace

bool run_mutations(size_t requests) {
  Report report("mutate");
  LoadedBoard board({.hurry = kHurry});
  Mutator mutator;
  size_t answered = 0;
  size_t good = 0;
  for (size_t i = 1; i <= requests; ++i) {
    if (send_alone(mutator.next()) > 0) ++answered;
    if (i % kGoodEvery != 0) continue;
    report.require(good_request_works(static_cast<int>(i % 500)),
                   "a valid update is not stored after " + std::to_string(i));
    ++good;
    board.remove_lut_files();
  }
  for (const char* document : {kPqDocument, kAipqDocument}) {
    report.require(pqclient::parse_whole_json(board.board().read(document)) != nullptr,
                   std::string(document) + " can no longer be parsed");
  }
  board.stop();
  report.figure(requests, " mutated requests, ", answered, " of them answered")
      .figure(good, " valid ones in between, all of them handled");
  return report.finish();
}

}  // namespace load
