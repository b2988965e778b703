// The text form of inputs: lines, so that people can read and write seeds and findings, and so that
// a mutation that moves a line break is useful.
//
// For most targets the first line configures the board, by the low bits of its characters ('@' is
// zero):
//   first    +1 silent log, +2 programs don't start, +4 properties can't be set,
//            +8 unknown platform, +16 sends are taken in pieces
//   second   the number of the display call that fails
#ifndef FUZZ_SUPPORT_INPUT_H_
#define FUZZ_SUPPORT_INPUT_H_

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace fuzz {

class Input {
 public:
  Input(const uint8_t* data, size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}

  bool at_end() const { return rest_.empty(); }

  // The next line, without its end.
  std::string_view line();

  // All that is left.
  std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// Installs a fresh platform as the input's first line says, and selects the tables: one input in
// 4,096 gets the full ones.
void start_board(Input& input);

}  // namespace fuzz

#endif  // FUZZ_SUPPORT_INPUT_H_
