// Servers that close, stall or send garbage at every byte of every kind of answer: an error must
// come in time, and pqctl must exit with the documented status.
#include <gtest/gtest.h>

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
#include "support/run_pqctl.h"

namespace pqclient {
namespace {

using std::chrono::milliseconds;

// One kind of exchange, with the whole answer to it.
struct Exchange {
  const char* name;
  std::function<void(TuningClient&)> ask;
  Bytes answer;
};

Bytes acknowledgement(Command command) {
  Bytes bytes = make_command_packet(command, std::array{std::uint8_t{1}});
  std::ranges::copy(kAcknowledgementMagic, bytes.begin());
  return bytes;
}

const Exchange kExchanges[] = {
    {"Query", [](TuningClient& client) { client.query_pq("/csc"); },
     document_reply(R"({"path":"/csc","platform":1,"value":{"cscHue":256}})")},
    {"Acknowledgement", [](TuningClient& client) { client.show_pattern(1, 2, 3); },
     acknowledgement(Command::kPattern)},
    {"Dump",
     [](TuningClient& client) { client.request_dump(DumpSide::kOutput); },
     {2, 0, 1, 0, 6, 1, 2, 3, 4, 5, 6}},
};

class BrokenServer : public testing::TestWithParam<Exchange> {
 protected:
  enum class Then { kClose, kStall };

  // Sends `bytes` to each client. Returns the client's error, or none if it accepted the answer.
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

// Any result except a hang or a crash is accepted: most wrong bytes cannot be recognised.
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

constexpr std::string_view kCsc =
    R"({"path":"/csc","platform":1,"value":{"name":"","cscEnable":1,"cscMode":"LOW_LATENCY_MODE",)"
    R"("cscBrightness":256,"cscHue":300,"cscContrast":256,"cscSaturation":256,"cscRGain":256,)"
    R"("cscGGain":256,"cscBGain":256}})";

// Every command that talks to a board, with its arguments.
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

// Changes are recorded in a history; the tests must not use the user's.
const int kOwnHistory = setenv("XDG_STATE_HOME", testing::TempDir().c_str(), 1);

void expect_status(const std::function<void(Visitor&)>& script, int status) {
  const FakeBoard board(script);
  const std::string port = std::to_string(board.address().port);
  for (const std::string command : kCommands)
    EXPECT_EQ(run_pqctl("--timeout 0.2 --port " + port + " " + command).status, status) << command;
}

TEST(PqctlWithABrokenServer, EndsWithTheDocumentedStatus) {
  expect_status([](Visitor& visitor) { visitor.stall(); }, 4);
  expect_status([](Visitor& visitor) { visitor.receive_request(); }, 6);
  expect_status(
      [](Visitor& visitor) {
        visitor.receive_request();
        visitor.send(Bytes(200'000, 'x'));
        visitor.stall();
      },
      5);
}

TEST(PqctlWithABrokenServer, SaysWhatIsStoredInsteadAndWhoDoesNotAnswer) {
  const FakeBoard stubborn([](Visitor& visitor) {
    for (std::string text; !(text = visitor.receive_request()).empty();) {
      if (text.find("\"value\"") == std::string::npos) visitor.reply(kCsc);
    }
  });
  const std::string port = " --port " + std::to_string(stubborn.address().port);
  const Outcome stored = run_pqctl("set csc/cscHue 256" + port);
  EXPECT_EQ(stored.status, 3);
  EXPECT_EQ(stored.output, "csc/cscHue: was 300, now 256, stored 300\n");
  EXPECT_NE(stored.errors.find("csc/cscHue should be 256, is 300"), std::string::npos);

  // A query on a new connection does not prove that the change was handled.
  const FakeBoard dying([](Visitor& visitor) {
    visitor.receive_request();
    visitor.reply(kCsc);
    visitor.receive_request();
  });
  EXPECT_EQ(run_pqctl("set csc/cscHue 256 --port " + std::to_string(dying.address().port)).status,
            6);

  const FakeBoard silent([](Visitor& visitor) { visitor.stall(); });
  const Outcome unanswered =
      run_pqctl("get csc --timeout 0.1 --port " + std::to_string(silent.address().port));
  EXPECT_EQ(unanswered.output, "");
  EXPECT_EQ(unanswered.errors, "pqctl: no answer within 0.1 s from " + silent.address().text() +
                                   ": is the server running? try: adb forward tcp:5543 tcp:5543\n");
}

}  // namespace
}  // namespace pqclient
