#include "netserver/tcp_server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <exception>
#include <new>

#include "base/log.h"
#include "netserver/receive_buffer.h"

namespace {

using std::chrono::milliseconds;

constexpr int kBacklog = 5;
constexpr int kClosed = -1;

// A stop does not wait for the first two: it shuts the sockets down, which wakes their threads.
// They bound the wait should that ever fail; accept's also says that no client has come for a
// second.
constexpr milliseconds kAcceptTimeout{1000};
constexpr milliseconds kReceiveTimeout{3000};
// A blocked send looks at the shutdown flag this often.
constexpr milliseconds kSendTimeout{300};

// An accept that fails for want of descriptors ends the server for good. So we stop accepting while
// there are still enough left for what a request opens.
constexpr int kSpareDescriptors = 32;
constexpr milliseconds kHoldBackTime{100};  // requests free descriptors without telling

// Signals that end the process belong to the main thread. SIGCHLD does too: in one of ours it would
// interrupt a receive and cost the client its connection.
void leave_signals_to_main_thread() {
  sigset_t signals;
  sigemptyset(&signals);
  for (const int signal : {SIGQUIT, SIGINT, SIGTERM, SIGCHLD})
    sigaddset(&signals, signal);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

// Logs and returns false on failure.
bool set_option(int socket, int option, const char* name, const void* value, socklen_t size) {
  if (setsockopt(socket, SOL_SOCKET, option, value, size) == 0) return true;
  pq::log_error()("socket %d: cannot set %s: %s\n", socket, name, std::strerror(errno));
  return false;
}

bool set_timeout(int socket, int option, const char* name, milliseconds time) {
  const timeval timeout{time.count() / 1000, time.count() % 1000 * 1000};
  return set_option(socket, option, name, &timeout, sizeof(timeout));
}

bool set_flag(int socket, int option, const char* name) {
  const int on = 1;
  return set_option(socket, option, name, &on, sizeof(on));
}

void raise_descriptor_limit() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

// Descriptors are given out lowest first, so a fresh one's number tells how many are left.
bool descriptors_are_scarce(int any_socket) {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return false;
  const int probe = fcntl(any_socket, F_DUPFD_CLOEXEC, 0);
  if (probe < 0) return true;
  close(probe);
  return limit.rlim_cur != RLIM_INFINITY &&
         static_cast<rlim_t>(probe) + kSpareDescriptors >= limit.rlim_cur;
}

}  // namespace

TCPServer::~TCPServer() {
  SaveExit();
}

int TCPServer::Process(int32_t port) {
  stopped_ = false;
  pq::log_debug()("TCPServer::Process\n");
  raise_descriptor_limit();

  const pq::MutexLock lock(mutex_);
  // Closed on exec, as every descriptor here: a program that outlives the daemon would otherwise
  // hold the port and swallow connections after a restart.
  sock_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (sock_ < 0) return fail("Failed to create socket with tunner", port);

  server_addr_ = {};
  const int on = 1;
  if (setsockopt(sock_, SOL_SOCKET, SO_REUSEPORT, &on, sizeof(on)) < 0) {
    return fail("Error setsockopt\n", port);
  }
  server_addr_.sin_family = AF_INET;
  server_addr_.sin_addr.s_addr = htonl(INADDR_ANY);
  server_addr_.sin_port = htons(static_cast<uint16_t>(port));
  if (bind(sock_, reinterpret_cast<const sockaddr*>(&server_addr_), sizeof(server_addr_)) < 0) {
    return fail("Error bind\n", port);
  }
  if (listen(sock_, kBacklog) < 0) return fail("Error listen\n", port);

  quit_ = false;
  accept_thread_ = std::make_unique<std::thread>(&TCPServer::Accepted, this);
  return 0;
}

// The text is part of the interface and stands alone on its line; why, the next one says.
// The socket stays open: SaveExit closes it.
int TCPServer::fail(const char* message, int32_t port) {
  const int error = errno;
  pq::log_error()("%s", message);
  pq::log_error()("cannot serve port %d: %s\n", port, std::strerror(error));
  stopped_ = true;
  return -1;
}

void TCPServer::Accepted() {
  pq::log_info()("TCPServer::Accepted\n");
  leave_signals_to_main_thread();
  int listener = kClosed;
  {
    const pq::MutexLock lock(mutex_);
    listener = sock_;
  }
  (void)set_timeout(listener, SO_RCVTIMEO, "SO_RCVTIMEO", kAcceptTimeout);
  (void)set_flag(listener, SO_REUSEADDR, "SO_REUSEADDR");
  accept_clients(listener);
  {
    const pq::MutexLock lock(mutex_);
    close(sock_);
    sock_ = kClosed;
  }
  stopped_ = true;
  pq::log_debug()("socket accept exit\n");
}

// Returns when the server is to stop, or when accepting has failed for good.
void TCPServer::accept_clients(int listener) {
  bool holding_back = false;
  while (!quit_) {
    join_finished();
    if (const char* missing = shortage(listener); missing != nullptr) {
      if (!holding_back) pq::log_error()("%s: accepting nobody until a client leaves\n", missing);
      holding_back = true;
      hold_back();
      continue;
    }
    holding_back = false;
    socklen_t length = sizeof(client_addr_);
    const int client_socket =
        accept4(listener, reinterpret_cast<sockaddr*>(&client_addr_), &length, SOCK_CLOEXEC);
    if (client_socket >= 0) {
      start_receiving(client_socket);
    } else if (errno == EAGAIN) {
      report_idle();
    } else if (errno != EINTR && !quit_) {  // a stop ends the call, too
      pq::log_error()("Error socket accept failed %d %d\n", client_socket, errno);
      return;
    }
  }
}

// Says why no further client can be served; null when one can.
const char* TCPServer::shortage(int listener) {
  if (descriptors_are_scarce(listener)) return "too few descriptors left";
  const pq::MutexLock lock(mutex_);
  return clients_.size() < kMaxClients ? nullptr : "too many clients";
}

void TCPServer::hold_back() {
  const pq::MutexLock lock(mutex_);
  if (!quit_) client_left_.wait_for(mutex_, kHoldBackTime);
}

void TCPServer::start_receiving(int client_socket) {
  std::array<char, INET_ADDRSTRLEN> address{};
  inet_ntop(AF_INET, &client_addr_.sin_addr, address.data(), address.size());
  pq::log_debug()("socket accept ip %s\n", address.data());
  idle_reported_ = false;
  try {
    Client& client = add_client(client_socket);
    client.thread = std::thread(&TCPServer::Recvieve, this, client_socket);
  } catch (const std::exception& error) {
    pq::log_error()("no thread for the client on socket %d, closing it: %s\n", client_socket,
                    error.what());
    const pq::MutexLock lock(mutex_);
    if (!clients_.empty() && clients_.back().socket == client_socket) clients_.pop_back();
    close(client_socket);
    return;
  }
  // The text is part of the interface; the socket stays open.
  pq::log_debug()("socket accept close\n");
}

TCPServer::Client& TCPServer::add_client(int client_socket) {
  const pq::MutexLock lock(mutex_);
  return clients_.emplace_back(Client{client_socket, {}});
}

int32_t TCPServer::Recvieve(int32_t client_socket) {
  leave_signals_to_main_thread();
  pq::log_debug()("TCPServer::Recvieve enter %d\n", client_socket);
  // A thread blocked in a send without a time-out could not be stopped.
  const bool can_stop = set_timeout(client_socket, SO_RCVTIMEO, "SO_RCVTIMEO", kReceiveTimeout) &&
                        set_timeout(client_socket, SO_SNDTIMEO, "SO_SNDTIMEO", kSendTimeout);
  // Detects clients that vanished without closing.
  (void)set_flag(client_socket, SO_KEEPALIVE, "SO_KEEPALIVE");
  try {
    if (can_stop) receive_until_gone(client_socket);
  } catch (const std::bad_alloc&) {
    pq::log_error()("no memory for the client on socket %d, closing it\n", client_socket);
  }
  pq::log_debug()("TCPServer::Recvieve exit %d\n", client_socket);
  const size_t finished = close_client(client_socket);
  pq::log_debug()("TCPServer::recv_threads_finished_id_ len: %zu\n", finished);
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
    // A request this late would delay shutdown by the seconds that it takes.
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

// Returns how many clients have left so far. Closes under the lock: right afterwards the number may
// be another client's, which a stop must not take for this one.
size_t TCPServer::close_client(int client_socket) {
  const pq::MutexLock lock(mutex_);
  const auto client = std::find_if(clients_.begin(), clients_.end(), [=](const Client& other) {
    return other.socket == client_socket;
  });
  close(client_socket);
  if (client != clients_.end()) client->socket = kClosed;
  client_left_.notify_all();
  return ++finished_count_;
}

// Outside the lock: the threads have still to write their last line.
void TCPServer::join_finished() {
  std::list<Client> finished;
  {
    const pq::MutexLock lock(mutex_);
    for (auto client = clients_.begin(); client != clients_.end();) {
      const auto next = std::next(client);
      if (client->socket == kClosed) finished.splice(finished.end(), clients_, client);
      client = next;
    }
  }
  for (Client& client : finished)
    client.thread.join();
}

void TCPServer::report_idle() {
  if (idle_reported_ || !idle_callback_) return;
  join_finished();
  {
    const pq::MutexLock lock(mutex_);
    if (!clients_.empty()) return;
  }
  idle_callback_();
  idle_reported_ = true;
}

// Answers still reach the clients: only the receiving side of their sockets is shut down.
void TCPServer::ask_threads_to_end() {
  {
    const pq::MutexLock lock(mutex_);
    quit_ = true;
    shutdown(sock_, SHUT_RDWR);  // wakes the accept thread
    client_left_.notify_all();   // also where it holds back
  }
  if (accept_thread_ && accept_thread_->joinable()) accept_thread_->join();
  const pq::MutexLock lock(mutex_);
  for (const Client& client : clients_)
    if (client.socket != kClosed) shutdown(client.socket, SHUT_RD);
}

bool TCPServer::someone_is_connected() const {
  return std::any_of(clients_.begin(), clients_.end(),
                     [](const Client& client) { return client.socket != kClosed; });
}

bool TCPServer::stop_by(std::chrono::steady_clock::time_point deadline) {
  ask_threads_to_end();
  const pq::MutexLock lock(mutex_);
  while (someone_is_connected()) {
    if (client_left_.wait_until(mutex_, deadline) == std::cv_status::timeout) {
      return !someone_is_connected();
    }
  }
  return true;
}

int32_t TCPServer::SaveExit() {
  ask_threads_to_end();
  {
    const pq::MutexLock lock(mutex_);
    while (someone_is_connected())
      client_left_.wait(mutex_);
  }
  join_finished();
  const pq::MutexLock lock(mutex_);
  const int32_t result = close(sock_);
  sock_ = kClosed;
  return result;
}
