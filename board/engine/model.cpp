#include "engine/model.h"

#include "engine/colour_management.h"
#include "engine/tone.h"

namespace board::engine {
namespace {

Rgb apply_stages(const Parameters& parameters, const Rgb& input) {
  YCbCr colour = to_ycbcr(input);
  if (parameters.dci.enable) colour.y = apply_dci(parameters.dci, colour.y);
  if (parameters.acm.enable) colour = apply_acm(parameters.acm, colour);
  if (parameters.sharp.enable) colour.y = apply_sharpness(parameters.sharp, colour.y);
  return to_rgb(colour);
}

}  // namespace

Lut3d compute_lut(const Parameters& parameters) {
  Lut3d lut;
  for (size_t blue = 0; blue < Lut3d::kEdge; ++blue) {
    for (size_t green = 0; green < Lut3d::kEdge; ++green) {
      for (size_t red = 0; red < Lut3d::kEdge; ++red) {
        const Rgb colour = apply_stages(parameters, Lut3d::input(red, green, blue));
        lut.points[Lut3d::index(red, green, blue)] = to_full_scale(colour);
      }
    }
  }
  return lut;
}

}  // namespace board::engine
