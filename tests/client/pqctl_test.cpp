// pqctl as a program: what it prints, and how it ends.
#include <gtest/gtest.h>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "client/fake_board.h"
#include "client/storing_board.h"
#include "support/run_pqctl.h"

namespace {

// A board with small documents.
class Pqctl : public testing::Test {
 protected:
  Pqctl() {
    setenv("XDG_CONFIG_HOME", home_.path().c_str(), 1);
    setenv("XDG_STATE_HOME", home_.path().c_str(), 1);
  }
  void configure(const std::string& text) {
    std::filesystem::create_directory(home_.path() / "pqctl");
    std::ofstream(home_.path() / "pqctl/boards.ini") << text;
  }
  Outcome pqctl_on_board(const std::string& arguments, const std::string& input = "") {
    return run_pqctl("--port " + std::to_string(board_.address().port) + " " + arguments, input);
  }
  std::string output_of(const std::string& arguments, const std::string& input = "") {
    const Outcome outcome = pqctl_on_board(arguments, input);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    return outcome.output;
  }

  TemporaryFolder home_;
  StoringBoard board_;
};

TEST_F(Pqctl, GetShowsSectionsAsTables) {
  EXPECT_EQ(output_of("get ai/dci"),
            "scene 0\n"
            "name       nature-default\n"
            "dciEnable  1\n"
            "\n"
            "dciWeight_low (10 entries)\n"
            "     0:    1    2    3    4    5    6    7    8\n"
            "     8:    9 1000\n");
}

TEST_F(Pqctl, GetShowsMembersBare) {
  EXPECT_EQ(output_of("get csc/cscHue"), "300\n");
  EXPECT_EQ(output_of("get csc/cscMode"), "LOW_LATENCY_MODE\n");
  EXPECT_EQ(output_of("get ai/dci/nature-default/dciWeight_low/9"), "1000\n");
}

TEST_F(Pqctl, GetJsonIsTheExactValueAndNothingElse) {
  EXPECT_EQ(output_of("get csc/cscMode --json"), "\"LOW_LATENCY_MODE\"\n");
  EXPECT_EQ(output_of("--json get ai/dci/0/dciWeight_low"), "[1,2,3,4,5,6,7,8,9,1000]\n");
}

TEST_F(Pqctl, SetShowsOldNewAndStored) {
  EXPECT_EQ(output_of("set csc/cscHue 256"), "csc/cscHue: was 300, now 256, stored 256\n");
  EXPECT_EQ(output_of("set csc/cscHue 257 --json"),
            R"([{"path":"csc/cscHue","was":256,"now":257,"stored":257}])"
            "\n");
  EXPECT_EQ(output_of("set ai/dci/0/dciWeight_low/1 7"),
            "ai/dci/nature-default/dciWeight_low/1: was 2, now 7, stored 7\n");
}

TEST_F(Pqctl, SetTakesStepsAndNegativeNumbers) {
  for (const auto& [words, change] : {
           std::pair{"csc/cscHue +5", "csc/cscHue: was 300, now 305, stored 305\n"},
           std::pair{"csc/cscHue -4", "csc/cscHue: was 305, now 301, stored 301\n"},
           std::pair{"csc/cscHue-=1", "csc/cscHue: was 301, now 300, stored 300\n"},
           std::pair{"acm/lumGain=+5", "acm/lumGain: was 0, now 5, stored 5\n"},
           std::pair{"acm/acmTableDeltaYbyH/1 -5",
                     "acm/acmTableDeltaYbyH/1: was 0, now -5, stored -5\n"},
           std::pair{"acm/acmTableDeltaYbyH/1 -=5",
                     "acm/acmTableDeltaYbyH/1: was -5, now -10, stored -10\n"},
           std::pair{"acm/acmTableDeltaSbyH +=7",
                     "acm/acmTableDeltaSbyH: 65 entries from 0 to 64, by +7, stored so\n"},
           std::pair{"acm/acmEnable off", "acm/acmEnable: was 1, now 0, stored 0\n"},
       }) {
    EXPECT_EQ(output_of(std::string("set ") + words), change);
  }
}

TEST_F(Pqctl, SetMergesAssignmentsIntoOneWriteForEachSection) {
  output_of("set csc/cscHue 1 acm/lumGain 2 csc/cscContrast 3 ai/dci/0/dciEnable off");
  EXPECT_EQ(board_.writes(), 3);
  EXPECT_EQ(output_of("get csc/cscHue acm/lumGain csc/cscContrast --json"),
            R"({"csc/cscHue":1,"acm/lumGain":2,"csc/cscContrast":3})"
            "\n");
}

TEST_F(Pqctl, SetWithAnythingWrongSendsNothing) {
  for (const char* words : {"csc/cscHue 1 csc/cscHue 512", "csc/cscHue +212", "csc/cscHue -301",
                            "csc/cscHue 1 csc/cscHeu 1", "csc/cscHue", "csc 1", "csc/cscHue 1.5",
                            "acm/acmTableDeltaYbyH/1 +5"}) {
    EXPECT_EQ(pqctl_on_board(std::string("set ") + words).status, 1) << words;
  }
  EXPECT_EQ(output_of("set csc/cscHue 1 --dry-run"),
            "PQ {\"op\":\"replace\",\"path\":\"/csc/cscHue\",\"value\":1}\n");
  EXPECT_EQ(board_.writes(), 0);
}

TEST_F(Pqctl, SetSaysWhyASliderDoesNotShow) {
  EXPECT_EQ(pqctl_on_board("set csc/cscHue 1").errors, "");
  pqctl_on_board("set csc/cscMode HIGH_QUALITY_MODE");
  EXPECT_EQ(pqctl_on_board("set csc/cscHue 2").errors,
            "note: brightness, contrast, saturation and hue show only in low-latency mode: pqctl "
            "set csc/cscMode LOW_LATENCY_MODE\n");
  EXPECT_EQ(pqctl_on_board("set csc/cscRGain 2").errors, "");
}

TEST_F(Pqctl, SetEndsWithThreeWhenSomethingElseIsStored) {
  board_.ignore_writes(1);
  const Outcome outcome = pqctl_on_board("set csc/cscHue 256");
  EXPECT_EQ(outcome.status, 3);
  EXPECT_EQ(outcome.output, "csc/cscHue: was 300, now 256, stored 300\n");
  EXPECT_NE(outcome.errors.find("csc/cscHue should be 256, is 300"), std::string::npos);
}

TEST_F(Pqctl, PatchSendsEachSectionOnceAndCscLast) {
  const std::string operations =
      R"([{"op":"replace","path":"/csc/cscHue","value":1},)"
      R"({"op":"copy","from":"/csc/cscHue","path":"/csc/cscContrast"},)"
      R"({"op":"replace","path":"/acm/acmTableDeltaYbyH/64","value":-3}])";
  EXPECT_EQ(output_of("patch -", operations),
            "acm/acmTableDeltaYbyH/64: was 0, now -3, stored -3\n"
            "csc/cscHue: was 300, now 1, stored 1\n"
            "csc/cscContrast: was 256, now 1, stored 1\n");
  EXPECT_EQ(board_.writes(), 2);
  output_of("patch -", R"({"op":"replace","path":"/ai/dci/nature-default/dciEnable","value":0})");
  EXPECT_EQ(output_of("get ai/dci/0/dciEnable"), "0\n");
}

TEST_F(Pqctl, PatchWithAnythingWrongSendsNothing) {
  const char* examples[] = {
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
  };
  for (const char* example : examples) {
    EXPECT_EQ(pqctl_on_board("patch -", example).status, 1) << example;
  }
  EXPECT_EQ(pqctl_on_board("patch /no/such/file").status, 7);
  EXPECT_EQ(board_.writes(), 0);
}

TEST_F(Pqctl, UndoTakesBackOneChangeAfterTheOtherAndNothingElse) {
  output_of("set csc/cscHue 1 acm/lumGain 2");
  output_of("set csc/cscContrast 3");
  output_of("undo");
  EXPECT_EQ(output_of("get csc/cscContrast"), "256\n");
  output_of("undo --dry-run");
  unsetenv("XDG_STATE_HOME");
  unsetenv("HOME");
  EXPECT_EQ(pqctl_on_board("set csc/cscSaturation 9 csc/cscHue 5").status, 0);  // from elsewhere
  setenv("XDG_STATE_HOME", home_.path().c_str(), 1);
  const Outcome outcome = pqctl_on_board("undo");
  EXPECT_EQ(outcome.output,
            "acm/lumGain: was 2, now 0, stored 0\ncsc/cscHue: was 5, now 300, stored 300\n");
  EXPECT_NE(outcome.errors.find("1 of the values have been changed since"), std::string::npos);
  EXPECT_EQ(output_of("get csc/cscSaturation"), "9\n");
  EXPECT_EQ(pqctl_on_board("undo").status, 1);
  output_of("undo 4");  // an undo can be undone
  EXPECT_EQ(output_of("get csc/cscHue"), "5\n");
}

TEST_F(Pqctl, TryTakesBackAfterItsTimeAndOnCtrlC) {
  EXPECT_EQ(output_of("try --for 0.1 csc/cscHue 1"),
            "csc/cscHue: was 300, now 1, stored 1\ncsc/cscHue: was 1, now 300, stored 300\n");
  EXPECT_EQ(pqctl_on_board("undo").status, 1);
  EXPECT_EQ(pqctl_on_board("try csc/cscHue 1").status, 1);  // nobody could press a key
  const std::string file = (home_.path() / "shown").string();
  const std::string interrupted = " >" + file + " try --for 60 csc/cscHue 2 & pid=$!; until [ -s " +
                                  file + " ]; do sleep 0.05; done; kill -INT $pid; wait $pid";
  EXPECT_EQ(pqctl_on_board(interrupted).status, 130);
  EXPECT_EQ(output_of("get csc/cscHue"), "300\n");
}

TEST_F(Pqctl, PatternModeIsEnteredOnceAndLeavingKeepsDciOn) {
  EXPECT_EQ(pqctl_on_board("pattern-mode off").status, 0);  // would leave DCI off
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  output_of("pattern-mode on");
  EXPECT_EQ(output_of("get dci/dciEnable"), "0\n");
  output_of("pattern-mode on");  // would lose the saved switch
  output_of("pattern 255 128 0 --keep");
  output_of("pattern-mode off");
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  EXPECT_EQ(board_.pattern(), "\xFF\x80" + std::string(1, '\0'));
}

TEST_F(Pqctl, PatternLeavesDciAsItWasAlsoOnCtrlC) {
  output_of("pattern grey 50% --for 0");
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  const std::string port = std::to_string(board_.address().port);
  const std::string interrupted = "timeout --preserve-status -s INT 1 " PQCTL_PROGRAM " --port " +
                                  port + " pattern sequence builtin --pause 60 2>/dev/null";
  EXPECT_EQ(WEXITSTATUS(std::system(interrupted.c_str())), 130);
  EXPECT_EQ(board_.pattern(), std::string(3, '\0')) << "black is the first";
  EXPECT_EQ(output_of("get dci/dciEnable"), "1\n");
  output_of("set dci/dciEnable off");
  output_of("pattern sequence -", "# none of these stays\n#ff8000 0s\n255 0 0 0s\n");
  EXPECT_EQ(board_.pattern(), "\xFF" + std::string(2, '\0'));
  EXPECT_EQ(output_of("get dci/dciEnable"), "0\n");
  EXPECT_EQ(pqctl_on_board("pattern red").status, 1) << "no key without a terminal";
  EXPECT_EQ(pqctl_on_board("pattern purple --for 0").status, 1);
}

TEST_F(Pqctl, DumpWritesAPngFile) {
  const std::string file = (home_.path() / "screen.png").string();
  EXPECT_EQ(pqctl_on_board("dump out -o " + file).errors, "2x1 rgb\n");
  EXPECT_EQ(text_of(file).substr(0, 8), "\x89PNG\r\n\x1A\n");
  EXPECT_EQ(output_of("dump out -o -").substr(1, 3), "PNG");
  EXPECT_EQ(pqctl_on_board("dump in -o -").status, 6);  // this board has no dump of the input
  EXPECT_EQ(pqctl_on_board("dump out -o /no/such/folder/x.png").status, 7);
}

TEST_F(Pqctl, HostComesFromTheEnvironmentUnlessGiven) {
  setenv("PQCTL_HOST", "host.invalid", 1);
  EXPECT_EQ(pqctl_on_board("get csc").status, 2);
  EXPECT_EQ(pqctl_on_board("--host 127.0.0.1 get csc").status, 0);
  unsetenv("PQCTL_HOST");
}

TEST_F(Pqctl, BoardComesFromTheConfigurationFile) {
  const std::string address = board_.address().text();
  configure("default = lab\n[lab]\nhost = " + address + "\n[far]\nhost = host.invalid\n");
  EXPECT_EQ(run_pqctl("get csc/cscHue").output, "300\n");
  EXPECT_EQ(run_pqctl("--board far get csc").status, 2);
  EXPECT_NE(run_pqctl("--board lap get csc").errors.find("nearest: lab"), std::string::npos);
  EXPECT_EQ(run_pqctl("boards").output, "lab  " + address + "  default\nfar  host.invalid:5543\n");
}

TEST_F(Pqctl, ReadOnlyBoardIsNeverChangedHoweverItIsNamed) {
  configure("[lab]\nread-only = yes\nhost = " + board_.address().text() + "\n");
  for (const char* change : {"set csc/cscHue 1", "patch -", "pattern 1 2 3", "pattern-mode on"}) {
    const std::string patch = R"({"op":"replace","path":"/csc/cscHue","value":1})";
    EXPECT_EQ(run_pqctl(std::string("--board lab ") + change, patch).status, 1) << change;
    EXPECT_EQ(pqctl_on_board(change, patch).status, 1) << change;
  }
  EXPECT_EQ(output_of("get csc/cscHue"), "300\n");
  EXPECT_EQ(board_.story(), "r");
}

TEST_F(Pqctl, MistakesInTheConfigurationFileAreExplained) {
  for (const auto& [text, help] : {
           std::pair{"host = 1\n", "in front of the first [BOARD]"},
           std::pair{"[lab]\nhots = 1\n", "known are host, timeout and read-only"},
           std::pair{"[lab]\nhost = a:b\n", "port"},
           std::pair{"[lab]\nread-only = maybe\n", "true or false"},
           std::pair{"[lab]\ntimeout = -1\n", "give seconds"},
       }) {
    configure(text);
    const Outcome outcome = run_pqctl("--board lab get csc");
    EXPECT_EQ(outcome.status, 1) << text;
    EXPECT_NE(outcome.errors.find(help), std::string::npos) << outcome.errors;
  }
}

TEST_F(Pqctl, ExitStatusTellsTheTroubleApart) {
  EXPECT_EQ(run_pqctl("--help").status, 0);
  EXPECT_EQ(run_pqctl("").status, 1);
  EXPECT_EQ(run_pqctl("get").status, 1);
  EXPECT_EQ(run_pqctl("--port 0 get csc").status, 1);
  EXPECT_EQ(run_pqctl("get csc/cscHeu").status, 1);
  EXPECT_EQ(run_pqctl("pattern 0 0 256").status, 1);
  EXPECT_EQ(run_pqctl("--port 1 get csc").status, 2);
  EXPECT_EQ(pqctl_on_board("get gamma").status, 6);            // this board has none, and hangs up
  EXPECT_EQ(pqctl_on_board("get dci/dciIsActive").status, 5);  // the answer lacks it
  EXPECT_EQ(pqctl_on_board("get csc >/dev/full").status, 7);
}

TEST(PqctlErrors, GoToStandardErrorWithAddressAndAdvice) {
  const FakeBoard silent([](Visitor& visitor) { visitor.stall(); });
  const Outcome outcome =
      run_pqctl("get csc --timeout 0.1 --port " + std::to_string(silent.address().port));
  EXPECT_EQ(outcome.status, 4);
  EXPECT_EQ(outcome.output, "");
  EXPECT_EQ(outcome.errors, "pqctl: no answer within 0.1 s from " + silent.address().text() +
                                ": is the server running? try: adb forward tcp:5543 tcp:5543\n");
}

}  // namespace
