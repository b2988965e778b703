// pqctl as a program: what it prints, and how it ends.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "client/fake_board.h"

namespace {

using pqclient::DocumentCommand;

struct Outcome {
  int status = -1;
  std::string output;
  std::string errors;
};

std::string take_file(const std::string& path) {
  std::string text;
  {
    std::ifstream file(path);
    text.assign(std::istreambuf_iterator<char>(file), {});
  }
  unlink(path.c_str());
  return text;
}

// arguments: as for a shell.
Outcome pqctl(const std::string& arguments) {
  const std::string base = testing::TempDir() + "pqctl_test." + std::to_string(getpid());
  const std::string command =
      std::string(PQCTL_PROGRAM) + " " + arguments + " >" + base + ".out 2>" + base + ".err";
  const int status = std::system(command.c_str());
  return {WEXITSTATUS(status), take_file(base + ".out"), take_file(base + ".err")};
}

std::string at(const FakeBoard& board) {
  return "--host 127.0.0.1 --port " + std::to_string(board.address().port) + " ";
}

// Answers every query with the same sections.
void answer_queries(Visitor& visitor) {
  for (;;) {
    const std::string request = visitor.receive_text(DocumentCommand::kReadPq);
    if (request.empty()) return;
    if (request.find("/csc") != std::string::npos) {
      visitor.reply(R"({"path":"/csc","platform":1,"value":)"
                    R"({"name":"","cscEnable":1,"cscMode":"LOW_LATENCY_MODE","cscHue":300}})");
    } else {
      visitor.reply(R"({"path":"/dci","platform":1,"value":)"
                    R"({"dciEnable":1,"dciWeight_low":[1,2,3,4,5,6,7,8,9,1000]}})");
    }
  }
}

TEST(Get, ShowsSectionsAsTables) {
  const FakeBoard board(answer_queries);
  EXPECT_EQ(pqctl(at(board) + "get csc").output,
            "name       \n"
            "cscEnable  1\n"
            "cscMode    LOW_LATENCY_MODE\n"
            "cscHue     300\n");
  EXPECT_EQ(pqctl(at(board) + "get dci").output,
            "dciEnable  1\n"
            "\n"
            "dciWeight_low (10 entries)\n"
            "     0:    1    2    3    4    5    6    7    8\n"
            "     8:    9 1000\n");
}

TEST(Get, ShowsMembersBare) {
  const FakeBoard board(answer_queries);
  EXPECT_EQ(pqctl(at(board) + "get csc/cscHue").output, "300\n");
  EXPECT_EQ(pqctl(at(board) + "get csc/cscMode").output, "LOW_LATENCY_MODE\n");
  EXPECT_EQ(pqctl(at(board) + "get dci/dciWeight_low/9").output, "1000\n");
}

TEST(Get, JsonIsTheExactValueAndNothingElse) {
  const FakeBoard board(answer_queries);
  EXPECT_EQ(pqctl(at(board) + "get csc/cscMode --json").output, "\"LOW_LATENCY_MODE\"\n");
  EXPECT_EQ(pqctl("--json " + at(board) + "get dci").output,
            "{\"dciEnable\":1,\"dciWeight_low\":[1,2,3,4,5,6,7,8,9,1000]}\n");
}

TEST(ExitStatus, TellsTheTroubleApart) {
  EXPECT_EQ(pqctl("--help").status, 0);
  EXPECT_EQ(pqctl("").status, 1);
  EXPECT_EQ(pqctl("get").status, 1);
  EXPECT_EQ(pqctl("--port 0 get csc").status, 1);
  EXPECT_EQ(pqctl("get csc/cscHeu").status, 1);
  EXPECT_EQ(pqctl("--host 127.0.0.1 --port 1 get csc").status, 2);
  EXPECT_EQ(pqctl("--host host.invalid get csc").status, 2);

  const FakeBoard silent([](Visitor& visitor) { visitor.stall(); });
  EXPECT_EQ(pqctl(at(silent) + "--timeout 0.1 get csc").status, 4);
  const FakeBoard lost([](Visitor& visitor) { visitor.receive(1); });
  EXPECT_EQ(pqctl(at(lost) + "get csc").status, 6);
  const FakeBoard board(answer_queries);
  EXPECT_EQ(pqctl(at(board) + "get csc/cscBGain").status, 5);  // the answer lacks it
  EXPECT_EQ(pqctl(at(board) + "get csc >/dev/full; exit $?;").status, 7);
}

TEST(Errors, GoToStandardErrorWithAddressAndAdvice) {
  const FakeBoard silent([](Visitor& visitor) { visitor.stall(); });
  const Outcome outcome =
      pqctl("get csc --timeout 0.1 --port " + std::to_string(silent.address().port));
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "pqctl: no answer within 0.1 s from " + silent.address().text() +
                                ": is the server running? try: adb forward tcp:5543 tcp:5543\n");
}

TEST(Host, ComesFromTheEnvironmentUnlessGiven) {
  const FakeBoard board(answer_queries);
  setenv("PQCTL_HOST", "host.invalid", 1);
  EXPECT_EQ(pqctl("get csc").status, 2);
  EXPECT_EQ(pqctl(at(board) + "get csc").status, 0);
  unsetenv("PQCTL_HOST");
}

}  // namespace
