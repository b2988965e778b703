// docs/protocol.md shows packets as hexadecimal dumps. These tests build each packet, compare it
// with the document, send it to the daemon, and compare the reply with the document too.
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <optional>
#include <string>

#include "pqclient/answer.h"
#include "scenario/daemon_test.h"

namespace scenario {
namespace {

using pqclient::Command;
using pqclient::DocumentCommand;

// One line: offset, 16 bytes in two groups, and the printable characters among them.
std::string hex_line(size_t offset, std::string_view bytes) {
  char text[24];
  std::snprintf(text, sizeof(text), "%04zx ", offset);
  std::string line = text;
  std::string printable;
  for (size_t i = 0; i < 16; ++i) {
    if (i % 8 == 0) line += ' ';
    if (i >= bytes.size()) {
      line += "   ";
      continue;
    }
    std::snprintf(text, sizeof(text), "%02x ", static_cast<unsigned char>(bytes[i]));
    line += text;
    printable += bytes[i] >= ' ' && bytes[i] <= '~' ? bytes[i] : '.';
  }
  return line + " " + printable + "\n";
}

std::string hex_dump(std::string_view bytes) {
  std::string dump;
  for (size_t at = 0; at < bytes.size(); at += 16)
    dump += hex_line(at, bytes.substr(at, 16));
  return dump;
}

// The blocks that begin with ```hex NAME, keyed by name.
std::map<std::string, std::string> read_examples() {
  constexpr std::string_view kStart = "```hex ";
  std::map<std::string, std::string> examples;
  std::ifstream document(PROTOCOL_DOCUMENT);
  std::string* block = nullptr;
  for (std::string line; std::getline(document, line);) {
    if (line.starts_with(kStart)) {
      block = &examples[line.substr(kStart.size())];
    } else if (line.starts_with("```")) {
      block = nullptr;
    } else if (block != nullptr) {
      *block += line + "\n";
    }
  }
  return examples;
}

class ProtocolDocument : public DaemonTest {
 protected:
  void expect_that_all_were_shown() const {
    for (const auto& [name, block] : examples_)
      EXPECT_EQ(block, "") << "no test checks the example " << name;
  }

  // Checks that the document shows these bytes under that name. Returns them.
  std::string shown(const std::string& name, std::string bytes) {
    EXPECT_EQ(examples_[name], hex_dump(bytes)) << "should be:\n```hex " << name << "\n"
                                                << hex_dump(bytes) << "```";
    examples_.erase(name);
    return bytes;
  }
  std::string shown(const std::string& name, const pqclient::Bytes& bytes) {
    return shown(name, std::string(bytes.begin(), bytes.end()));
  }

  void send_document(const std::string& name, DocumentCommand command, std::string_view text) {
    send(*connection_, shown(name, pqclient::make_document_packet(command, text)));
  }
  void send_command(const std::string& name, Command command, const pqclient::Bytes& arguments) {
    send(*connection_, shown(name, pqclient::make_command_packet(command, arguments)));
  }
  std::string reply(size_t size) { return receive(*connection_, size, std::chrono::seconds(20)); }

  // Reads the header, which tells how much follows, then the rest.
  std::string document_reply() {
    std::string bytes = reply(sizeof(pqclient::DocumentHeader));
    pqclient::DocumentHeader header{};
    std::memcpy(&header, bytes.data(), std::min(bytes.size(), sizeof(header)));
    const size_t size = sizeof(header) + pqclient::reply_bytes_after(header);
    if (bytes.size() < size) bytes += reply(size - bytes.size());
    return bytes;
  }

  // A member of the stored PQ document, after all earlier requests were handled.
  double stored(const std::string& path, const char* member) {
    wait_until_taken();
    send(*connection_, document_packet(1, R"([{"path":")" + path + R"("}])"));
    const std::string bytes = document_reply();
    const auto answer = pqclient::parse_answer(
        {reinterpret_cast<const uint8_t*>(bytes.data()) + sizeof(pqclient::DocumentHeader),
         bytes.size() - sizeof(pqclient::DocumentHeader) - pqclient::kDocumentTrailerSize});
    return cJSON_GetNumberValue(cJSON_GetObjectItem(answer.value, member));
  }

  void connect_to_board() { connection_.emplace(connect()); }

 private:
  std::map<std::string, std::string> examples_ = read_examples();
  std::optional<pqclient::Connection> connection_;
};

TEST_F(ProtocolDocument, ShowsPacketsThatTheBoardTakesAndSends) {
  start_with_documents();
  connect_to_board();
  const std::string query = R"([{"path":"/csc","toolversion":"1.0.0","platform":0}])";
  send_document("query-pq", DocumentCommand::kQueryPq, query);
  shown("query-pq-reply", document_reply());

  send_document("update-pq", DocumentCommand::kUpdatePq,
                R"([{"op":"replace","path":"/csc/cscBrightness","value":330,)"
                R"("toolversion":"1.0.0","platform":1}])");
  EXPECT_EQ(stored("/csc", "cscBrightness"), 330);

  send_document("query-aipq", DocumentCommand::kQueryAipq,
                R"([{"path":"/dci","toolversion":"1.0.0","platform":0}])");
  shown("query-aipq-reply-start", document_reply().substr(0, 96));

  send_document("update-aipq", DocumentCommand::kUpdateAipq,
                R"([{"op":"replace","path":"/dci/4/dciEnable","value":0,)"
                R"("toolversion":"1.0.0","platform":1}])");
  EXPECT_EQ(stored("/csc", "cscBrightness"), 330);
  EXPECT_EQ(board().property("vendor.tvinput.qxpq.update_aisd_dci_tab"), "1");

  send_command("dump", Command::kDump, {pqclient::kFlagSecond});
  constexpr size_t kPicture = size_t{1920} * 1080 * 3;
  shown("dump-reply-start", reply(sizeof(pqclient::DumpHeader) + kPicture).substr(0, 5));

  send_command("pattern", Command::kPattern, {255, 128, 0});
  shown("pattern-reply", reply(sizeof(pqclient::CommandPacket)));
  EXPECT_EQ(board().calls().back().substr(0, 8), "am start");

  send_command("pattern-mode", Command::kPatternMode, {pqclient::kFlagFirst});
  shown("pattern-mode-reply", reply(sizeof(pqclient::CommandPacket)));
  EXPECT_EQ(stored("/dci", "dciEnable"), 0);
  expect_that_all_were_shown();
}

}  // namespace
}  // namespace scenario
