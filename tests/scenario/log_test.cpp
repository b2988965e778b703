// The daemon's log on the board.
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "scenario/daemon_test.h"

namespace scenario {
namespace {

class DaemonLog : public DaemonTest {
 protected:
  static std::string source_line(const std::string& file, int number) {
    std::ifstream source(PQ_SOURCES "/" + file + ".cpp");
    std::string line;
    for (int i = 0; i < number && std::getline(source, line); ++i) {
    }
    return source ? line : "";
  }

  static void run_a_session() {
    change(R"({"op":"replace","path":"/csc/cscBrightness","value":300})");
    change(R"({"op":"replace","path":"/gamma/gammaTab_R/0","value":1})");
    change(R"({"op":"replace","path":"/dci/dciEnable","value":0})");
    change_aipq(R"({"op":"replace","path":"/acm/0/lumGain","value":1})");
    EXPECT_TRUE(serves());
    command(2, {0x80}, std::chrono::seconds(6), sizeof(pqclient::DumpHeader));
    command(3, {1, 2, 3});
    command(4, {0x80});
    command(4, {0x81});
  }
};

TEST_F(DaemonLog, NamesPlacesWhereLogCallsStand) {
  board::Board& board = start_with_documents();
  run_a_session();
  board.stop(SIGTERM);
  // "source:line - text"; lines of the display modules have no such prefix.
  static const std::regex kPlace(R"(([a-z0-9_]+(?:/[a-z0-9_]+)?):([0-9]+) - )");
  std::map<std::string, int> files;
  std::istringstream log(board.log());
  for (std::string line; std::getline(log, line);) {
    std::smatch place;
    if (!std::regex_search(line, place, kPlace)) continue;
    EXPECT_NE(source_line(place[1], std::stoi(place[2])).find("log_"), std::string::npos) << line;
    ++files[place[1]];
  }
  EXPECT_GE(files.size(), 10U) << "the session reached less of the daemon than it should";
}

}  // namespace
}  // namespace scenario
