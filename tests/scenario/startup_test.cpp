// Start-up, options, signals and the two documents that the daemon creates.
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>

#include "scenario/daemon_test.h"
#include "support/slack.h"

namespace scenario {
namespace {

using namespace std::chrono_literals;

class Startup : public DaemonTest {};

double number(const cJSON* object, const char* name) {
  return cJSON_GetNumberValue(cJSON_GetObjectItemCaseSensitive(object, name));
}

TEST_F(Startup, CreatesBothDocumentsOnANewBoardAfterARedraw) {
  const auto start = std::chrono::steady_clock::now();
  board::Board& board = start_daemon();
  EXPECT_GE(std::chrono::steady_clock::now() - start, 4s);
  EXPECT_EQ(board.calls(), std::vector<std::string>{"service call SurfaceFlinger 1006"});

  const auto pq = pqclient::parse_json(board.read(kPqDocument));
  ASSERT_EQ(cJSON_GetArraySize(pq.get()), 1);
  const cJSON* parameters = cJSON_GetObjectItemCaseSensitive(pq.get(), "pq_tuning_param");
  std::string sections;
  const cJSON* section = nullptr;
  cJSON_ArrayForEach(section, parameters) sections += std::string(section->string) + " ";
  EXPECT_EQ(sections, "csc dci acm gamma sharp ");

  const auto ai = pqclient::parse_json(board.read(kAipqDocument));
  ASSERT_EQ(cJSON_GetArraySize(ai.get()), 2);
  const cJSON* dci = cJSON_GetArrayItem(ai.get(), 0);
  const cJSON* acm = cJSON_GetArrayItem(ai.get(), 1);
  EXPECT_STREQ(dci->string, "dci");
  EXPECT_STREQ(acm->string, "acm");
  EXPECT_EQ(cJSON_GetArraySize(dci), 12);
  for (int scene = 0; scene < 12; ++scene) {
    EXPECT_STREQ(cJSON_GetStringValue(cJSON_GetObjectItem(cJSON_GetArrayItem(dci, scene), "name")),
                 cJSON_GetStringValue(cJSON_GetObjectItem(cJSON_GetArrayItem(acm, scene), "name")));
    EXPECT_EQ(number(cJSON_GetArrayItem(acm, scene), "lumGain"), 1023);
  }
}

// Otherwise the listening socket and documents would get their numbers.
TEST_F(Startup, WithoutStandardDescriptorsTakesTheNullDevice) {
  power_on("tv", {.daemon = "/bin/sh", .arguments = {"-c", "exec \"$0\" <&- >&- 2>&-", PQ_DAEMON}});
  put_documents("tv");
  start_daemon();
  const std::string folder = "/proc/" + std::to_string(board().daemon_pid()) + "/fd/";
  for (const char* descriptor : {"0", "1", "2"})
    EXPECT_EQ(std::filesystem::read_symlink(folder + descriptor), "/dev/null");
}

// They would overwrite each other's updates, and clients would reach one or the other.
TEST_F(Startup, ASecondDaemonOnTheSameDocumentsIsRefused) {
  constexpr char kRun[] =
      "\"$0\" & until [ -e /data/go ]; do sleep 0.05; done;"
      "\"$0\"; echo second daemon: status $? >&2; wait";
  power_on("tv", {.daemon = "/bin/sh", .arguments = {"-c", kRun, PQ_DAEMON}});
  put_documents("tv");
  start_daemon();
  change(R"({"op":"replace","path":"/csc/cscHue","value":7})");
  const std::string before = board().read(kPqDocument);
  board().write("/data/go", "");
  EXPECT_TRUE(board().wait_for_log("second daemon: status 1"));
  EXPECT_NE(board().log().find("another PQ tool server uses the documents in /data/vendor/qxalgo"),
            std::string::npos);
  EXPECT_EQ(board().read(kPqDocument), before);
  EXPECT_TRUE(serves());
}

// A program that outlives the daemon would keep them open, and the port with them.
TEST_F(Startup, KeepsItsSocketsFromTheProgramsThatItStarts) {
  start_with_documents();
  const auto client = connect();
  EXPECT_TRUE(serves());
  const std::string folder = "/proc/" + std::to_string(board().daemon_pid()) + "/fdinfo";
  int looked_at = 0;
  for (const auto& descriptor : std::filesystem::directory_iterator(folder)) {
    std::ifstream info(descriptor.path());
    std::string word;
    while (info >> word && word != "flags:") {
    }
    int flags = 0;
    if (!(info >> std::oct >> flags)) continue;  // closed meanwhile
    ++looked_at;
    const bool standard = std::stoi(descriptor.path().filename()) <= STDERR_FILENO;
    EXPECT_TRUE(standard || (flags & O_CLOEXEC) != 0) << descriptor.path();
  }
  EXPECT_GE(looked_at, 5) << "the standard ones, the listening socket and the client's";
}

TEST_F(Startup, OutlivesWhoeverReadItsLog) {
  constexpr char kRun[] = "mkfifo /data/log; : </data/log & exec \"$0\" 2>/data/log";
  power_on("tv", {.daemon = "/bin/sh", .arguments = {"-c", kRun, PQ_DAEMON}});
  put_documents("tv");
  start_daemon();
  EXPECT_EQ(command(3, {0, 0, 0}).size(), sizeof(pqclient::CommandPacket));
  EXPECT_EQ(board().calls().size(), 1U) << "the programs that it starts do not suffer either";
}

TEST_F(Startup, AWrongEnableRtspEndsItBeforeAnythingIsCreated) {
  board::BoardOptions options;
  options.arguments = {"-r", "2"};
  power_on("tv", options);
  board().start();
  EXPECT_EQ(board().wait(10s), 1);
  EXPECT_NE(board().log().find("enable_rtsp arg|only equals 0 or 1"), std::string::npos);
  EXPECT_NE(board().log().find("Tool server args parse error."), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists(board().file(kPqDocument)));
}

// Without care, a signal between checking the flags and waiting would be lost.
TEST_F(Startup, ASignalDuringStartUpIsNotLost) {
  power_on();
  put_documents("tv");
  for (const auto delay : {0ms, 1ms, 2ms, 4ms, 8ms, 16ms, 32ms}) {
    board().start();
    if (!board().wait_for_log("PQ tool server version: 1.0.8")) FAIL() << "does not start";
    std::this_thread::sleep_for(delay);
    EXPECT_EQ(board().stop(SIGTERM), 0) << delay.count() << " ms after its first line";
  }
}

TEST_F(Startup, TheLogLevelIsHexadecimal) {
  const auto debug_lines_at = [&](const char* level) {
    power_on();
    put_documents("tv");
    board().set_property("persist.vendor.aiqtool.log", level);
    start_daemon();
    serves();
    board().stop();
    return board().log().find("getPQ csc") != std::string::npos;
  };
  EXPECT_TRUE(debug_lines_at("a"));
  EXPECT_TRUE(debug_lines_at("3"));
  EXPECT_FALSE(debug_lines_at("2"));
  EXPECT_FALSE(debug_lines_at("-1"));
  EXPECT_EQ(board().log().find("signal_handle"), std::string::npos) << "-1 silences errors too";
}

TEST_F(Startup, APortThatIsTakenEndsItAtOnceWithStatusZero) {
  start_with_documents();
  board().stop();
  const int taken = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const int on = 1;  // for the daemon's past connections
  setsockopt(taken, SOL_SOCKET, SO_REUSEADDR, &on, sizeof(on));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(board::kDaemonPort);
  ASSERT_EQ(bind(taken, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
  board().start();
  EXPECT_EQ(board().wait(10s), 0);
  EXPECT_NE(board().log().find("Error bind"), std::string::npos);
  close(taken);
}

}  // namespace
}  // namespace scenario
