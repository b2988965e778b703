// Many clients at once.
#include <sys/socket.h>

#include <csignal>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "scenario/daemon_test.h"
#include "support/process_end.h"
#include "support/slack.h"

namespace scenario {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class Clients : public DaemonTest {};

TEST_F(Clients, TwoHundredIdleOnesDelayNeitherAQueryNorTheEnd) {
  for (const int signal : {SIGINT, SIGQUIT, SIGTERM}) {
    board::Board& board = start_with_documents();
    std::vector<pqclient::Connection> idle;
    for (int i = 0; i < 200; ++i) {
      idle.push_back(connect());
      // The server's queue has 5 entries; a client that finds it full retries after a second.
      std::this_thread::sleep_for(2ms);
    }
    const auto asked = Clock::now();
    EXPECT_TRUE(serves());
    EXPECT_LT(Clock::now() - asked, 1s);
    const ProcessEnd daemon(board.daemon_pid());
    daemon.signal(signal);
    EXPECT_TRUE(daemon.wait(500ms + kSlack));
    EXPECT_EQ(board.stop(signal), 0);
  }
}

// Takes long under the thread sanitizer, which looks for races meanwhile.
#ifdef __SANITIZE_THREAD__
constexpr auto kQueryTime = 60s;
#else
constexpr auto kQueryTime = 5s;
#endif

TEST_F(Clients, TwoThatQueryAtTheSameTimeGetWholeAnswers) {
  start_with_documents();
  const auto end = Clock::now() + kQueryTime;
  const auto query = [&](const char* pq_section, const char* ai_table) {
    pqclient::TuningClient tool = client();
    for (int answers = 0; Clock::now() < end || answers < 6; ++answers) {
      EXPECT_TRUE(cJSON_IsObject(tool.query_pq(pq_section).value));
      EXPECT_EQ(cJSON_GetArraySize(tool.query_aipq(ai_table).value), 12);
    }
  };
  std::jthread other([&] { query("/gamma", "/dci"); });
  query("/acm", "/acm");
}

// The sides differ in format, so a dump shows which side it is from.
TEST_F(Clients, FiveThatWantDumpsAtOnceEachGetTheirOwnSideInTurn) {
  board::Description description;
  description.dump_width = 64;
  description.dump_height = 32;
  description.dump_format_in = "nv12";
  description.dump_format_out = "rgb";
  start_with_documents(description);
  static constexpr int kClients = 5;
  std::vector<std::jthread> clients;
  for (int i = 0; i < kClients; ++i) {
    clients.emplace_back([i] {
      const bool input = i % 2 == 0;
      pqclient::Timing timing;
      timing.dump = kClients * 20s;
      pqclient::TuningClient tool({}, timing);
      const pqclient::Dump dump =
          tool.request_dump(input ? pqclient::DumpSide::kInput : pqclient::DumpSide::kOutput);
      EXPECT_EQ(dump.format, input ? pqclient::DumpFormat::kNv12 : pqclient::DumpFormat::kRgb);
      EXPECT_EQ(dump.data.size(), input ? 64U * 32 * 3 / 2 : 64U * 32 * 3);
    });
  }
}

// Sanitizers and emulators reserve memory of their own.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(PQ_EMULATED)

// The limits that init sets, as a shell sets them: "rlimit NAME SOFT HARD" of the service's file.
std::string limits_of_the_service() {
  std::ifstream file(PQ_SOURCES "/android/qxaiq_tool_server.rc");
  std::string limits = "ulimit -s 1008; ";  // the stack of a thread, as bionic has it
  for (std::string text; std::getline(file, text);) {
    std::istringstream line(text);
    std::string keyword, name;
    unsigned long value = 0;
    if (!(line >> keyword >> name >> value) || keyword != "rlimit") continue;
    limits += name == "data" ? "ulimit -d " + std::to_string(value / 1024) + "; "
                             : "ulimit -n " + std::to_string(value) + "; ";
  }
  return limits;
}

TEST_F(Clients, AreServedWithinTheLimitsOfTheService) {
  const std::string limits = limits_of_the_service();
  ASSERT_NE(limits.find("ulimit -d"), std::string::npos);
  ASSERT_NE(limits.find("ulimit -n"), std::string::npos);
  start_with_documents(
      "tv",
      {.daemon = "/bin/sh", .arguments = {"-c", limits + "exec \"$0\"", PQ_DAEMON}, .hurry = 20});
  std::vector<pqclient::Connection> clients;
  for (int i = 0; i < 90; ++i) {
    clients.push_back(connect());
    send(clients.back(), document_packet(1, R"([{"path":"/gamma"}])"));
    EXPECT_NE(receive(clients.back(), 1), "") << "client " << i;
  }
  change(R"({"op":"replace","path":"/dci/dciEnable","value":1})");
  EXPECT_TRUE(serves());
  EXPECT_EQ(board().stop(), 0);
}

#endif

}  // namespace
}  // namespace scenario
