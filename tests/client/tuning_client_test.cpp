#include "pqclient/tuning_client.h"

#include <gtest/gtest.h>

#include <atomic>

#include "client/fake_board.h"
#include "pqclient/error.h"

namespace pqclient {
namespace {

using std::chrono::milliseconds;

constexpr const char* kCscReply = R"({"path":"/csc","platform":1,"value":{"cscHue":256}})";

TEST(Query, SendsOneOperationWithoutValueAndLearnsThePlatform) {
  std::string first;
  std::string second;
  FakeBoard board([&](Visitor& visitor) {
    first = visitor.receive_request();
    visitor.reply(kCscReply);
    second = visitor.receive_request();
    visitor.reply(kCscReply);
  });
  TuningClient client(board.address(), {}, "test 1.0");
  EXPECT_EQ(print_json(*client.query_pq("/csc").value), R"({"cscHue":256})");
  client.query_pq("/csc");
  EXPECT_EQ(first, R"([{"op":"test","path":"/csc","toolversion":"test 1.0","platform":0}])");
  EXPECT_EQ(second, R"([{"op":"test","path":"/csc","toolversion":"test 1.0","platform":1}])");
}

TEST(Query, IsNotAnsweredByAnotherProtocolNorForAnotherPath) {
  for (const std::string_view answer :
       {"HTTP/1.1 400 Bad Request\r\n\r\n", R"({"path":"/dci","platform":1,"value":{}})"}) {
    FakeBoard board([&](Visitor& visitor) {
      visitor.receive_request();
      if (answer.starts_with('{')) visitor.reply(answer);
      visitor.send({reinterpret_cast<const std::uint8_t*>(answer.data()), answer.size()});
      visitor.stall();
    });
    try {
      TuningClient(board.address(), {}).query_pq("/csc");
      ADD_FAILURE() << "taken: " << answer;
    } catch (const Error& error) {
      EXPECT_EQ(error.kind(), ErrorKind::kBadAnswer) << answer;
    }
  }
}

TEST(Query, AfterATimeoutTheNextOneConnectsAfresh) {
  std::atomic<int> connections = 0;
  FakeBoard board([&](Visitor& visitor) {
    if (++connections == 1) {
      visitor.stall();
    } else {
      visitor.receive_request();
      visitor.reply(kCscReply);
      visitor.stall();
    }
  });
  TuningClient client(board.address(), {.answer = milliseconds(300)});
  EXPECT_THROW(client.query_pq("/csc"), Error);
  EXPECT_NE(client.query_pq("/csc").value, nullptr);
  EXPECT_EQ(connections, 2);
}

TEST(Change, IsFollowedByAGap) {
  FakeBoard board([](Visitor& visitor) {
    visitor.receive_request();
    visitor.receive_request();
    visitor.reply(kCscReply);
  });
  TuningClient client(board.address(), {.gap = milliseconds(200)});
  const auto start = std::chrono::steady_clock::now();
  client.update_pq(*replace_operation("/csc/cscHue", *parse_json("5")));
  client.query_pq("/csc");
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(200));
}

}  // namespace
}  // namespace pqclient
