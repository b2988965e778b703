// A TCP server that hands every received chunk to a callback.
//
// One accept thread, one receive thread a client. The server does no framing of its own: the
// callback gets each chunk as one receive returned it and answers straight to the client's socket.
//
// Thread rule: Process, SaveExit and the destructor belong to one thread.
#ifndef NETSERVER_TCP_SERVER_H_
#define NETSERVER_TCP_SERVER_H_

#include <netinet/in.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

class TCPServer {
 public:
  // Called on the client's receive thread with the client's socket and `length` bytes at `data`.
  // The bytes are not terminated. `data` points at a buffer of kReceiveSize readable bytes; those
  // past `length` are what earlier receives left there. The result is not examined; what the
  // callback throws ends that chunk only.
  using Callback = std::function<int(int socket, char* data, int length)>;
  static constexpr size_t kReceiveSize = 8192;

  TCPServer() = default;
  virtual ~TCPServer();
  TCPServer(const TCPServer&) = delete;
  TCPServer& operator=(const TCPServer&) = delete;

  void set_callback(Callback callback) { callback_ = std::move(callback); }

  // Opens, binds (all IPv4 interfaces) and listens on `port`, and starts the accept thread.
  // Returns 0, or -1 after logging what failed; then stopped() is true.
  // Throws std::system_error when the accept thread can't be started.
  int Process(int32_t port);

  // Asks all threads to end, joins them and closes the listening socket. The accept thread ends
  // within 1 second, then each receive thread at once or at the end of the request it handles;
  // requests that arrive later are not handled.
  // Returns the result of closing the listening socket: -1 when the accept thread already has.
  // Calling it again is harmless.
  int32_t SaveExit();

  // Whether the accept loop has ended, or never ran.
  bool stopped() const { return stopped_; }

  // How many clients have been accepted, and how many of those have gone. For tests and logs.
  size_t accepted_count() const { return recv_threads_.size(); }
  size_t finished_count() const;

 private:
  void Accepted();
  int32_t Recvieve(int32_t client_socket);

  int fail(const char* message);
  void start_receiving(int client_socket);
  void receive_until_gone(int client_socket);
  void handle_chunk(int client_socket, char* data, int length);
  void note_open(int client_socket);
  void close_client(int client_socket);
  void end_receiving();
  void note_finished();
  void leave_to_join(size_t index);
  void join_finished();
  void release_memory_of_the_last_session();
  bool descriptors_are_scarce() const;

  int32_t sock_ = -1;
  std::atomic<bool> quit_ = false;
  std::atomic<bool> stopped_ = true;
  sockaddr_in server_addr_ = {};
  sockaddr_in client_addr_ = {};
  Callback callback_;
  std::unique_ptr<std::thread> accept_thread_;

  // One a client, in accept order; never shrinks, but what has been joined is null: a connection
  // leaves 16 bytes behind, in two lists. The accept thread adds to it and joins finished threads
  // in place; SaveExit reads it after joining the accept thread.
  std::vector<std::unique_ptr<std::thread>> recv_threads_;
  size_t released_for_ = 0;  // how many had been accepted when memory was last released

  std::mutex open_mutex_;
  std::vector<int> open_sockets_;  // of the clients, guarded by open_mutex_

  mutable std::mutex finished_mutex_;  // guards the two lists below
  // Not a list of nodes: those, allocated by each thread at its end, would pin that thread's heap.
  std::vector<std::thread::id> recv_threads_finished_id_;
  std::vector<size_t> to_join_;  // indexes in recv_threads_ of threads that are about to end
};

#endif  // NETSERVER_TCP_SERVER_H_
