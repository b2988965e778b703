// A client's connection to the real server, over loopback in the board's private network.
#include <netinet/in.h>
#include <sys/socket.h>

#include <chrono>
#include <filesystem>
#include <iterator>
#include <memory>
#include <thread>

#include "base/owner.h"
#include "faults/fault.h"
#include "faults/subject.h"
#include "netserver/tcp_server.h"
#include "qxaiq/qxaiq_protocol.h"

namespace faults {
namespace {

constexpr uint16_t kPort = 5543;

sockaddr_in server_address() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(kPort);
  return address;
}

// Sends one request and leaves. Returns the bytes of the answer that arrived.
std::string ask() {
  const Exempt exempt;
  const pq::UniqueFd socket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  const timeval patience{5, 0};
  setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof(patience));
  const sockaddr_in address = server_address();
  if (connect(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    return "";
  }
  constexpr char kQuestion[] = "QXISP-AK\0\0\x03";  // a test colour, short and without waits
  send(socket.get(), kQuestion, sizeof(kQuestion), MSG_NOSIGNAL);
  shutdown(socket.get(), SHUT_WR);  // makes the server close if it has no answer
  char answer[72];
  const ssize_t length = recv(socket.get(), answer, sizeof(answer), MSG_WAITALL);
  return {answer, length < 0 ? 0 : static_cast<size_t>(length)};
}

long threads() {
  namespace fs = std::filesystem;
  return std::distance(fs::directory_iterator("/proc/self/task"), fs::directory_iterator());
}

// A server that is restarted if it has stopped accepting.
class Served {
 public:
  void restart() {
    server_.reset();
    server_ = std::make_unique<TCPServer>();
    server_->set_callback(QXAiqProtocol::HandlerTCPMessage);
    (void)server_->Process(kPort);  // restarted when it failed
    threads_ = threads();
  }
  void ensure() {
    if (!server_ || server_->stopped()) restart();
  }
  void stop() { server_.reset(); }
  // Until every client's thread is done.
  void settle() const {
    const Exempt exempt;
    for (int i = 0; i < 2000 && threads() > threads_; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }

 private:
  std::unique_ptr<TCPServer> server_;
  long threads_ = 0;  // without clients
};

}  // namespace

Subject connection(const Stored& first) {
  const auto served = std::make_shared<Served>();
  Subject subject;
  subject.name = "connection";
  subject.prepare = [=] {
    store(first);
    served->restart();
    ask();
    served->settle();
  };
  subject.run = [=] {
    const std::string answer = ask();
    served->settle();
    return answer;
  };
  subject.serves_afterwards = [=] {
    served->ensure();
    const std::string answer = ask();
    return std::string(answer.size() == 72 ? "" : "the next client got no answer");
  };
  // It keeps an empty thread object for each client that it ever had.
  subject.finish = [=] { served->stop(); };
  return subject;
}

}  // namespace faults
