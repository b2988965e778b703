// One request of each kind that a client can send.
#include <array>
#include <exception>
#include <filesystem>
#include <new>

#include <cutils/properties.h>

#include "documents/names.h"
#include "faults/captured_reply.h"
#include "faults/subject.h"
#include "netserver/tcp_server.h"
#include "pqclient/packets.h"
#include "qxaiq/qxaiq_protocol.h"
#include "support/temporary_folder.h"

namespace faults {
namespace {

using pqclient::Command;
using pqclient::DocumentCommand;

std::string bytes_of(const pqclient::Bytes& packet) {
  return {packet.begin(), packet.end()};
}

std::string command(Command number, const pqclient::Bytes& arguments) {
  return bytes_of(make_command_packet(number, arguments));
}

std::string document(DocumentCommand command, const std::string& text) {
  return bytes_of(make_document_packet(command, text));
}

std::string query(DocumentCommand command, const char* path) {
  return document(
      command, "[{\"path\":\"" + std::string(path) + "\",\"toolversion\":\"1\",\"platform\":7}]");
}

std::string change(DocumentCommand command, const std::string& operation) {
  return document(command, "[" + operation + "]");
}

bool is_dump(const std::string& packet) {
  constexpr size_t kNumberOffset = 10;
  return packet.compare(0, 8, "QXISP-AK") == 0 &&
         packet[kNumberOffset] == static_cast<char>(Command::kDump);
}

// Like the server's receive thread: 8192 bytes at a time. An exception drops the chunk; only a dump
// that lacks memory may throw one.
std::string receive(const std::string& packet) {
  static std::array<char, TCPServer::kReceiveSize> buffer{};
  for (size_t at = 0; at < packet.size(); at += buffer.size()) {
    const size_t length = packet.copy(buffer.data(), buffer.size(), at);
    try {
      QXAiqProtocol::HandlerTCPMessage(kCaptured, buffer.data(), static_cast<int>(length));
    } catch (const std::bad_alloc&) {
      if (!is_dump(packet)) return "std::bad_alloc was thrown";
    } catch (const std::exception& error) {
      return error.what();
    }
  }
  return take_reply();
}

std::string table_of(const char* number, int count) {
  std::string table = "[";
  for (int i = 0; i < count; ++i)
    table += std::string(number) + ",";
  table.back() = ']';
  return table;
}

// Leftovers of an interrupted document would garble the next one.
void empty_collection() {
  receive(document(DocumentCommand::kUpdatePq, std::string(10'000, ' ')));
  receive("stray");
}

constexpr char kDamaged[] = "/data/vendor/qxalgo/pq_config.json.damaged";

std::string half_of(const std::string& text) {
  return text.substr(0, text.size() / 2);
}

void put_dump() {
  constexpr char kDump[] = "/data/vendor/qxalgo/pq_dump_in_4x2.rgb";
  write_file(kDump, std::string(24, 'p'));
  property_set("vendor.tvinput.qxpq.dump.path", kDump);
}

}  // namespace

std::vector<Subject> requests(const Stored& first) {
  const std::string many_values =
      change(DocumentCommand::kUpdatePq, R"({"op":"replace","path":"/gamma/gammaTab_R","value":)" +
                                             table_of("4095", 2000) + "}");
  const std::string operations =
      R"({"op":"test","path":"/gamma/gammaEnable","value":1},{"op":"add","path":"/x","value":{"y":[1]}},)"
      R"({"op":"copy","from":"/x","path":"/z"},{"op":"add","path":"/z/y/0","value":2},)"
      R"({"op":"move","from":"/z/y","path":"/x/y"},{"op":"remove","path":"/x"})";

  std::vector<Subject> subjects;
  const auto add = [&](const char* name, const std::string& packet,
                       std::function<void()> prepare = nullptr) -> Subject& {
    Subject subject;
    subject.name = name;
    subject.prepare = [=] {
      store(first);
      if (prepare) prepare();
    };
    subject.run = [=] { return receive(packet); };
    subject.serves_afterwards = [] {
      const bool answers = !receive(query(DocumentCommand::kQueryPq, "/csc")).empty() &&
                           !receive(query(DocumentCommand::kQueryAipq, "/dci")).empty();
      return std::string(answers ? "" : "no answer to a query afterwards");
    };
    return subjects.emplace_back(std::move(subject));
  };

  add("pq-query", query(DocumentCommand::kQueryPq, "/csc"));
  add("pq-query-tables", query(DocumentCommand::kQueryPq, "/gamma"));
  add("aipq-query", query(DocumentCommand::kQueryAipq, "/dci"));
  add("pq-change", change(DocumentCommand::kUpdatePq,
                          R"({"op":"replace","path":"/csc/cscHue","value":9,"platform":1})"));
  add("pq-change-low-latency",
      change(DocumentCommand::kUpdatePq,
             R"({"op":"replace","path":"/csc/cscMode","value":"LOW_LATENCY_MODE"})"));
  add("pq-change-gamma", change(DocumentCommand::kUpdatePq,
                                R"({"op":"replace","path":"/gamma/gammaTab_R","value":[7,8,9]})"));
  add("pq-change-lut",
      change(DocumentCommand::kUpdatePq, R"({"op":"replace","path":"/dci/dciEnable","value":0})"));
  add("pq-operations", change(DocumentCommand::kUpdatePq, operations));
  Subject& large = add("pq-large-document", many_values, empty_collection);
  large.serves_afterwards = [serves = large.serves_afterwards] {
    empty_collection();
    return serves();
  };
  Subject& beside = add("pq-query-beside-an-upload", query(DocumentCommand::kQueryPq, "/csc"), [=] {
    empty_collection();
    receive(many_values.substr(0, TCPServer::kReceiveSize));
  });
  beside.serves_afterwards = [=, serves = beside.serves_afterwards] {
    receive(many_values.substr(TCPServer::kReceiveSize));
    const bool uploaded = stored().pq.find("4095") != std::string::npos;
    store(first);
    return uploaded ? serves() : std::string("the upload of another client was lost");
  };
  add("aipq-change",
      change(DocumentCommand::kUpdateAipq, R"({"op":"add","path":"/acm/0/lumGain","value":5})"));
  add("aipq-operations", change(DocumentCommand::kUpdateAipq, operations + R"(,{"path":"/acm"})"));
  add("pattern", command(Command::kPattern, {0xFF, 0x80, 1}));
  const std::string enter = command(Command::kPatternMode, {pqclient::kFlagFirst});
  add("pattern-mode-enter", enter);
  add("pattern-mode-leave", command(Command::kPatternMode, {pqclient::kFlagSecond}),
      [enter] { receive(enter); });
  Subject& damaged = add("pattern-mode-damaged", enter, [=] {
    std::filesystem::remove(kDamaged);
    write_file(pq::kPqDocument, half_of(first.pq));
  });
  damaged.serves_afterwards = [=, serves = damaged.serves_afterwards] {
    const bool kept = stored().pq == half_of(first.pq) || text_of(kDamaged) == half_of(first.pq);
    return kept ? serves() : std::string("the damaged document is lost");
  };
  add("dump-input", command(Command::kDump, {pqclient::kFlagFirst}), put_dump).any_bytes = true;
  add("dump-output", command(Command::kDump, {pqclient::kFlagSecond}), put_dump).any_bytes = true;
  add("unknown-command", command(Command{9}, {}));
  return subjects;
}

}  // namespace faults
