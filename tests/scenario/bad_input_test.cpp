// Requests that no tool should send, and documents that should never be on the board. The daemon
// keeps serving, and the stored documents do not change.
#include <filesystem>
#include <thread>

#include "scenario/daemon_test.h"

namespace scenario {
namespace {

using namespace std::chrono_literals;

class BadInput : public DaemonTest {
 protected:
  // Each text is sent alone, on a connection of its own.
  static void send_alone(const std::string& bytes) {
    auto connection = connect();
    send(connection, bytes);
    std::this_thread::sleep_for(20ms);
  }
};

TEST_F(BadInput, RequestsThatAreNoRequestsChangeNothing) {
  board::Board& board = start_with_documents();
  const std::string before = board.read(kPqDocument);
  for (const std::string text :
       {"", "[", "[]", "{}", "[{}]", "[[]]", "[7]", "[\"path\"]", "null", "[null]", "garbage",
        R"([{"path":7}])", R"([{"path":null}])", R"([{"path":["csc"]}])", R"([{"path":{}}])",
        R"([{"path":"/unknown"}])", R"([{"op":"replace"}])", R"([{"platform":1e300}])",
        R"([{"platform":"x","toolversion":1}])"}) {
    for (const uint32_t command : {0U, 1U}) {
      send_alone(document_packet(command, text));
    }
  }
  EXPECT_TRUE(serves());
  EXPECT_EQ(board.read(kPqDocument), before);
}

TEST_F(BadInput, AQueryIsAnsweredWhateverTheDocumentIs) {
  start_with_documents();
  for (const std::string text :
       {"", "{", "[]", "7", "null", "{\"pq_tuning_param\":7}",
        R"({"pq_tuning_param":{"csc":[1],"gamma":{"gammaTab_R":"x"},"dci":null}})",
        R"({"pq_tuning_param":{"csc":{"cscHue":"x","cscMode":1,"cscEnable":1e300}}})"}) {
    board().write(kPqDocument, text);
    for (const char* section : {"/csc", "/gamma", "/dci", "/acm", "/sharp"}) {
      EXPECT_TRUE(cJSON_IsObject(client().query_pq(section).value)) << section << " of " << text;
    }
    board().write(kAipqDocument, text);
    EXPECT_NE(client().query_aipq("/dci").request, nullptr) << text;
  }
  std::filesystem::remove(board().file(kPqDocument));
  EXPECT_TRUE(cJSON_IsObject(client().query_pq("/gamma").value)) << "no document";
}

}  // namespace
}  // namespace scenario
