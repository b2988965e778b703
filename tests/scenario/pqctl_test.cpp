// pqctl as a program, beyond the examples of docs/pqctl.md: its output, its effect on the board,
// and its exit status.
#include <chrono>
#include <filesystem>
#include <thread>

#include "scenario/pqctl_on_board.h"

namespace scenario {
namespace {

class Pqctl : public PqctlOnBoard {
 protected:
  void SetUp() override {
    PqctlOnBoard::SetUp();
    if (!IsSkipped()) start_with_documents("tv", {.hurry = 50});
  }
  static constexpr char kPattern[] = "/board/screen/pattern";
  std::string pattern_file() { return board().file(kPattern).string(); }
  // With shortened waits the daemon may acknowledge before the pattern is on screen.
  std::string pattern() {
    for (int i = 0; i < 500 && !std::filesystem::exists(pattern_file()); ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return board().read(kPattern);
  }
  // Runs pqctl until a file has content, then presses Ctrl-C. Returns its exit status.
  static int interrupt(const std::string& arguments, const std::string& begun) {
    return run(arguments + " & until [ -s " + begun +
               " ]; do sleep 0.05; done; kill -INT $!; wait $!")
        .status;
  }
  // The same once its output begins.
  [[nodiscard]] int interrupt(const std::string& arguments) const {
    return interrupt(">" + file("shown") + " " + arguments, file("shown"));
  }
};

TEST_F(Pqctl, SetTakesStepsAndNegativeNumbers) {
  output_of("set csc/cscHue=300 acm/lumGain=0 acm/acmTableDeltaYbyH/1=0");
  for (const auto& [words, change] : {
           std::pair{"csc/cscHue +5", "csc/cscHue: was 300, now 305, stored 305\n"},
           std::pair{"csc/cscHue -4", "csc/cscHue: was 305, now 301, stored 301\n"},
           std::pair{"csc/cscHue-=1", "csc/cscHue: was 301, now 300, stored 300\n"},
           std::pair{"acm/lumGain=+5", "acm/lumGain: was 0, now 5, stored 5\n"},
           std::pair{"acm/acmTableDeltaYbyH/1 -5",
                     "acm/acmTableDeltaYbyH/1: was 0, now -5, stored -5\n"},
           std::pair{"acm/acmTableDeltaYbyH/1 -=5",
                     "acm/acmTableDeltaYbyH/1: was -5, now -10, stored -10\n"},
           std::pair{"dci/dciWeight_low +=7",
                     "dci/dciWeight_low: 32 entries from 0 to 31, by +7, stored as asked\n"},
           std::pair{"acm/acmEnable off", "acm/acmEnable: was 1, now 0, stored 0\n"},
       }) {
    EXPECT_EQ(output_of(std::string("set ") + words), change);
  }
}

TEST_F(Pqctl, SetWritesEachSectionOnceAndInJson) {
  EXPECT_EQ(output_of("set --json csc/cscHue 1 acm/lumGain 2 csc/cscContrast 3"),
            R"([{"path":"acm/lumGain","was":1010,"now":2,"stored":2},)"
            R"({"path":"csc/cscHue","was":252,"now":1,"stored":1},)"
            R"({"path":"csc/cscContrast","was":260,"now":3,"stored":3}])"
            "\n");
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.timeline"), "1") << "for acm";
  EXPECT_EQ(board().calls().size(), 2U) << "a redraw for each";
}

TEST_F(Pqctl, AChangeInPiecesClearsWhatACutOffToolHasLeft) {
  {
    auto gone = connect();
    send(gone, header(0, 100'000) + std::string(5'000, ' '));
    wait_until_taken();
  }
  output_of("gamma --power 1");
  EXPECT_TRUE(board().wait_for_log("packet error")) << "nothing was in its way";
  EXPECT_EQ(output_of("get gamma/gammaTab_B/1023"), "65535\n");
}

TEST_F(Pqctl, SetAndPatchWithAnythingWrongSendNothing) {
  const std::string before = stored();
  for (const char* words : {"csc/cscHue 1 csc/cscHue 512", "csc/cscHue +260", "csc/cscHue -301",
                            "csc/cscHue 1 csc/cscHeu 1", "csc/cscHue", "csc 1", "csc/cscHue 1.5",
                            "acm/acmTableDeltaYbyH/1 +500"}) {
    EXPECT_EQ(run(std::string("set ") + words).status, 1) << words;
  }
  for (const char* operations : {
           "no JSON",
           "[7]",
           R"([{"op":"test","path":"/csc/cscHue","value":2}])",
           R"({"op":"replace","path":"/csc/cscHue","value":512})",
           R"({"op":"add","path":"/csc/cscHeu","value":1})",
           R"({"op":"remove","path":"/csc/cscHue"})",
           R"({"op":"remove","path":"/csc"})",
           R"({"op":"move","from":7,"path":"/csc/cscHue"})",
           R"({"op":"add","path":"/acm/acmTableDeltaYbyH/-","value":1})",
           R"({"op":"replace","path":"","value":{}})",
           R"({"op":"remove","path":"/ai/dci/0"})",
           R"({"op":"add","path":"/ai/dci/nature-sky/dciEnable","value":7})",
       }) {
    EXPECT_EQ(run("patch -", operations).status, 1) << operations;
  }
  EXPECT_EQ(run("patch /no/such/file").status, 7);
  EXPECT_EQ(stored(), before);
}

TEST_F(Pqctl, PatchSendsEachSectionOnceAndCscLast) {
  const std::string operations =
      R"([{"op":"replace","path":"/csc/cscHue","value":1},)"
      R"({"op":"copy","from":"/csc/cscHue","path":"/csc/cscContrast"},)"
      R"({"op":"replace","path":"/acm/lumGain","value":3},)"
      R"({"op":"replace","path":"/ai/dci/nature-sky/dciEnable","value":0}])";
  EXPECT_EQ(output_of("patch -", operations),
            "acm/lumGain: was 1010, now 3, stored 3\n"
            "csc/cscHue: was 252, now 1, stored 1\n"
            "csc/cscContrast: was 260, now 1, stored 1\n"
            "ai/dci/nature-sky/dciEnable: was 1, now 0, stored 0\n");
  EXPECT_EQ(board().calls().size(), 2U);
}

TEST_F(Pqctl, UndoTakesBackOneChangeAfterTheOtherAndNothingElse) {
  output_of("set csc/cscHue 1 acm/lumGain 2");
  output_of("set csc/cscContrast 3");
  output_of("undo");
  EXPECT_EQ(output_of("get csc/cscContrast"), "260\n");
  output_of("undo --dry-run");
  unsetenv("XDG_STATE_HOME");
  unsetenv("HOME");
  EXPECT_EQ(run("set csc/cscSaturation 9 csc/cscHue 5").status, 0);  // from elsewhere
  setenv("XDG_STATE_HOME", home_.path().c_str(), 1);
  const Outcome outcome = run("undo");
  EXPECT_EQ(outcome.output,
            "acm/lumGain: was 2, now 1010, stored 1010\ncsc/cscHue: was 5, now 252, stored 252\n");
  EXPECT_NE(outcome.errors.find("1 value was changed by something else since change 1"),
            std::string::npos);
  EXPECT_EQ(output_of("get csc/cscSaturation"), "9\n");
  EXPECT_EQ(run("undo").status, 1);
  output_of("undo 4");  // an undo can be undone
  EXPECT_EQ(output_of("get csc/cscHue"), "5\n");
}

TEST_F(Pqctl, TryTakesBackOnCtrlC) {
  EXPECT_EQ(run("try csc/cscHue 1").status, 1) << "nobody could press a key";
  EXPECT_EQ(interrupt("try --for 60 csc/cscHue 2"), 130);
  EXPECT_EQ(output_of("get csc/cscHue"), "252\n");
}

TEST_F(Pqctl, PatternModeIsEnteredOnceAndLeavingKeepsDciOn) {
  output_of("pattern-mode off");  // would leave DCI off
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  output_of("pattern-mode on");
  EXPECT_EQ(output_of("get dci/dciEnable"), "0\n");
  output_of("pattern-mode on");  // would lose the saved switch
  output_of("pattern 255 128 0 --keep");
  EXPECT_EQ(pattern(), "255 128 0");
  output_of("pattern-mode off");
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
}

TEST_F(Pqctl, PatternLeavesDciAsItWasAlsoOnCtrlC) {
  EXPECT_EQ(interrupt("pattern sequence builtin --pause 60", pattern_file()), 130);
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  output_of("set dci/dciEnable off");
  output_of("pattern sequence -", "# none of these stays\n#ff8000 0s\n255 0 0 0s\n");
  EXPECT_EQ(output_of("get dci/dciEnable"), "0\n");
  EXPECT_EQ(run("pattern red").status, 1) << "no key without a terminal";
  EXPECT_EQ(run("pattern purple --for 0").status, 1);
}

TEST_F(Pqctl, ReadOnlyBoardIsNeverChangedHoweverItIsNamed) {
  const std::string before = stored();
  home_.write("pqctl/boards.ini", "[lab.tv]\nread-only = yes\nhost = 127.0.0.1\n");
  for (const char* change : {"set csc/cscHue 1", "patch -", "pattern 1 2 3", "pattern-mode on"}) {
    const std::string patch = R"({"op":"replace","path":"/csc/cscHue","value":1})";
    EXPECT_EQ(run(std::string("--board lab.tv ") + change, patch).status, 1) << change;
    EXPECT_EQ(run(std::string("--host 127.0.0.1 ") + change, patch).status, 1) << change;
  }
  EXPECT_EQ(stored(), before);
  EXPECT_TRUE(board().calls().empty());
}

TEST_F(Pqctl, BoardComesFromItsOptionTheEnvironmentOrTheConfigurationFile) {
  home_.write("pqctl/boards.ini",
              "default = far\n[far]\nhost = host.invalid\n[lab]\nhost = 127.0.0.1\n");
  EXPECT_EQ(run("get csc").status, 2);
  EXPECT_EQ(run("--board lab get csc").status, 0);
  EXPECT_NE(run("--board lap get csc").errors.find("nearest: lab"), std::string::npos);
  setenv("PQCTL_HOST", "127.0.0.1", 1);
  EXPECT_EQ(run("get csc").status, 0);
  EXPECT_EQ(run("--host host.invalid get csc").status, 2);
  unsetenv("PQCTL_HOST");
  for (const auto& [text, help] : {
           std::pair{"host = 1\n", "comes before the first [BOARD]"},
           std::pair{"[lab]\nhots = 1\n", "use host, timeout or read-only"},
           std::pair{"[lab]\nhost = a:b\n", "port"},
           std::pair{"[lab]\nread-only = maybe\n", "true or false"},
           std::pair{"[lab]\ntimeout = -1\n", "give seconds"},
       }) {
    home_.write("pqctl/boards.ini", text);
    const Outcome outcome = run("--board lab get csc");
    EXPECT_EQ(outcome.status, 1) << text;
    EXPECT_NE(outcome.errors.find(help), std::string::npos) << outcome.errors;
  }
}

TEST_F(Pqctl, ExitStatusTellsTheTroubleApart) {
  for (const auto& [arguments, status] : {
           std::pair{"--help", 0},
           {"", 1},
           {"get", 1},
           {"--port 0 get csc", 1},
           {"get csc/cscHeu", 1},
           {"pattern 0 0 256", 1},
           {"--port 1 get csc", 2},
           {"get csc >/dev/full", 7},
           {"get csc >&-", 7},  // and not to the board, whose connection would be next
           {"restore /", 7},
           {"backup /no/such/folder/x.json", 7},
       }) {
    EXPECT_EQ(run(arguments).status, status) << arguments;
  }
}

}  // namespace
}  // namespace scenario
