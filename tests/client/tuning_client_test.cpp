#include "pqclient/tuning_client.h"

#include <gtest/gtest.h>

#include <atomic>

#include "client/fake_board.h"
#include "pqclient/error.h"

namespace pqclient {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr auto kReadPq = DocumentCommand::kReadPq;
constexpr const char* kCscReply = R"({"path":"/csc","platform":1,"value":{"cscHue":256}})";

// Long enough for any machine where an answer comes, short where the test waits for none.
constexpr Timing kPatient{.connect = seconds(10), .answer = seconds(10)};
constexpr Timing kHurried{.connect = seconds(10), .answer = milliseconds(100)};

ErrorKind kind_of_failed_query(const FakeBoard& board, const Timing& timing) {
  try {
    TuningClient(board.address(), timing).query_pq("/csc");
  } catch (const Error& error) {
    EXPECT_NE(std::string(error.what()), "");
    return error.kind();
  }
  ADD_FAILURE() << "no error";
  return ErrorKind::kInput;
}

TEST(Query, SendsOneOperationWithoutValueAndLearnsThePlatform) {
  std::string first;
  std::string second;
  FakeBoard board([&](Visitor& visitor) {
    first = visitor.receive_text(kReadPq);
    visitor.reply(kCscReply);
    second = visitor.receive_text(kReadPq);
    visitor.reply(kCscReply);
  });
  TuningClient client(board.address(), kPatient, "test 1.0");
  EXPECT_EQ(print_json(*client.query_pq("/csc").value), R"({"cscHue":256})");
  client.query_pq("/csc");
  EXPECT_EQ(first, R"([{"op":"test","path":"/csc","toolversion":"test 1.0","platform":0}])");
  EXPECT_EQ(second, R"([{"op":"test","path":"/csc","toolversion":"test 1.0","platform":1}])");
}

TEST(Query, HalfAnAnswerIsATimeout) {
  FakeBoard board([](Visitor& visitor) {
    visitor.receive_text(kReadPq);
    visitor.send(Bytes{0x51, 0xAA, 0xFF, 0x58, 0, 0});
    visitor.stall();
  });
  EXPECT_EQ(kind_of_failed_query(board, kHurried), ErrorKind::kTimeout);
}

TEST(Query, ClosedConnectionIsLost) {
  FakeBoard board([](Visitor& visitor) { visitor.receive_text(kReadPq); });
  EXPECT_EQ(kind_of_failed_query(board, kPatient), ErrorKind::kConnectionLost);
}

TEST(Query, OtherProtocolIsABadAnswer) {
  FakeBoard board([](Visitor& visitor) {
    const std::string_view text = "HTTP/1.1 400 Bad Request\r\n\r\n";
    visitor.send({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    visitor.stall();
  });
  EXPECT_EQ(kind_of_failed_query(board, kPatient), ErrorKind::kBadAnswer);
}

TEST(Query, AnswerForAnotherPathIsABadAnswer) {
  FakeBoard board([](Visitor& visitor) {
    visitor.receive_text(kReadPq);
    visitor.reply(R"({"path":"/dci","platform":1,"value":{}})");
    visitor.stall();
  });
  EXPECT_EQ(kind_of_failed_query(board, kPatient), ErrorKind::kBadAnswer);
}

TEST(Query, AfterATimeoutTheNextOneConnectsAfresh) {
  std::atomic<int> connections = 0;
  FakeBoard board([&](Visitor& visitor) {
    if (++connections == 1) {
      visitor.stall();
    } else {
      visitor.receive_text(kReadPq);
      visitor.reply(kCscReply);
      visitor.stall();
    }
  });
  TuningClient client(board.address(), {.answer = milliseconds(300)});
  EXPECT_THROW(client.query_pq("/csc"), Error);
  EXPECT_NE(client.query_pq("/csc").value, nullptr);
  EXPECT_EQ(connections, 2);
}

}  // namespace
}  // namespace pqclient
