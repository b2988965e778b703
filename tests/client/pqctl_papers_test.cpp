// Manual and completions name every command and every option that the help names.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

namespace {

std::string output_of(const std::string& command) {
  FILE* pipe = popen(command.c_str(), "r");
  std::string text;
  for (int c = 0; (c = std::fgetc(pipe)) != EOF;)
    text += static_cast<char>(c);
  EXPECT_EQ(pclose(pipe), 0) << command;
  return text;
}

std::string client_file(const std::string& name) {
  std::ifstream file(PQCTL_SOURCES "/" + name);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), {}};
}

// The words that begin a line of the help's lists, indented by two blanks: "get", "--json".
std::set<std::string> listed_in(const std::string& help, bool options) {
  std::set<std::string> names;
  std::istringstream lines(help.substr(0, help.find("\nPlaces in")));
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("  ") || line[2] == ' ') continue;
    const std::string word = line.substr(2, line.find(' ', 2) - 2);
    const size_t dashes = word.find("--");
    if (options && dashes != std::string::npos) names.insert(word.substr(dashes));
    if (!options && word[0] != '-') names.insert(word);
  }
  return names;
}

// An option as a manual in mdoc writes it: "Fl -json".
std::string without_dash(const std::string& option) {
  return option.substr(1);
}

TEST(PqctlPapers, NameEveryCommandAndItsOptions) {
  const std::string manual = client_file("man/pqctl.1");
  const std::string bash = client_file("completions/pqctl.bash");
  const std::string zsh = client_file("completions/_pqctl");
  const auto commands = listed_in(output_of(PQCTL_PROGRAM " --help"), false);
  EXPECT_GT(commands.size(), 15U);
  for (const std::string& command : commands) {
    EXPECT_NE(manual.find("It Cm " + command), std::string::npos) << command;
    EXPECT_NE(bash.find(command), std::string::npos) << command;
    EXPECT_NE(zsh.find("'" + command + ":"), std::string::npos) << command;
    for (const std::string& option :
         listed_in(output_of(PQCTL_PROGRAM " " + command + " --help"), true)) {
      EXPECT_NE(bash.find(option), std::string::npos) << command << ' ' << option;
      EXPECT_NE(zsh.find(option), std::string::npos) << command << ' ' << option;
    }
  }
  for (const std::string& option : listed_in(output_of(PQCTL_PROGRAM " --help"), true))
    EXPECT_NE(manual.find("Fl " + without_dash(option)), std::string::npos) << option;
}

TEST(PqctlPapers, CompleteInBash) {
  const std::string complete = "PATH=$(dirname " PQCTL_PROGRAM "):$PATH CLIENT='" PQCTL_SOURCES
                               "' bash -c '. \"$CLIENT/completions/pqctl.bash\"; COMP_CWORD=$#; "
                               "COMP_WORDS=($0 \"$@\"); _pqctl; echo \"${COMPREPLY[*]}\"' pqctl ";
  EXPECT_EQ(output_of(complete + "rest"), "restore\n");
  EXPECT_EQ(output_of(complete + "set csc/cscBr"), "csc/cscBrightness\n");
  EXPECT_EQ(output_of(complete + "get ai/dci/nature-s"), "ai/dci/nature-sky/\n");
  EXPECT_EQ(output_of(complete + "dump in --range f"), "full\n");
}

}  // namespace
