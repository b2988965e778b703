#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "load/loaded_board.h"
#include "load/report.h"
#include "load/requests.h"
#include "load/runs.h"

namespace load {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr size_t kLimit = 64;
constexpr auto kAgainAfter = 10s;  // a client whose first attempt was lost retries for seconds

// Requested connections: most of them are never accepted.
class Crowd {
 public:
  explicit Crowd(size_t clients) {
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(kLoopback);
    to.sin_port = htons(pqclient::kDefaultPort);
    for (size_t i = 0; i < clients; ++i) {
      sockets_.push_back(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
      (void)connect(sockets_.back(), reinterpret_cast<const sockaddr*>(&to), sizeof(to));
      std::this_thread::sleep_for(1ms);
    }
  }
  ~Crowd() {
    for (const int socket : sockets_)
      close(socket);
  }
  Crowd(const Crowd&) = delete;
  Crowd& operator=(const Crowd&) = delete;

 private:
  std::vector<int> sockets_;
};

}  // namespace

bool run_few_descriptors(size_t clients) {
  Report report("descriptors");
  LoadedBoard board({.shell_setup = "ulimit -n " + std::to_string(kLimit)});
  const ProcessFigures before = board.figures();
  size_t most = 0;
  Wire early;
  ask(early, pqclient::DocumentCommand::kQueryPq, "/csc");
  {
    const Crowd crowd(clients);
    for (int i = 0; i < 20; ++i) {
      most = std::max(most, board.figures().descriptors);
      // Connected clients are served meanwhile, with a request that opens files and the display.
      early.send(document_packet(pqclient::DocumentCommand::kUpdatePq,
                                 replace_text("/csc/cscHue", std::to_string(i))));
      early.wait_until_taken();
      const auto answer = ask(early, pqclient::DocumentCommand::kQueryPq, "/csc");
      const auto* hue = cJSON_GetObjectItemCaseSensitive(answer.value, "cscHue");
      report.require(cJSON_GetNumberValue(hue) == i, "an update was lost for lack of descriptors");
    }
  }
  const auto gone = Clock::now();
  Wire late;
  ask(late, pqclient::DocumentCommand::kQueryPq, "/csc");
  const auto time = Clock::now() - gone;
  early = Wire();
  ask(early, pqclient::DocumentCommand::kQueryPq, "/csc");  // accepted, not only queued
  const size_t threads = before.threads + 2;
  const ProcessFigures after = board.settled(threads);
  board.stop();

  report.figure(clients, " clients at a limit of ", kLimit, " descriptors")
      .figure("descriptors ", before.descriptors, ", at most ", most, ", ", after.descriptors,
              " with two clients after")
      .figure("serves a new client ",
              std::chrono::duration_cast<std::chrono::milliseconds>(time).count(),
              " ms after they left");
  report.require(time <= kAgainAfter, "no new client was served in time");
  report.require(after.descriptors == before.descriptors + 2, "descriptors were lost");
  return report.finish();
}

}  // namespace load
