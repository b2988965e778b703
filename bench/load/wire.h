// A tool's blocking connection to the daemon. It can also misbehave: leave in the middle, stop
// reading, or come from any loopback address.
//
// One thread at a time. Every call throws std::runtime_error if the daemon does not respond within
// kPatience.
#ifndef BENCH_LOAD_WIRE_H_
#define BENCH_LOAD_WIRE_H_

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace load {

inline constexpr std::chrono::seconds kPatience{60};

// 127.0.0.1 in host byte order. All of 127.0.0.0/8 is this machine; a connection leaves its port
// taken for a minute, so a test that opens very many must rotate addresses.
inline constexpr uint32_t kLoopback = 0x7F000001;

class Wire {
 public:
  // receive_buffer: the size of the kernel's buffer in bytes; 0: the kernel's default.
  explicit Wire(uint32_t source = kLoopback, int receive_buffer = 0);
  ~Wire();
  Wire(Wire&& other) noexcept;
  Wire& operator=(Wire&& other) noexcept;
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  void send(std::string_view bytes);

  // Waits until the daemon has received everything that was sent, so that the next bytes arrive as
  // a
  // separate chunk: it does not split bytes that arrive together.
  void wait_until_taken() const;

  // Signals the end of requests: the daemon closes once it has handled those it received.
  void finish_sending();

  std::string receive(size_t size);  // exactly; also throws if the daemon closes before
  std::string receive_rest();        // until the daemon closes

  // Closes abruptly: the daemon gets an error instead of an end of stream.
  void reset();

 private:
  size_t receive_some(char* into, size_t size);

  int socket_ = -1;
};

}  // namespace load

#endif  // BENCH_LOAD_WIRE_H_
