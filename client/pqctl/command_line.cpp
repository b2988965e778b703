#include "command_line.h"

#include <CLI/CLI.hpp>
#include <array>
#include <iostream>
#include <memory>
#include <string>

namespace {

using pqclient::Document;
using pqclient::DumpSide;

constexpr const char* kFooter =
    "Examples:\n"
    "  pqctl get csc\n"
    "  pqctl --host 192.0.2.7 get gamma/gammaTab_R/512\n"
    "  pqctl get dci --json\n"
    "  pqctl set csc/cscBrightness 300\n"
    "  pqctl aipq set dci/nature-sky/dciEnable 0\n"
    "  pqctl pattern-mode on; pqctl pattern 255 0 0; pqctl pattern-mode off\n"
    "  pqctl dump out -o screen.png\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  wrong usage: unknown command, name or index, value out of range\n"
    "  2  cannot connect to the board\n"
    "  3  the board stored something else than was asked\n"
    "  4  time-out: the board did not answer, or not completely\n"
    "  5  the board's answer makes no sense\n"
    "  6  the board closed the connection before it had answered\n"
    "  7  a file cannot be read or written\n";

// One set for all subcommands: a command line names only one of them.
struct Arguments {
  std::string path;
  std::string value;
  std::string mode;
  std::string side;
  std::string file;
  std::array<unsigned, 3> colour{};
  bool force = false;
};
using ArgumentsPtr = std::shared_ptr<Arguments>;

void add_global_options(CLI::App& app, GlobalOptions& options) {
  app.add_option("--host", options.address.host, "Name or address of the board")
      ->envname("PQCTL_HOST")
      ->capture_default_str();
  app.add_option("--port", options.address.port, "TCP port of the server")
      ->check(CLI::Range(1, 65535))
      ->capture_default_str();
  app.add_option("--timeout", options.timeout_seconds,
                 "Seconds to wait for the connection and for each answer (default 5; 10 where the "
                 "board redraws first, 20 for a dump)")
      ->check(CLI::Range(0.001, 3600.0));
  app.add_flag("--json", options.json, "Print values as JSON and nothing else");
}

void add_get(CLI::App& parent, Document document, const char* path_help, CommandLine& line,
             const ArgumentsPtr& arguments) {
  CLI::App* get = parent.add_subcommand("get", "Show what the board has stored");
  get->add_option("path", arguments->path, path_help)->required();
  get->callback([&line, arguments, document] {
    line.command = [arguments, document](const GlobalOptions& options) {
      show_value(options, document, arguments->path);
    };
  });
}

void add_set(CLI::App& parent, Document document, const char* path_help, CommandLine& line,
             const ArgumentsPtr& arguments) {
  CLI::App* set = parent.add_subcommand(
      "set", "Change a value, read it back, and show what was and what is stored");
  set->add_option("path", arguments->path, path_help)->required();
  set->add_option("value", arguments->value,
                  "Number or text; for a table all entries, with commas between them")
      ->required();
  set->callback([&line, arguments, document] {
    line.command = [arguments, document](const GlobalOptions& options) {
      set_value(options, document, arguments->path, arguments->value);
    };
  });
}

void add_document_commands(CLI::App& app, CommandLine& line, const ArgumentsPtr& arguments) {
  add_get(app, Document::kPq,
          "SECTION[/MEMBER[/INDEX]]; sections are csc, gamma, dci, acm and sharp", line, arguments);
  add_set(app, Document::kPq, "SECTION/MEMBER[/INDEX]", line, arguments);

  CLI::App* patch =
      app.add_subcommand("patch", "Apply a JSON Patch file; sections that change are sent whole");
  patch
      ->add_option("file", arguments->file,
                   "Operations as in RFC 6902, with paths such as /csc/cscHue; - is standard input")
      ->required();
  patch->callback([&line, arguments] {
    line.command = [arguments](const GlobalOptions& options) {
      patch_document(options, arguments->file);
    };
  });

  CLI::App* aipq = app.add_subcommand("aipq", "Show or change the settings of the AI scenes");
  aipq->require_subcommand(1);
  aipq->fallthrough();
  add_get(*aipq, Document::kAipq,
          "SECTION[/SCENE[/MEMBER[/INDEX]]]; sections are dci and acm, scenes 0 to 11 or a name "
          "such as nature-sky",
          line, arguments);
  add_set(*aipq, Document::kAipq, "SECTION/SCENE/MEMBER[/INDEX]", line, arguments);
}

void add_pattern(CLI::App& app, CommandLine& line, const ArgumentsPtr& arguments) {
  CLI::App* pattern = app.add_subcommand(
      "pattern", "Fill the screen with a test colour; pattern-mode on before, off to close it");
  constexpr std::array kNames = {"red", "green", "blue"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    pattern->add_option(kNames.at(i), arguments->colour.at(i), "0 to 255")
        ->required()
        ->check(CLI::Range(0, 255));
  }
  pattern->callback([&line, arguments] {
    const auto [red, green, blue] = arguments->colour;
    const std::array colour = {static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                               static_cast<std::uint8_t>(blue)};
    line.command = [colour](const GlobalOptions& options) { show_pattern(options, colour); };
  });
}

void add_pattern_mode(CLI::App& app, CommandLine& line, const ArgumentsPtr& arguments) {
  CLI::App* pattern_mode = app.add_subcommand(
      "pattern-mode", "on: switch DCI off for test colours; off: close them, DCI as it was");
  pattern_mode->add_option("mode", arguments->mode, "on or off")
      ->required()
      ->check(CLI::IsMember({"on", "off"}));
  pattern_mode->add_flag("--force", arguments->force, "Enter also when DCI is off already");
  pattern_mode->callback([&line, arguments] {
    line.command = [arguments](const GlobalOptions& options) {
      if (arguments->mode == "on") {
        enter_pattern_mode(options, arguments->force);
      } else {
        leave_pattern_mode(options);
      }
    };
  });
}

void add_dump(CLI::App& app, CommandLine& line, const ArgumentsPtr& arguments) {
  CLI::App* dump = app.add_subcommand("dump", "Save the picture on screen as a PNG file");
  dump->add_option("side", arguments->side, "in or out: before or after the picture processing")
      ->required()
      ->check(CLI::IsMember({"in", "out"}));
  dump->add_option("-o,--output", arguments->file, "File to write; - is standard output")
      ->required();
  dump->callback([&line, arguments] {
    const DumpSide side = arguments->side == "in" ? DumpSide::kInput : DumpSide::kOutput;
    line.command = [arguments, side](const GlobalOptions& options) {
      save_dump(options, side, arguments->file);
    };
  });
}

}  // namespace

std::optional<ExitStatus> parse_command_line(int argc, char** argv, CommandLine& line) {
  CLI::App app("Reads and changes the picture quality of a board while the picture is on screen.",
               "pqctl");
  app.set_version_flag("--version", PQCTL_VERSION);
  app.footer(kFooter);
  app.require_subcommand(1);
  app.fallthrough();  // global options may stand behind the subcommand, too
  const auto arguments = std::make_shared<Arguments>();
  add_global_options(app, line.options);
  add_document_commands(app, line, arguments);
  add_pattern(app, line, arguments);
  add_pattern_mode(app, line, arguments);
  add_dump(app, line, arguments);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    // Help and version, too, come by way of this exception.
    if (error.get_exit_code() == 0) return static_cast<ExitStatus>(app.exit(error));
    std::cerr << "pqctl: " << error.what() << ". See pqctl --help\n";
    return ExitStatus::kUsage;
  }
  return std::nullopt;
}
