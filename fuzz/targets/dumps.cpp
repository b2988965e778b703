// Picture dumps: the path published by the display service, and the file there. Lines:
//
//   the board's settings
//   the path
//   the kind of file there, by its first character: f a file, s one of 16 TiB, l a link to the
//     secret, d a folder, p a pipe, otherwise nothing
//   the file's bytes, to the end
#include <unistd.h>

#include <filesystem>
#include <string>

#include "fuzz/support/board.h"
#include "fuzz/support/body.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "fuzz/support/input.h"
#include "qxaiq/command_packet.h"
#include "qxaiq/qxaiq_protocol.h"

namespace {

constexpr char kPathProperty[] = "vendor.tvinput.qxpq.dump.path";
constexpr char kFolder[] = "/data/vendor/qxalgo/";
constexpr char kSecret[] = "/data/vendor/qxalgo/secret";
constexpr int kClient = 7;

// Folders through which a name could leave its own folder.
void make_traps() {
  std::filesystem::create_directories(std::string(kFolder) + "pq_dump_in_");
  std::filesystem::create_directories(std::string(kFolder) + "pq_dump_out_1x1.rgb");
  fuzz::write_file(kSecret, "secret");
}

bool can_be_made(const std::string& path) {
  return path.starts_with(kFolder) && path.find('/', sizeof(kFolder) - 1) == std::string::npos &&
         path.find('\0') == std::string::npos && path.size() > sizeof(kFolder) &&
         !std::filesystem::exists(path);
}

bool make(const char* path, char kind, std::string_view content) {
  constexpr off_t kHuge = off_t{1} << 44;
  const bool sparse = kind == 's';
  const bool made = fuzz::put(path, sparse ? 'f' : kind, content, kSecret);
  return sparse ? truncate(path, kHuge) == 0 : made;
}

void ask_for_dump(char side) {
  std::string packet(sizeof(CommandData_t), '\0');
  pq::kRequestMagic.copy(packet.data(), pq::kRequestMagic.size());
  packet[offsetof(CommandData_t, cmdID)] = pq::kCommandDump;
  packet[offsetof(CommandData_t, dat)] = side;
  const fuzz::Body body(packet);
  QXAiqProtocol::HandlerTCPMessage(kClient, body.bytes(), static_cast<int>(body.length()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  fuzz::start_board(input);
  const std::string path(input.line().substr(0, 91));
  const std::string_view kind = input.line();
  const std::string_view content = input.rest();

  make_traps();
  const bool made = can_be_made(path) && make(path.c_str(), kind.empty() ? ' ' : kind[0], content);
  in_process::platform.properties[kPathProperty] = path;
  {
    const fuzz::NoDescriptorLeft check;
    ask_for_dump(kind.size() < 2 ? '\x80' : kind[1]);
  }
  const std::string& sent = fuzz::board.sent[kClient];
  fuzz::require(fuzz::read_file(kSecret) == "secret", "no other file is touched");
  fuzz::require(sent.empty() || std::string_view(sent).substr(sizeof(DumpReplyHeader)) == content,
                "the bytes sent are the dump");
  if (made) {
    const bool is_there = std::filesystem::remove(path);
    fuzz::require(is_there || kind[0] == 'f', "only a file is deleted");
    fuzz::require(sent.empty() || !is_there, "a dump that was sent is deleted");
  } else {
    fuzz::require(sent.empty(), "nothing else is sent");
  }
  return 0;
}
