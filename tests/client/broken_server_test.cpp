// Servers that close, stall or answer garbage, at every byte of every kind of answer: an error
// comes in time, and pqctl ends with the status that it documents.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>

#include "client/fake_board.h"
#include "pqclient/error.h"
#include "pqclient/tuning_client.h"

namespace pqclient {
namespace {

using std::chrono::milliseconds;

// One kind of exchange, and the whole answer to it.
struct Exchange {
  const char* name;
  std::function<void(TuningClient&)> ask;
  Bytes answer;
};

Bytes framed(std::string_view text) {
  const auto length = static_cast<std::uint32_t>(text.size() + 2);
  DocumentHeader header{kDocumentMagic, 0, {}, length};
  const ByteView head = bytes_of(header);
  Bytes bytes(head.begin(), head.end());
  bytes.push_back('[');
  bytes.insert(bytes.end(), text.begin(), text.end());
  bytes.resize(bytes.size() + 1 + kDocumentTrailerSize);
  return bytes;
}

Bytes acknowledgement(Command command) {
  Bytes bytes = make_command_packet(command, std::array{std::uint8_t{1}});
  std::ranges::copy(kAcknowledgementMagic, bytes.begin());
  return bytes;
}

const Exchange kExchanges[] = {
    {"Query", [](TuningClient& client) { client.query_pq("/csc"); },
     framed(R"({"path":"/csc","platform":1,"value":{"cscHue":256}})")},
    {"Acknowledgement", [](TuningClient& client) { client.show_pattern(1, 2, 3); },
     acknowledgement(Command::kPattern)},
    {"Dump",
     [](TuningClient& client) { client.request_dump(DumpSide::kOutput); },
     {2, 0, 1, 0, 6, 1, 2, 3, 4, 5, 6}},
};

class BrokenServer : public testing::TestWithParam<Exchange> {
 protected:
  enum class Then { kClose, kStall };

  // Sends `bytes` to whoever asks. Returns what came of it; none: an answer.
  static std::optional<ErrorKind> outcome(const Bytes& bytes, Then then, milliseconds time) {
    const FakeBoard board([&](Visitor& visitor) {
      visitor.receive_request();
      visitor.send(bytes);
      if (then == Then::kStall) visitor.stall();
    });
    TuningClient client(board.address(), {.connect = milliseconds(5000),
                                          .answer = time,
                                          .slow_answer = time,
                                          .dump = time,
                                          .gap = milliseconds(0)});
    try {
      GetParam().ask(client);
      return std::nullopt;
    } catch (const Error& error) {
      return error.kind();
    }
  }

  static Bytes first(std::size_t count) {
    const Bytes& all = GetParam().answer;
    return {all.begin(), all.begin() + static_cast<std::ptrdiff_t>(count)};
  }
};

TEST_P(BrokenServer, IsNoticedWhereverItStops) {
  const std::size_t size = GetParam().answer.size();
  for (std::size_t count = 0; count < size; ++count) {
    EXPECT_EQ(outcome(first(count), Then::kClose, milliseconds(5000)), ErrorKind::kConnectionLost)
        << count;
    EXPECT_EQ(outcome(first(count), Then::kStall, milliseconds(10)), ErrorKind::kTimeout) << count;
  }
  EXPECT_EQ(outcome(first(size), Then::kStall, milliseconds(5000)), std::nullopt);
}

// Any outcome but a hang or a crash: most bytes are not told apart from right ones.
TEST_P(BrokenServer, DoesNoHarmWithAWrongByteAnywhere) {
  for (std::size_t at = 0; at < GetParam().answer.size(); ++at) {
    for (const int bits : {0x01, 0x80, 0xFF}) {
      Bytes bytes = GetParam().answer;
      bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ bits);
      const auto start = std::chrono::steady_clock::now();
      (void)outcome(bytes, Then::kClose, milliseconds(1000));
      EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(4)) << at;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(, BrokenServer, testing::ValuesIn(kExchanges),
                         [](const auto& exchange) { return exchange.param.name; });

// Every command that talks to a board, with what it needs.
const char* const kCommands[] = {
    "get csc",
    "show",
    "watch csc",
    "plot gamma",
    "set csc/cscHue 1",
    "gamma --power 2",
    "pattern red --for 0",
    "pattern sequence builtin --pause 0",
    "pattern-mode off",
    "dump out -o /dev/null",
    "diagnose --quick",
    "backup -",
};

void expect_status(const std::function<void(Visitor&)>& script, int status) {
  const FakeBoard board(script);
  for (const char* command : kCommands) {
    const std::string line = "timeout 20 " PQCTL_PROGRAM " --timeout 0.2 --port " +
                             std::to_string(board.address().port) + " " + command +
                             " >/dev/null 2>&1 </dev/null";
    EXPECT_EQ(WEXITSTATUS(std::system(line.c_str())), status) << command;
  }
}

TEST(PqctlWithABrokenServer, EndsWithTheDocumentedStatus) {
  setenv("XDG_STATE_HOME", testing::TempDir().c_str(), 1);
  expect_status([](Visitor& visitor) { visitor.stall(); }, 4);
  expect_status([](Visitor& visitor) { visitor.receive_request(); }, 6);
  expect_status(
      [](Visitor& visitor) {
        visitor.receive_request();
        visitor.send(Bytes(200'000, 'x'));
        visitor.stall();
      },
      5);
  unsetenv("XDG_STATE_HOME");
}

}  // namespace
}  // namespace pqclient
