// Bytes in the form that the daemon's functions get: writable, not terminated, and in a block of
// their own, so that a read past their end is detected.
#ifndef FUZZ_SUPPORT_BODY_H_
#define FUZZ_SUPPORT_BODY_H_

#include <cstdint>
#include <memory>
#include <string_view>

namespace fuzz {

class Body {
 public:
  explicit Body(std::string_view text) : length_(text.size()), bytes_(new char[text.size()]) {
    text.copy(bytes_.get(), text.size());
  }

  char* bytes() const { return bytes_.get(); }
  uint32_t length() const { return static_cast<uint32_t>(length_); }

 private:
  size_t length_;
  std::unique_ptr<char[]> bytes_;
};

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_BODY_H_
