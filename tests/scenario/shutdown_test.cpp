// Shutdown by a signal, at every moment: within its bound, with whole documents, also when signals
// are repeated.
#include <csignal>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "scenario/daemon_test.h"
#include "support/process_end.h"
#include "support/slack.h"

namespace scenario {
namespace {

using namespace std::chrono_literals;
using std::chrono::milliseconds;

constexpr milliseconds kIdle{500};
constexpr milliseconds kInARequest{5000};
constexpr milliseconds kInStartUp{5500};  // it goes to its end first
constexpr int kCrowd = 200;

class Shutdown;

struct Moment {
  const char* name;
  void (Shutdown::*arrange)();
  int signal;
  milliseconds bound;
};

class Shutdown : public DaemonTest, public testing::WithParamInterface<Moment> {
 public:
  // Each of these brings the daemon to the state in its name.
  void is_idle() {
    start_with_documents();
    held_.push_back(connect());
    EXPECT_TRUE(serves());
  }
  void creates_its_documents() {
    power_on();
    board().start();
    EXPECT_TRUE(board().wait_for_log("before execl am"));
  }
  void redraws_after_a_change() {
    start_with_documents();
    send_and_hold(document_packet(0, R"([{"op":"replace","path":"/csc/cscHue","value":5}])"));
    EXPECT_TRUE(board().wait_for_log("LOW_LATENCY"));
  }
  void leaves_pattern_mode() {
    start_with_documents();
    send_and_hold(command_packet(4, {0x81}));
    EXPECT_TRUE(board().wait_for_log("4 HandlerTCPMessage flag 129"));
  }
  void begins_a_dump_that_nobody_reads() {
    start_with_documents();
    const std::string file = "/data/vendor/qxalgo/pq_dump_in_2000x2000.rgba";
    std::string picture;
    picture.resize(16'000'000);
    board().write(file, picture);
    board().set_property("vendor.tvinput.qxpq.dump.path", file);
    send_and_hold(command_packet(2, {0}));  // requests no new dump
    EXPECT_TRUE(board().wait_for_log("3 HandlerTCPMessage dat[0] 0"));
  }
  void has_half_a_document() {
    start_with_documents();
    send_and_hold(header(0, 100'000) + std::string(30'000, 'x'));
    EXPECT_TRUE(board().wait_for_log("packet no compelete"));
  }
  // Each answer has 270 KB; sooner or later the buffers between daemon and client are full.
  void answers_a_client_that_does_not_read() {
    start_with_documents();
    held_.push_back(connect());
    const std::string query = document_packet(3, R"([{"path":"/acm"}])");
    for (size_t taken = 0; taken < 200; ++taken) {
      send(held_.back(), query);
      if (!comes_true([&] { return received_chunks() > taken; })) return;
    }
    ADD_FAILURE() << "200 unread answers fitted into the buffers";
  }
  // Reads steadily, but so slowly that it would take minutes.
  void sends_a_dump_to_a_slow_reader() {
    begins_a_dump_that_nobody_reads();
    EXPECT_TRUE(board().wait_for_log("getPqDumpData"));
    reader_ = std::thread([this] {
      while (!receive(held_.back(), 20'000, 100ms).empty())
        std::this_thread::sleep_for(100ms);
    });
  }
  void handles_200_expensive_requests() {
    start_with_documents();
    std::string copies;
    for (int i = 0; i < 177; ++i)
      copies += std::string(i == 0 ? "" : ",") + R"({"op":"copy","from":"/dci","path":"/dci/0/q"})";
    const std::string packet = document_packet(2, "[" + copies + "]");
    ASSERT_LT(packet.size(), 8192U) << "one chunk";
    for (int i = 0; i < kCrowd; ++i)
      send_and_hold(packet);
    EXPECT_TRUE(board().wait_for_log("socket recvieve length"));
  }
  void handles_30_queries_of_its_largest_document() {
    std::string numbers;
    for (int i = 0; i < 300'000; ++i)
      numbers += "1.2345678901234567e+20,";
    start_with_acm_table_beginning_with(numbers);
    for (int i = 0; i < 30; ++i)
      send_and_hold(document_packet(3, R"([{"path":"/acm"}])"));
    EXPECT_TRUE(board().wait_for_log("socket recvieve length"));
  }
  void has_200_half_documents() {
    start_with_documents();
    for (int i = 0; i < kCrowd; ++i)
      send_and_hold(header(0, 100'000) + std::string(3'000, 'x'));
    wait_until_taken();
  }
  // Loopback takes almost 3 MB of each answer.
  void answers_200_clients_that_do_not_read() {
    start_with_acm_table_beginning_with('"' + std::string(4'000'000, 'x') + "\",");
    for (int i = 0; i < kCrowd; ++i)
      send_and_hold(document_packet(3, R"([{"path":"/acm"}])"));
    for (auto& client : held_)
      EXPECT_NE(receive(client, 1), "");
  }
  void waits_for_an_engine_that_hangs() {
    board::Description description;
    description.engine = board::Engine::kRunHangs;
    start_with_documents(description);
    send_and_hold(document_packet(0, R"([{"op":"replace","path":"/dci/dciEnable","value":0}])"));
    EXPECT_TRUE(board().wait_for_log("drm_lut_init"));
  }

 protected:
  void TearDown() override {
    if (reader_.joinable()) reader_.join();
    held_.clear();
    DaemonTest::TearDown();
  }

 private:
  void start_with_acm_table_beginning_with(const std::string& items) {
    power_on();
    put_documents("tv");
    std::string document = board().read(kAipqDocument);
    const size_t list = document.find('[', document.find(R"("acm":)")) + 1;
    board().write(kAipqDocument, document.insert(list, items));
    start_daemon();
  }
  void send_and_hold(const std::string& bytes) {
    held_.push_back(connect());
    // The server's queue is 5 long; a client that finds it full tries again after a second.
    std::this_thread::sleep_for(1ms);
    send(held_.back(), bytes);
  }
  size_t received_chunks() {
    const std::string log = board().log();
    size_t count = 0;
    for (size_t at = 0; (at = log.find("socket recvieve length", at)) != std::string::npos; ++at)
      ++count;
    return count;
  }
  static bool comes_true(const std::function<bool()>& condition) {
    for (int i = 0; i < 100; ++i) {
      if (condition()) return true;
      std::this_thread::sleep_for(20ms);
    }
    return false;
  }

  std::vector<pqclient::Connection> held_;  // until the end of the test
  std::thread reader_;
};

TEST_P(Shutdown, ComesWithinItsBound) {
  // A daemon that exits by its deadline leaves threads behind, on purpose.
  ::setenv("TSAN_OPTIONS", "report_thread_leaks=0:atexit_sleep_ms=0", 1);
  const Moment& moment = GetParam();
  (this->*moment.arrange)();
  const ProcessEnd daemon(board().daemon_pid());
  daemon.signal(moment.signal);
  const auto time = daemon.wait(moment.bound + kSlack);
  EXPECT_TRUE(time) << "not within " << moment.bound.count() << " ms";
  if (time) RecordProperty("milliseconds", static_cast<int>(time->count()));
  EXPECT_EQ(board().wait(20s), 0);
  start_daemon();  // repairs what an abandoned save may have left
  for (const char* document : {kPqDocument, kAipqDocument})
    EXPECT_TRUE(pqclient::parse_json(board().read(document))) << document;
}

INSTANTIATE_TEST_SUITE_P(
    , Shutdown,
    testing::Values(Moment{"WhenIdle", &Shutdown::is_idle, SIGTERM, kIdle},
                    Moment{"InStartUp", &Shutdown::creates_its_documents, SIGINT, kInStartUp},
                    Moment{"InAChange", &Shutdown::redraws_after_a_change, SIGQUIT, kInARequest},
                    Moment{"InPatternMode", &Shutdown::leaves_pattern_mode, SIGTERM, kInARequest},
                    Moment{"InADumpThatNobodyReads", &Shutdown::begins_a_dump_that_nobody_reads,
                           SIGINT, kInARequest},
                    Moment{"InADocument", &Shutdown::has_half_a_document, SIGQUIT, kIdle},
                    Moment{"BeforeAClientThatDoesNotRead",
                           &Shutdown::answers_a_client_that_does_not_read, SIGTERM, kInARequest},
                    Moment{"BeforeAClientThatReadsSlowly", &Shutdown::sends_a_dump_to_a_slow_reader,
                           SIGINT, kInARequest},
                    Moment{"In200ExpensiveRequests", &Shutdown::handles_200_expensive_requests,
                           SIGTERM, kInARequest},
                    Moment{"In30QueriesOfTheLargestDocument",
                           &Shutdown::handles_30_queries_of_its_largest_document, SIGTERM,
                           kInARequest},
                    Moment{"In200Documents", &Shutdown::has_200_half_documents, SIGTERM, kIdle},
                    Moment{"Before200ClientsThatDoNotRead",
                           &Shutdown::answers_200_clients_that_do_not_read, SIGTERM, kInARequest},
                    Moment{"InAnEngineThatHangs", &Shutdown::waits_for_an_engine_that_hangs,
                           SIGTERM, kInARequest}),
    [](const auto& moment) { return std::string(moment.param.name); });

class RepeatedSignals : public DaemonTest {};

TEST_F(RepeatedSignals, DoNoHarm) {
  start_with_documents();
  auto connection = connect();
  send(connection, command_packet(3, {255, 0, 0}));
  ASSERT_TRUE(board().wait_for_log("3 HandlerTCPMessage r:255"));
  const ProcessEnd daemon(board().daemon_pid());
  for (const auto end = std::chrono::steady_clock::now() + 20s;
       std::chrono::steady_clock::now() < end;) {
    for (const int signal : {SIGTERM, SIGINT, SIGQUIT})
      daemon.signal(signal);
    if (daemon.wait(1ms)) break;
  }
  EXPECT_EQ(board().wait(20s), 0);
  // The request was completed.
  EXPECT_EQ(receive(connection, sizeof(pqclient::CommandPacket)).size(),
            sizeof(pqclient::CommandPacket));
}

}  // namespace
}  // namespace scenario
