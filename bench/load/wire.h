// A tool's connection to the daemon, blocking and impolite where that is wanted: it can leave in
// the middle, stop reading, or come from any loopback address.
//
// One thread at a time. Every call throws std::runtime_error when the daemon does not do its part
// within kPatience.
#ifndef BENCH_LOAD_WIRE_H_
#define BENCH_LOAD_WIRE_H_

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace load {

inline constexpr std::chrono::seconds kPatience{60};

// 127.0.0.1 in host byte order. All of 127.0.0.0/8 is this machine; a connection leaves its port
// taken for a minute, so whoever opens very many takes turns with the addresses.
inline constexpr uint32_t kLoopback = 0x7F000001;

class Wire {
 public:
  // receive_buffer: bytes that the kernel may hold for us; 0: as it likes.
  explicit Wire(uint32_t source = kLoopback, int receive_buffer = 0);
  ~Wire();
  Wire(Wire&& other) noexcept;
  Wire& operator=(Wire&& other) noexcept;
  Wire(const Wire&) = delete;
  Wire& operator=(const Wire&) = delete;

  void send(std::string_view bytes);

  // Waits until the daemon has received all that was sent, so that what is sent next comes to it as
  // a chunk of its own: it does not split what arrives together.
  void wait_until_taken() const;

  // Tells the daemon that nothing more will come: it closes when it has handled what did.
  void finish_sending();

  std::string receive(size_t size);  // exactly; throws also when the daemon closes before
  std::string receive_rest();        // until the daemon closes

  // Hangs up without a good-bye: the daemon gets an error instead of an end.
  void reset();

 private:
  size_t receive_some(char* into, size_t size);

  int socket_ = -1;
};

}  // namespace load

#endif  // BENCH_LOAD_WIRE_H_
