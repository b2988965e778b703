// Replies of a board, and users' files, as input of the tuning client. The first byte selects the
// kind of input; the rest is the input.
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "pqclient/answer.h"
#include "pqclient/change.h"
#include "pqclient/check.h"
#include "pqclient/cube_file.h"
#include "pqclient/dump.h"
#include "pqclient/error.h"
#include "pqclient/gamma_curve.h"
#include "pqclient/packets.h"
#include "pqclient/picture_difference.h"
#include "pqclient/target.h"

namespace {

using pqclient::ByteView;

// Returns false if there are too few bytes.
template <typename Record>
bool take(ByteView& bytes, Record& record) {
  if (bytes.size() < sizeof record) return false;
  std::memcpy(&record, bytes.data(), sizeof record);
  bytes = bytes.subspan(sizeof record);
  return true;
}

void look_into(const cJSON& value) {
  for (const char* place : {"csc", "gamma/gammaTab_R/512", "acm", "ai/dci/nature-sky/dciEnable"}) {
    const pqclient::Target target = pqclient::parse_target(place);
    (void)target.find_in(value);
  }
  try {
    const pqclient::Target gamma = pqclient::parse_target("gamma");
    check_section(gamma, value, value);
    const auto tables = pqclient::quantize(pqclient::gamma_of_section(value), false);
    if (!std::ranges::is_sorted(tables.entries[0])) std::abort();
  } catch (const pqclient::Error&) {
  }
}

void receive_reply(ByteView bytes) {
  pqclient::DocumentHeader header{};
  if (!take(bytes, header)) return;
  const std::size_t rest = pqclient::reply_bytes_after(header);
  if (rest > bytes.size()) return;  // the connection would wait for more
  const pqclient::Answer answer = pqclient::parse_answer(bytes.first(header.data_length));
  if (answer.value != nullptr) look_into(*answer.value);
}

void receive_acknowledgement(ByteView bytes) {
  pqclient::CommandPacket packet{};
  if (take(bytes, packet)) check_acknowledgement(packet, pqclient::Command::kPattern);
}

void receive_dump(ByteView bytes) {
  constexpr unsigned kMaxPixels = 4096;  // larger pictures are only slower
  pqclient::DumpHeader header{};
  if (!take(bytes, header) || unsigned{header.width} * header.height > kMaxPixels) return;
  pqclient::Dump dump = pqclient::start_dump(header);
  std::copy_n(bytes.begin(), std::min(bytes.size(), dump.data.size()), dump.data.begin());
  using Coding = pqclient::ColourCoding;
  const pqclient::Picture picture = pqclient::decode(dump);
  const pqclient::Picture other =
      pqclient::decode(dump, {Coding::Matrix::kBt2020, Coding::Range::kFull});
  const auto difference = pqclient::compare_pictures(picture, other);
  const auto pixels = static_cast<std::size_t>(dump.width) * static_cast<std::size_t>(dump.height);
  if (picture.rgb.size() != 3 * pixels || !(difference.equal_part <= 1)) std::abort();
}

void read_cube(const std::string& text) {
  const auto curves = pqclient::gamma_of_cube(pqclient::parse_cube(text));
  (void)pqclient::quantize(curves, true);
}

void read_table(const std::string& text) {
  const auto tables = pqclient::quantize(pqclient::parse_gamma_csv(text, {}), false);
  if (tables.entries[2].size() != pqclient::kGammaEntries) std::abort();
}

void read_words(const std::string& text) {
  (void)pqclient::parse_target(text);
  const std::size_t blank = text.find(' ');
  if (blank == std::string::npos) return;
  (void)pqclient::parse_value(pqclient::parse_target(text.substr(0, blank)),
                              text.substr(blank + 1));
}

void read_control_points(const std::string& text) {
  (void)pqclient::curve_through(pqclient::parse_control_points(text));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const ByteView bytes(data + 1, size - 1);
  const std::string text(bytes.begin(), bytes.end());
  try {
    switch (data[0] % 7) {
      case 0:
        receive_reply(bytes);
        break;
      case 1:
        receive_acknowledgement(bytes);
        break;
      case 2:
        receive_dump(bytes);
        break;
      case 3:
        read_cube(text);
        break;
      case 4:
        read_table(text);
        break;
      case 5:
        read_words(text);
        break;
      default:
        read_control_points(text);
    }
  } catch (const pqclient::Error&) {  // the only exception that may be thrown
  }
  return 0;
}
