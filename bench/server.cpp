// Measures the daemon as a process: bench_server DAEMON EMPTY_PROGRAM, inside tools/private-root.
//
// Prints one line each, "NAME <tab> value <tab> reference": microseconds from the start to the
// first accepted connection, and from start to exit of the empty program; resident kilobytes
// without a client; bytes for each idle client.
#include <arpa/inet.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "base/owner.h"
#include "bench/documents.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr uint16_t kPort = 5543;
constexpr int kStarts = 100;

pid_t start(const char* program) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
  posix_spawn_file_actions_adddup2(&actions, STDOUT_FILENO, STDERR_FILENO);
  char* const arguments[] = {const_cast<char*>(program), nullptr};
  pid_t pid = -1;
  if (posix_spawn(&pid, program, &actions, nullptr, arguments, environ) != 0) {
    std::perror(program);
    std::exit(1);
  }
  posix_spawn_file_actions_destroy(&actions);
  return pid;
}

void end(pid_t pid) {
  kill(pid, SIGKILL);
  waitpid(pid, nullptr, 0);
}

// Invalid if no server listens yet.
pq::UniqueFd try_to_connect() {
  pq::UniqueFd socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(kPort);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  const auto* where = reinterpret_cast<const sockaddr*>(&address);
  if (connect(socket.get(), where, sizeof(address)) != 0) socket.reset();
  return socket;
}

pq::UniqueFd connect_to_daemon() {
  constexpr std::chrono::seconds kMaxWait{10};
  const Clock::time_point give_up = Clock::now() + kMaxWait;
  while (Clock::now() < give_up) {
    pq::UniqueFd socket = try_to_connect();
    if (socket.valid()) return socket;
  }
  std::fputs("bench: the daemon does not listen\n", stderr);
  std::exit(1);
}

template <typename Action>
double microseconds(Action action) {
  const Clock::time_point start = Clock::now();
  action();
  return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

// The fastest: other load on the machine can only add time.
double least(const std::vector<double>& values) {
  return *std::ranges::min_element(values);
}

// Alternates, so that other load on the machine affects both.
void print_start(const char* daemon, const char* empty_program) {
  std::vector<double> daemon_times, empty_times;
  for (int i = 0; i < kStarts; ++i) {
    pid_t pid = -1;
    daemon_times.push_back(microseconds([&] {
      pid = start(daemon);
      connect_to_daemon();
    }));
    end(pid);
    empty_times.push_back(microseconds([&] { waitpid(start(empty_program), nullptr, 0); }));
  }
  std::printf("start to listening, us\t%.0f\t%.0f\n", least(daemon_times), least(empty_times));
}

// A number from the daemon's /proc/PID/status.
long status_of(pid_t pid, const std::string& key) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with(key + ":")) return std::stol(line.substr(key.size() + 1));
  }
  return 0;
}

// Main thread, accept thread, one thread per client.
void wait_for_threads(pid_t pid, size_t clients) {
  while (status_of(pid, "Threads") != static_cast<long>(clients) + 2)
    std::this_thread::sleep_for(std::chrono::microseconds(200));
}

// Measured once all threads have come to rest.
long resident_kilobytes(pid_t pid) {
  std::this_thread::sleep_for(std::chrono::seconds(2));
  return status_of(pid, "VmRSS");
}

void print_memory(const char* daemon) {
  const pid_t pid = start(daemon);
  connect_to_daemon();  // and disconnects again
  wait_for_threads(pid, 0);
  const long idle = resident_kilobytes(pid);
  std::printf("resident when idle, KB\t%ld\t0\n", idle);
  std::vector<pq::UniqueFd> clients;
  for (const size_t count : {100, 1000}) {
    while (clients.size() < count) {
      clients.push_back(connect_to_daemon());
      // One by one: a client that finds the server's queue full retries only after a second.
      wait_for_threads(pid, clients.size());
    }
    const long grown = resident_kilobytes(pid) - idle;
    std::printf("for each of %zu clients, B\t%ld\t0\n", count,
                grown * 1024 / static_cast<long>(count));
  }
  end(pid);
}

void allow_descriptors() {
  rlimit limit{};
  getrlimit(RLIMIT_NOFILE, &limit);
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: bench_server DAEMON EMPTY_PROGRAM\n", stderr);
    return 2;
  }
  allow_descriptors();
  bench::create_documents();
  print_start(argv[1], argv[2]);
  print_memory(argv[1]);
  return 0;
}
