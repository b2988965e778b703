// A TCP server that hands every received chunk to a callback.
//
// One accept thread, one receive thread a client. The server does no framing of its own: the
// callback gets each chunk as one receive returned it and answers straight to the client's socket.
//
// Thread rule: all public functions but stopped() belong to one thread.
#ifndef NETSERVER_TCP_SERVER_H_
#define NETSERVER_TCP_SERVER_H_

#include <netinet/in.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <thread>
#include <utility>

#include "base/thread_annotations.h"

class TCPServer {
 public:
  // Called on the client's receive thread with the client's socket and `length` bytes at `data`.
  // The bytes are not terminated. `data` points at a buffer of kReceiveSize readable bytes; those
  // past `length` are what earlier receives left there. The result is not examined; an exception
  // ends that chunk only.
  using Callback = std::function<int(int socket, char* data, int length)>;
  static constexpr size_t kReceiveSize = 8192;

  // Called on the accept thread a second after the last client has left, once a time.
  // Must not throw.
  using IdleCallback = std::function<void()>;

  // Clients served at once, each with a thread. Further ones wait in the kernel's queue: a board
  // has about 32,000 tasks, and without a bound the clients could take them all.
  static constexpr size_t kMaxClients = 1024;

  TCPServer() = default;
  virtual ~TCPServer();
  TCPServer(const TCPServer&) = delete;
  TCPServer& operator=(const TCPServer&) = delete;

  // Both are to be set before Process.
  void set_callback(Callback callback) { callback_ = std::move(callback); }
  void set_idle_callback(IdleCallback callback) { idle_callback_ = std::move(callback); }

  // Opens, binds (all IPv4 interfaces) and listens on `port`, and starts the accept thread.
  // Returns 0, or -1 after logging what failed; then stopped() is true.
  // Throws std::system_error when the accept thread can't be started.
  [[nodiscard]] int Process(int32_t port);

  // Asks all threads to end, wakes those that wait for a client, and waits for the rest until
  // `deadline`. A request that is being handled is completed; requests that arrive later are not
  // handled.
  // Returns false when a callback was still running at the deadline; the server must live on then.
  [[nodiscard]] bool stop_by(std::chrono::steady_clock::time_point deadline);

  // The same without a deadline; then joins all threads and closes the listening socket.
  // Returns the result of closing it: -1 when the accept thread already has.
  // Calling it again is harmless.
  int32_t SaveExit();

  // True when the accept loop has ended, or never ran. Called from any thread.
  [[nodiscard]] bool stopped() const { return stopped_; }

 private:
  struct Client {
    // -1 once its thread has closed it: the thread ends without touching the list again.
    int socket;
    // Set and joined by the accept thread, and after that has ended by SaveExit.
    std::thread thread;
  };

  void Accepted();
  int32_t Recvieve(int32_t client_socket);

  int fail(const char* message, int32_t port);
  void accept_clients(int listener);
  const char* shortage(int listener);
  void hold_back();
  void start_receiving(int client_socket);
  Client& add_client(int client_socket);
  void receive_until_gone(int client_socket);
  void handle_chunk(int client_socket, char* data, int length);
  size_t close_client(int client_socket);
  void join_finished();
  void report_idle();
  void ask_threads_to_end();
  [[nodiscard]] bool someone_is_connected() const REQUIRES(mutex_);

  std::atomic<bool> quit_ = false;
  std::atomic<bool> stopped_ = true;
  sockaddr_in server_addr_ = {};
  sockaddr_in client_addr_ = {};  // of the last client; the accept thread's
  Callback callback_;
  IdleCallback idle_callback_;
  bool idle_reported_ = true;  // since the last client was accepted; the accept thread's
  std::unique_ptr<std::thread> accept_thread_;

  // No connection leaves anything behind: a client is off the list as soon as its thread is joined.
  pq::Mutex mutex_;
  std::condition_variable_any client_left_;       // or the server is to stop
  int32_t sock_ GUARDED_BY(mutex_) = -1;          // the listening socket
  std::list<Client> clients_ GUARDED_BY(mutex_);  // in accept order
  size_t finished_count_ GUARDED_BY(mutex_) = 0;  // clients that have left, for the log
};

#endif  // NETSERVER_TCP_SERVER_H_
