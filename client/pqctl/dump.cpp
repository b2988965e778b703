#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "commands.h"
#include "files.h"
#include "pqclient/dump.h"
#include "pqclient/png.h"

namespace {

struct Arguments {
  std::string side;
  std::string file;
};

void save_dump(Session& session, const Arguments& arguments) {
  using pqclient::DumpSide;
  const DumpSide side = arguments.side == "in" ? DumpSide::kInput : DumpSide::kOutput;
  const pqclient::Dump dump = session.client().request_dump(side);
  const pqclient::Bytes png = pqclient::encode_png(pqclient::decode(dump));
  write_output(arguments.file, {reinterpret_cast<const char*>(png.data()), png.size()});
  std::cerr << dump.width << 'x' << dump.height << ' ' << pqclient::format_name(dump.format)
            << '\n';
}

}  // namespace

void add_dump(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CLI::App& command =
      add_command(grammar,
                  {.name = "dump",
                   .group = kLook,
                   .about = "Save the picture on screen as a PNG file",
                   .more = "Example:\n  pqctl dump out -o screen.png\n"},
                  [arguments](Session& session) { save_dump(session, *arguments); });
  command.add_option("side", arguments->side, "in or out: before or after the picture processing")
      ->option_text("SIDE")
      ->required()
      ->check(CLI::IsMember({"in", "out"}));
  command.add_option("-o,--output", arguments->file, "File to write; - is standard output")
      ->option_text("FILE")
      ->required();
}
