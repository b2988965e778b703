#include <chrono>
#include <future>
#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "command_syntax.h"
#include "commands.h"
#include "files.h"
#include "pqclient/dump.h"
#include "pqclient/error.h"
#include "pqclient/picture_difference.h"
#include "pqclient/png.h"
#include "progress.h"

namespace {

using pqclient::ColourCoding;
using pqclient::Dump;
using pqclient::DumpSide;
using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::Picture;

const std::map<std::string, ColourCoding::Matrix> kMatrices = {
    {"bt601", ColourCoding::Matrix::kBt601},
    {"bt709", ColourCoding::Matrix::kBt709},
    {"bt2020", ColourCoding::Matrix::kBt2020}};
const std::map<std::string, ColourCoding::Range> kRanges = {
    {"limited", ColourCoding::Range::kLimited}, {"full", ColourCoding::Range::kFull}};

template <typename Value>
std::vector<std::string> names_of(const std::map<std::string, Value>& values) {
  std::vector<std::string> names;
  names.reserve(values.size());
  for (const auto& [name, value] : values)
    names.push_back(name);
  return names;
}

constexpr double kDifferenceGain = 4;  // where --gain does not say

struct Arguments {
  std::string side;
  std::string file;
  bool raw = false;
  bool compare = false;
  double gain = 0;  // of the drawn difference; 0: not given
  std::string matrix = "bt709";
  std::string range = "limited";

  [[nodiscard]] ColourCoding coding() const { return {kMatrices.at(matrix), kRanges.at(range)}; }
};

// Fetches the picture on a thread of its own, so that the progress bar can move.
Dump fetch(Session& session, DumpSide side) {
  constexpr double kUsualSeconds = 4.6;  // the board gives its display service 4.2
  using Clock = std::chrono::steady_clock;
  Progress progress(session);
  pqclient::TuningClient& client = session.client();
  const auto start = Clock::now();
  auto dump = std::async(std::launch::async, [&client, side] { return client.request_dump(side); });
  while (dump.wait_for(std::chrono::milliseconds(100)) != std::future_status::ready) {
    const double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    progress.show(seconds / kUsualSeconds,
                  side == DumpSide::kInput ? "the picture that comes in" : "the picture on screen");
  }
  return dump.get();
}

std::string describe(const Dump& dump) {
  return std::to_string(dump.width) + "x" + std::to_string(dump.height) + " " +
         std::string(pqclient::format_name(dump.format));
}

std::string_view text_of(const pqclient::Bytes& bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void save(const Dump& dump, const std::string& file, const Arguments& arguments) {
  write_output(
      file,
      text_of(arguments.raw ? dump.data
                            : pqclient::encode_png(pqclient::decode(dump, arguments.coding()))));
}

void save_one(Session& session, const Arguments& arguments) {
  const Dump dump = fetch(session, arguments.side == "in" ? DumpSide::kInput : DumpSide::kOutput);
  save(dump, arguments.file, arguments);
  if (!session.options().quiet) std::cerr << describe(dump) << '\n';
}

// "shot.png" and "-in" make "shot-in.png".
std::string with_suffix(const std::string& file, const std::string& suffix) {
  const std::size_t dot = file.find_last_of("./");
  if (dot == std::string::npos || file[dot] == '/' || dot == 0) return file + suffix;
  return file.substr(0, dot) + suffix + file.substr(dot);
}

void save_both(Session& session, const Arguments& arguments) {
  if (arguments.file == "-") {
    throw Error(ErrorKind::kInput,
                "two pictures cannot share standard output: add --compare, or -o FILE");
  }
  for (const auto& [side, suffix] :
       {std::pair{DumpSide::kInput, "-in"}, {DumpSide::kOutput, "-out"}}) {
    const Dump dump = fetch(session, side);
    const std::string file = with_suffix(arguments.file, suffix);
    save(dump, file, arguments);
    if (!session.options().quiet) std::cerr << file << ": " << describe(dump) << '\n';
  }
}

void print_text(std::ostream& out, const pqclient::PictureDifference& difference) {
  constexpr std::array kNames = {"red", "green", "blue"};
  out << "from in to out, in 8-bit codes:\n" << std::fixed << std::setprecision(1);
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    const auto& channel = difference.channels.at(i);
    out << "  " << std::left << std::setw(6) << kNames.at(i) << std::right << "mean "
        << std::showpos << channel.mean << std::noshowpos << ", distance " << channel.mean_distance
        << ", largest " << channel.largest << '\n';
  }
  out << "  " << 100 * difference.equal_part << " % of the pixels are equal";
  if (difference.psnr) out << ", PSNR " << *difference.psnr << " dB";
  out << '\n';
}

void print_json(std::ostream& out, const pqclient::PictureDifference& difference) {
  out << R"({"equal":)" << difference.equal_part << R"(,"psnr":)";
  if (difference.psnr) {
    out << *difference.psnr;
  } else {
    out << "null";
  }
  constexpr std::array kNames = {"red", "green", "blue"};
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    const auto& channel = difference.channels.at(i);
    out << ",\"" << kNames.at(i) << R"(":{"mean":)" << channel.mean << R"(,"distance":)"
        << channel.mean_distance << R"(,"largest":)" << channel.largest << '}';
  }
  out << "}\n";
}

void compare(Session& session, const Arguments& arguments) {
  std::vector<Picture> pictures;
  for (const DumpSide side : {DumpSide::kInput, DumpSide::kOutput})
    pictures.push_back(pqclient::decode(fetch(session, side), arguments.coding()));
  const auto difference = pqclient::compare_pictures(pictures[0], pictures[1]);
  if (!arguments.file.empty()) {
    pictures.push_back(pqclient::difference_picture(
        pictures[0], pictures[1], arguments.gain > 0 ? arguments.gain : kDifferenceGain));
    write_output(arguments.file, text_of(pqclient::encode_png(pqclient::side_by_side(pictures))));
  }
  std::ostream& out = arguments.file == "-" ? std::cerr : std::cout;
  if (session.options().json) {
    print_json(out, difference);
  } else {
    print_text(out, difference);
  }
}

void check_combination(const Arguments& arguments) {
  if (arguments.compare && arguments.side != "both") {
    throw Error(ErrorKind::kInput, "--compare needs both sides: pqctl dump both --compare");
  }
  if (arguments.compare && arguments.raw) {
    throw Error(ErrorKind::kInput,
                "--compare and --raw exclude each other: --compare draws a picture");
  }
  if (arguments.gain > 0 && (!arguments.compare || arguments.file.empty())) {
    throw Error(ErrorKind::kInput,
                "--gain is for drawing the difference: add --compare and -o FILE");
  }
  if (arguments.file.empty() && !arguments.compare) {
    throw Error(ErrorKind::kInput,
                "a file for the picture is needed: -o FILE, - is standard output");
  }
}

void dump(Session& session, const Arguments& arguments) {
  check_combination(arguments);
  if (arguments.compare) {
    compare(session, arguments);
  } else if (arguments.side == "both") {
    save_both(session, arguments);
  } else {
    save_one(session, arguments);
  }
}

}  // namespace

void add_dump(const Grammar& grammar) {
  const auto arguments = std::make_shared<Arguments>();
  CommandSyntax command(add_command(
      grammar,
      {.name = "dump",
       .group = kLook,
       .about = "Save the picture before or after the board's processing",
       .more =
           R"(in is the picture before all processing, out the one after it. The board takes more than 4 seconds
for each. A PNG file has 8 bits per channel; --raw keeps the board's bytes, lines without padding,
and prints size and format on standard error. A dump does not say how its luma and chroma are coded:
BT.709 in limited range is assumed unless --matrix and --range say otherwise.

--compare prints the difference between in and out, and with -o draws both side by side, followed by
their difference: mid-grey where nothing has changed.

Examples:
  pqctl dump out -o screen.png
  pqctl dump in --raw -o - > in.nv12
  pqctl dump both --compare -o compare.png
)"},
      [arguments](Session& session) { dump(session, *arguments); }));
  command
      .choice("side", {"SIDE", "in, out or both"}, {"in", "out", "both"}, arguments->side,
              Need::kRequired)
      .word(
          "-o,--output",
          {"FILE", R"(File to write; - is standard output. For both, "-in" and "-out" are added)"},
          arguments->file)
      .flag("--raw", "The bytes as the board sent them", arguments->raw)
      .flag("--compare", "With both: their difference", arguments->compare)
      .number("--gain", {"N", "Factor of the drawn difference (4)"}, arguments->gain, {0.1, 255})
      .choice("--matrix", {"M", "Of luma and chroma: bt601, bt709 (default), bt2020"},
              names_of(kMatrices), arguments->matrix)
      .choice("--range", {"R", "Of luma and chroma: limited (default), full"}, names_of(kRanges),
              arguments->range);
}
