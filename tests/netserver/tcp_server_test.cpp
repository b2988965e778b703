#include "netserver/tcp_server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "base/owner.h"
#include "support/private_network.h"
#include "support/slack.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr uint16_t kPort = 6001;

sockaddr_in loopback() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(kPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

// flags: SOCK_NONBLOCK to return before the connection is accepted.
pq::UniqueFd connect_client(int flags = 0) {
  pq::UniqueFd client(socket(AF_INET, SOCK_STREAM | flags, 0));
  const sockaddr_in address = loopback();
  const int result =
      connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address));
  EXPECT_TRUE(result == 0 || flags != 0);
  return client;
}

std::string receive(const pq::UniqueFd& client, size_t size) {
  std::string answer(size, '\0');
  const ssize_t length = recv(client.get(), answer.data(), answer.size(), 0);
  answer.resize(length > 0 ? static_cast<size_t>(length) : 0);
  return answer;
}

std::string ask(const pq::UniqueFd& client, const std::string& question) {
  send(client.get(), question.data(), question.size(), MSG_NOSIGNAL);
  return receive(client, question.size());
}

template <typename Condition>
bool comes_true(Condition condition) {
  for (int i = 0; i < 500; ++i) {
    if (condition()) return true;
    std::this_thread::sleep_for(20ms);
  }
  return false;
}

// A server on the loopback interface of a private network.
class TcpServerTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!board::in_private_network()) GTEST_SKIP() << "no private network here";
  }
  void serve(TCPServer::Callback callback) {
    server_.set_callback(std::move(callback));
    ASSERT_EQ(server_.Process(kPort), 0);
  }
  void serve_echo() {
    serve([](int socket, char* data, int length) {
      return static_cast<int>(send(socket, data, static_cast<size_t>(length), MSG_NOSIGNAL));
    });
  }

  TCPServer server_;
};

TEST_F(TcpServerTest, HandsOverChunksOfAtMost8192BytesInOrder) {
  std::mutex mutex;
  std::string received;
  size_t largest = 0;
  serve([&](int, char* data, int length) {
    const std::lock_guard lock(mutex);
    received.append(data, static_cast<size_t>(length));
    largest = std::max(largest, static_cast<size_t>(length));
    return 0;
  });
  std::string sent(20'000, ' ');
  for (size_t i = 0; i < sent.size(); ++i)
    sent[i] = static_cast<char>(i % 251);
  const pq::UniqueFd client = connect_client();
  ASSERT_EQ(send(client.get(), sent.data(), sent.size(), 0), 20'000);
  EXPECT_TRUE(comes_true([&] {
    const std::lock_guard lock(mutex);
    return received == sent;
  }));
  EXPECT_LE(largest, TCPServer::kReceiveSize);
}

TEST_F(TcpServerTest, WhatACallbackThrowsEndsThatChunkOnly) {
  std::atomic<bool> throws = false;
  serve([&](int socket, char* data, int length) {
    throws = data[0] == '!';
    if (throws) throw std::length_error("too long");
    return static_cast<int>(send(socket, data, static_cast<size_t>(length), MSG_NOSIGNAL));
  });
  const pq::UniqueFd client = connect_client();
  send(client.get(), "!", 1, 0);
  EXPECT_TRUE(comes_true([&] { return throws.load(); }));
  EXPECT_EQ(ask(client, "still there"), "still there");
}

TEST_F(TcpServerTest, CountsItsFinishedClients) {
  testing::internal::CaptureStderr();
  serve_echo();
  for (int i = 0; i < 100; ++i)
    EXPECT_EQ(ask(connect_client(), "x"), "x");
  server_.SaveExit();
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("recv_threads_finished_id_ len: 100\n"), std::string::npos);
  EXPECT_EQ(log.find("recv_threads_finished_id_ len: 101\n"), std::string::npos);
}

// The sockets' time-outs are one and three seconds.
TEST_F(TcpServerTest, AStopWakesAllThreadsAtOnce) {
  serve_echo();
  std::vector<pq::UniqueFd> silent(100);
  for (pq::UniqueFd& client : silent) {
    client = connect_client();
    EXPECT_EQ(ask(client, "x"), "x");
  }
  const auto asked = Clock::now();
  server_.SaveExit();
  EXPECT_LT(Clock::now() - asked, 500ms + kSlack);
  EXPECT_TRUE(server_.stopped());
}

TEST_F(TcpServerTest, AStopWaitsForARequestUntilItsDeadline) {
  std::atomic<bool> begun = false;
  std::atomic<bool> may_end = false;
  serve([&](int, char*, int) {
    begun = true;
    while (!may_end)
      std::this_thread::sleep_for(1ms);
    return 0;
  });
  const pq::UniqueFd client = connect_client();
  send(client.get(), "x", 1, 0);
  ASSERT_TRUE(comes_true([&] { return begun.load(); }));
  const auto asked = Clock::now();
  EXPECT_FALSE(server_.stop_by(asked + 100ms));
  EXPECT_GE(Clock::now() - asked, 100ms);
  may_end = true;
  EXPECT_TRUE(server_.stop_by(Clock::now() + 20s));
  server_.SaveExit();
}

TEST_F(TcpServerTest, SaysWhenItHasBecomeIdle) {
  std::atomic<int> said = 0;
  server_.set_idle_callback([&] { ++said; });
  serve_echo();
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(said, 0) << "before the first client";
  {
    const pq::UniqueFd client = connect_client();
    EXPECT_EQ(ask(client, "x"), "x");
    std::this_thread::sleep_for(1500ms);
    EXPECT_EQ(said, 0) << "with a client";
  }
  EXPECT_TRUE(comes_true([&] { return said > 0; }));
  std::this_thread::sleep_for(1500ms);
  EXPECT_EQ(said, 1);
}

TEST_F(TcpServerTest, ServesAFurtherClientOnlyWhenOneOfAThousandHasLeft) {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  // Server and clients share this process's descriptors.
  if (limit.rlim_max < 3 * TCPServer::kMaxClients) GTEST_SKIP() << "too few descriptors here";
  serve_echo();
  std::vector<pq::UniqueFd> clients(TCPServer::kMaxClients);
  for (pq::UniqueFd& client : clients) {
    client = connect_client();
    ASSERT_EQ(ask(client, "x"), "x");
  }
  const pq::UniqueFd further = connect_client();
  const timeval patience{0, 500'000};
  setsockopt(further.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
  EXPECT_EQ(ask(further, "x"), "");
  EXPECT_EQ(ask(clients.front(), "x"), "x") << "the others are served meanwhile";
  clients.pop_back();
  EXPECT_TRUE(comes_true([&] { return receive(further, 1) == "x"; }));
}

TEST_F(TcpServerTest, APortThatIsTakenIsNamedWithTheReason) {
  const pq::UniqueFd taken(socket(AF_INET, SOCK_STREAM, 0));
  sockaddr_in address = loopback();
  ASSERT_EQ(bind(taken.get(), reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(server_.Process(kPort), -1);
  const std::string log = testing::internal::GetCapturedStderr();
  EXPECT_NE(log.find("Error bind\n"), std::string::npos);
  EXPECT_NE(log.find("cannot serve port 6001: Address already in use\n"), std::string::npos);
  EXPECT_TRUE(server_.stopped());
}

// A failed accept, if descriptors run out, would stop the server for good.
TEST_F(TcpServerTest, ServesAgainAfterItRanShortOfDescriptors) {
  rlimit before{};
  getrlimit(RLIMIT_NOFILE, &before);
  rlimit few = before;
  few.rlim_cur = few.rlim_max = 128;
  // Server and clients share this process's descriptors; 100 for clients are more than enough.
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &few), 0);
  serve_echo();
  testing::internal::CaptureStderr();
  std::vector<pq::UniqueFd> clients;
  for (int i = 0; i < 60; ++i) {
    clients.push_back(connect_client(SOCK_NONBLOCK));
    std::this_thread::sleep_for(5ms);  // the server's queue is short
  }
  std::this_thread::sleep_for(200ms);
  EXPECT_NE(testing::internal::GetCapturedStderr().find("too few descriptors"), std::string::npos);
  EXPECT_FALSE(server_.stopped());
  clients.clear();
  EXPECT_EQ(ask(connect_client(), "again"), "again");
}

}  // namespace
