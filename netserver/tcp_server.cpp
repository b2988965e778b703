#include "netserver/tcp_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <exception>
#include <new>
#include <system_error>

#include "base/log.h"
#include "base/memory.h"
#include "netserver/receive_buffer.h"

namespace {

constexpr int kBacklog = 5;
constexpr std::chrono::milliseconds kAcceptTimeout{1000};   // how long a shutdown waits for accept
constexpr std::chrono::milliseconds kReceiveTimeout{3000};  // how often an idle client is looked at
// So that a blocked send sees the quit flag: with the 4.2 seconds of a dump that is to be sent, the
// end still comes within 5.
constexpr std::chrono::milliseconds kSendTimeout{300};

// An accept that fails for want of descriptors ends the server for good. So we stop accepting while
// there are still enough left for what a request opens.
constexpr int kSpareDescriptors = 32;
constexpr std::chrono::milliseconds kScarcityPause{100};

// Signals that end the process belong to the main thread. SIGCHLD does too: in one of ours it would
// interrupt a receive and cost the client its connection.
void leave_signals_to_main_thread() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGQUIT, SIGINT, SIGTERM, SIGCHLD})
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

// False after a message. Whoever waits on a socket without a bound can't be stopped.
bool set_timeout(int socket, int option, std::chrono::milliseconds time) {
  const timeval timeout{time.count() / 1000, time.count() % 1000 * 1000};
  if (setsockopt(socket, SOL_SOCKET, option, &timeout, sizeof(timeout)) == 0) return true;
  pq::log_error()("no time-out for socket %d, leaving it: errno %d\n", socket, errno);
  return false;
}

void set_flag(int socket, int option) {
  const int on = 1;
  setsockopt(socket, SOL_SOCKET, option, &on, sizeof(on));
}

void raise_descriptor_limit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

TCPServer::~TCPServer() {
  SaveExit();
  recv_threads_finished_id_.clear();
  while (!recv_threads_.empty())
    recv_threads_.pop_back();
}

int TCPServer::Process(int32_t port) {
  stopped_ = false;
  pq::log_debug()("TCPServer::Process\n");
  raise_descriptor_limit();

  // Closed on exec, as every descriptor here: a program that outlives the daemon would otherwise
  // hold the port and swallow connections after a restart.
  sock_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (sock_ < 0) return fail("Failed to create socket with tunner");

  server_addr_ = {};
  const int on = 1;
  if (setsockopt(sock_, SOL_SOCKET, SO_REUSEPORT, &on, sizeof(on)) < 0) {
    return fail("Error setsockopt\n");
  }
  server_addr_.sin_family = AF_INET;
  server_addr_.sin_addr.s_addr = htonl(INADDR_ANY);
  server_addr_.sin_port = htons(static_cast<uint16_t>(port));
  if (bind(sock_, reinterpret_cast<const sockaddr*>(&server_addr_), sizeof(server_addr_)) < 0) {
    return fail("Error bind\n");
  }
  if (listen(sock_, kBacklog) < 0) return fail("Error listen\n");

  quit_ = false;
  accept_thread_ = std::make_unique<std::thread>(&TCPServer::Accepted, this);
  return 0;
}

// The socket stays open: SaveExit closes it.
int TCPServer::fail(const char* message) {
  pq::log_error()("%s", message);
  stopped_ = true;
  return -1;
}

void TCPServer::Accepted() {
  pq::log_info()("TCPServer::Accepted\n");
  leave_signals_to_main_thread();
  const bool can_end = set_timeout(sock_, SO_RCVTIMEO, kAcceptTimeout);
  set_flag(sock_, SO_REUSEADDR);

  bool waits = false;
  while (can_end && !quit_) {
    join_finished();
    if (descriptors_are_scarce()) {
      if (!waits)
        pq::log_error()("too few descriptors left, accepting nobody until some are free\n");
      waits = true;
      std::this_thread::sleep_for(kScarcityPause);
      continue;
    }
    waits = false;
    socklen_t length = sizeof(client_addr_);
    const int client_socket =
        accept4(sock_, reinterpret_cast<sockaddr*>(&client_addr_), &length, SOCK_CLOEXEC);
    if (client_socket >= 0) {
      start_receiving(client_socket);
    } else if (errno == EAGAIN) {
      release_memory_of_the_last_session();
    } else if (errno != EINTR) {
      pq::log_error()("Error socket accept failed %d %d\n", client_socket, errno);
      break;
    }
  }
  close(sock_);
  sock_ = -1;
  stopped_ = true;
  pq::log_debug()("socket accept exit\n");
}

// Descriptors are given out lowest first, so a fresh one's number tells how many are left.
bool TCPServer::descriptors_are_scarce() const {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
  const int probe = fcntl(sock_, F_DUPFD_CLOEXEC, 0);
  if (probe < 0) return true;
  close(probe);
  return limit.rlim_cur != RLIM_INFINITY &&
         static_cast<rlim_t>(probe) + kSpareDescriptors >= limit.rlim_cur;
}

void TCPServer::start_receiving(int client_socket) {
  std::array<char, INET_ADDRSTRLEN> address{};
  inet_ntop(AF_INET, &client_addr_.sin_addr, address.data(), address.size());
  pq::log_debug()("socket accept ip %s\n", address.data());
  const size_t index = recv_threads_.size();
  try {
    note_open(client_socket);
    recv_threads_.push_back(std::make_unique<std::thread>());
    *recv_threads_.back() = std::thread([this, client_socket, index] {
      Recvieve(client_socket);
      leave_to_join(index);
    });
  } catch (const std::exception& error) {
    pq::log_error()("no thread for the client on socket %d, closing it: %s\n", client_socket,
                    error.what());
    recv_threads_.resize(index);
    close_client(client_socket);
    return;
  }
  // The text is an old one that people look for; the socket stays open.
  pq::log_debug()("socket accept close\n");
}

int32_t TCPServer::Recvieve(int32_t client_socket) {
  leave_signals_to_main_thread();
  pq::log_debug()("TCPServer::Recvieve enter %d\n", client_socket);
  const bool can_end = set_timeout(client_socket, SO_RCVTIMEO, kReceiveTimeout) &&
                       set_timeout(client_socket, SO_SNDTIMEO, kSendTimeout);
  set_flag(client_socket, SO_KEEPALIVE);  // a client that lost its power is noticed one day
  try {
    if (can_end) receive_until_gone(client_socket);
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for the client on socket %d, closing it\n", client_socket);
  }
  pq::log_debug()("TCPServer::Recvieve exit %d\n", client_socket);
  close_client(client_socket);
  note_finished();
  return 0;
}

void TCPServer::receive_until_gone(int client_socket) {
  // Zeroed once, not between receives: a short command packet is completed by what was there.
  ReceiveBuffer buffer(kReceiveSize);
  while (!quit_) {
    const ssize_t length =
        recvfrom(client_socket, buffer.data(), buffer.size(), 0, nullptr, nullptr);
    if (length == 0) {
      pq::log_debug()("socket recvieve exit\n");
      return;
    }
    if (length < 0) {
      if (errno == EAGAIN || errno == EINTR) continue;
      return;
    }
    pq::log_debug()("socket recvieve length: %zd\n", length);
    // A request that comes this late would hold up the end by the seconds that it takes.
    if (quit_) return;
    handle_chunk(client_socket, buffer.data(), static_cast<int>(length));
  }
}

void TCPServer::handle_chunk(int client_socket, char* data, int length) {
  if (!callback_) return;
  try {
    callback_(client_socket, data, length);
  } catch (const std::exception& error) {
    pq::log_error()("chunk of %d bytes dropped: %s\n", length, error.what());
  }
}

void TCPServer::note_open(int client_socket) {
  const std::lock_guard lock(open_mutex_);
  open_sockets_.push_back(client_socket);
}

// Off the list first: once it is closed, its number may be another client's.
void TCPServer::close_client(int client_socket) {
  {
    const std::lock_guard lock(open_mutex_);
    std::erase(open_sockets_, client_socket);
  }
  close(client_socket);
}

// Waiting for the receive time-outs instead would take three seconds and a quarter: the kernel
// rounds long ones up. What a client sent before is still received, what we answer still sent.
void TCPServer::end_receiving() {
  const std::lock_guard lock(open_mutex_);
  for (const int client_socket : open_sockets_)
    shutdown(client_socket, SHUT_RD);
}

void TCPServer::note_finished() {
  size_t count = 0;
  try {
    const std::lock_guard lock(finished_mutex_);
    recv_threads_finished_id_.push_back(std::this_thread::get_id());
    count = recv_threads_finished_id_.size();
  } catch (const std::bad_alloc&) {
    // Not counted.
  }
  pq::log_debug()("TCPServer::recv_threads_finished_id_ len: %zu\n", count);
}

void TCPServer::leave_to_join(size_t index) {
  try {
    const std::lock_guard lock(finished_mutex_);
    to_join_.push_back(index);
  } catch (const std::bad_alloc&) {
    // This thread is joined at shutdown.
  }
}

size_t TCPServer::finished_count() const {
  const std::lock_guard lock(finished_mutex_);
  return recv_threads_finished_id_.size();
}

// A finished thread that nobody joins keeps its stack. Its place in the list stays, empty.
void TCPServer::join_finished() {
  std::vector<size_t> finished;
  {
    const std::lock_guard lock(finished_mutex_);
    finished.swap(to_join_);
  }
  for (const size_t index : finished) {
    recv_threads_[index]->join();
    recv_threads_[index].reset();
  }
}

// A tuning session is over when nobody has been connected for a moment; a second later the daemon
// is as small again as before it.
void TCPServer::release_memory_of_the_last_session() {
  if (released_for_ == recv_threads_.size()) return;
  {
    const std::lock_guard lock(open_mutex_);
    if (!open_sockets_.empty()) return;
  }
  pq::release_unused_memory();
  released_for_ = recv_threads_.size();
}

int32_t TCPServer::SaveExit() {
  quit_ = true;
  if (accept_thread_ && accept_thread_->joinable()) accept_thread_->join();
  end_receiving();
  for (const auto& thread : recv_threads_) {
    if (thread && thread->joinable()) thread->join();
  }
  const int32_t result = close(sock_);
  sock_ = -1;
  return result;
}
