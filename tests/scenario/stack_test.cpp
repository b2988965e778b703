// Threads on a board have 1,008 KiB of stack. Skipped under sanitizers, whose frames are larger.
#include "scenario/daemon_test.h"

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

namespace scenario {
namespace {

class SmallStack : public DaemonTest {
 protected:
  static std::string nested(int depth) {
    const auto count = static_cast<size_t>(depth);
    return std::string(count, '[') + std::string(count, ']');
  }
  static bool answers(uint32_t query, const std::string& text) {
    auto connection = connect();
    send(connection, document_packet(query, text));
    return !receive(connection, 1, std::chrono::seconds(20)).empty();
  }
};

TEST_F(SmallStack, CarriesEveryRequestOnTheLargestDocuments) {
  board::Description description;
  description.dump_width = 64;
  description.dump_height = 32;
  power_on(description, {.daemon = "/bin/sh",
                         .arguments = {"-c", "ulimit -s 1008; exec \"$0\"", PQ_DAEMON},
                         .hurry = 20});
  start_daemon();
  // As deep as a document may be, and doubled until the update is refused.
  change_aipq(R"({"op":"add","path":"/deep","value":)" + nested(240) + "}");
  for (int i = 0; i < 5; ++i)
    change_aipq(R"({"op":"copy","from":"","path":"/again)" + std::to_string(i) + R"("})");
  change_aipq(R"({"op":"add","path":"/long","value":")" + std::string(6'000'000, 'x') + "\"}");
  EXPECT_GT(board().read(kAipqDocument).size(), size_t{6'000'000});
  // A file may be deeper than an update can make it: as deep as the parser allows.
  std::string document = board().read(kPqDocument);
  document.insert(document.find("\"csc\""), "\"deep\":" + nested(900) + ",");
  board().write(kPqDocument, document);

  const std::string deepest = nested(990);
  for (const uint32_t query : {1U, 3U}) {
    for (const char* path : {"/csc", "/gamma", "/dci", "/acm", "/sharp"}) {
      if (query == 3 && path[1] != 'd' && path[1] != 'a') continue;
      EXPECT_TRUE(
          answers(query, R"([{"path":")" + std::string(path) + R"(","value":)" + deepest + "}]"))
          << query << " " << path;
    }
  }
  change(R"({"op":"add","path":"/csc/cscMode","value":)" + deepest + "}");
  change_aipq(R"({"op":"add","path":"/acm/0","value":)" + deepest + "}");
  change_aipq(R"({"op":"test","path":"","value":{"again0":{}}})");
  for (const char* path : {"/csc/cscHue", "/gamma/gammaTab_R/1", "/dci/dciEnable", "/acm/lumGain"})
    change(R"({"op":"replace","path":")" + std::string(path) + R"(","value":1})");
  change_aipq(R"({"op":"replace","path":"/acm/0/lumGain","value":1})");
  for (const uint16_t number : {uint16_t{3}, uint16_t{4}})
    EXPECT_EQ(command(number, {0x80}).size(), sizeof(pqclient::CommandPacket));
  EXPECT_GT(command(2, {0x80}, std::chrono::seconds(20), 5).size(), 0U);
  EXPECT_TRUE(serves());
  EXPECT_EQ(board().stop(), 0);
}

}  // namespace
}  // namespace scenario

#endif
