// The stored parameters that the engine computes its table from: the dci, acm and sharp sections of
// the PQ document. docs/board-engine-and-screen.md, "The engine's model", says what the engine
// makes of them.
#ifndef BOARD_ENGINE_PARAMETERS_H_
#define BOARD_ENGINE_PARAMETERS_H_

#include <array>
#include <cstddef>
#include <filesystem>

namespace board::engine {

inline constexpr int kLumaMax = 1023;  // luma codes of the tone curves

// One of the three tone curves with the weight that it has at each luma.
struct WeightedCurve {
  std::array<int, 33> points{};   // 0..1023; point k stands at luma code min(32 k, 1023)
  std::array<int, 32> weights{};  // 0..65535, one for each 32nd of the luma range
};

struct DciParameters {
  bool enable = false;
  WeightedCurve low;
  WeightedCurve mid;
  WeightedCurve high;
};

inline constexpr size_t kHuePoints = 65;  // over the full circle; the last closes it
inline constexpr size_t kLumaPoints = 9;
inline constexpr size_t kSaturationPoints = 13;
inline constexpr int kTableGainMax = 127;
inline constexpr int kMasterGainMax = 1023;

// The shift of one of luma, hue and saturation by hue, and its weights.
struct HueAdjustment {
  std::array<int, kHuePoints> delta{};
  std::array<int, kHuePoints * kLumaPoints> gain_by_luma{};  // 0..127, a row for each hue
  std::array<int, kHuePoints * kSaturationPoints> gain_by_saturation{};  // likewise
  int master_gain = 0;                                                   // 0..1023
};

inline constexpr int kLumaDeltaMax = 255;
inline constexpr int kHueDeltaMax = 63;
inline constexpr int kSaturationDeltaMax = 255;

struct AcmParameters {
  bool enable = false;
  HueAdjustment luma;        // delta -255..255
  HueAdjustment hue;         // delta -63..63
  HueAdjustment saturation;  // delta -255..255
};

inline constexpr int kPeakingGainMax = 1023;
inline constexpr int kShootMax = 127;

struct SharpParameters {
  bool enable = false;
  int peaking_gain = 0;  // 0..1023
  bool shoot_control = false;
  int over = 0;  // 0..127, used with shoot control
  int under = 0;
};

struct Parameters {
  DciParameters dci;
  AcmParameters acm;
  SharpParameters sharp;
};

// Reads the sections from a PQ document. A value outside its range counts as the range's end, a
// member that is absent or of another kind as 0: such a document is damaged, not unreadable.
// Throws std::runtime_error when the file cannot be read or holds no "pq_tuning_param" object.
Parameters read_parameters(const std::filesystem::path& document);

}  // namespace board::engine

#endif  // BOARD_ENGINE_PARAMETERS_H_
