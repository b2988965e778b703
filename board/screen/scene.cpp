#include "screen/scene.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace board::screen {
namespace {

constexpr double kAspect = 4;  // the landscape's width over its height

Rgb mix(const Rgb& from, const Rgb& to, double share) {
  return {std::lerp(from.red, to.red, share), std::lerp(from.green, to.green, share),
          std::lerp(from.blue, to.blue, share)};
}

double smooth(double t) {
  return t * t * (3 - 2 * t);
}

// Rises from 0 to 1 while the value goes from `start` to `end`.
double rise(double value, double start, double end) {
  return smooth(std::clamp((value - start) / (end - start), 0.0, 1.0));
}

// 0..1, fixed for each lattice cell; the constants only have to mix the bits well.
double cell_noise(int x, int y) {
  uint32_t hash = static_cast<uint32_t>(x) * 0x9E3779B1U ^ static_cast<uint32_t>(y) * 0x85EBCA77U;
  hash ^= hash >> 15;
  hash *= 0x2C1B3C6DU;
  hash ^= hash >> 13;
  return (hash & 0xFFFFU) / 65535.0;
}

// Smooth noise 0..1 with features of size 1.
double noise(double x, double y) {
  const auto column = static_cast<int>(std::floor(x));
  const auto row = static_cast<int>(std::floor(y));
  const double across = smooth(x - column);
  return std::lerp(std::lerp(cell_noise(column, row), cell_noise(column + 1, row), across),
                   std::lerp(cell_noise(column, row + 1), cell_noise(column + 1, row + 1), across),
                   smooth(y - row));
}

// Rough noise 0..1: each finer layer counts half as much.
double rough_noise(double x, double y) {
  return (4 * noise(x, y) + 2 * noise(2 * x + 17, 2 * y) + noise(4 * x + 31, 4 * y)) / 7;
}

Rgb sky(double x, double y) {
  constexpr Rgb kZenith = {0.16, 0.36, 0.68};
  constexpr Rgb kHorizon = {0.97, 0.74, 0.52};
  constexpr Rgb kCloud = {0.95, 0.88, 0.86};
  constexpr Rgb kSun = {1.0, 0.95, 0.80};
  constexpr double kSunX = 0.72 * kAspect;
  constexpr double kSunY = 0.20;
  Rgb colour = mix(kZenith, kHorizon, rise(y, 0, 0.62));
  colour = mix(colour, kCloud, 0.7 * rise(rough_noise(x * 2.5, y * 9), 0.52, 0.8));
  const double distance = std::hypot(x - kSunX, y - kSunY);
  colour = mix(colour, kSun, 0.6 * std::exp(-6 * distance));
  return mix(colour, kSun, 1 - rise(distance, 0.07, 0.085));
}

Rgb mountains(double x, double depth) {
  constexpr Rgb kHaze = {0.62, 0.58, 0.66};
  constexpr Rgb kRock = {0.36, 0.38, 0.48};
  return mix(mix(kRock, kHaze, 0.4 * rough_noise(x * 12, depth * 30)), kHaze, rise(depth, 0, 0.25));
}

Rgb hills(double x, double depth) {
  constexpr Rgb kTree = {0.10, 0.24, 0.12};
  constexpr Rgb kMeadow = {0.30, 0.44, 0.20};
  return mix(kTree, kMeadow, rise(depth + 0.2 * rough_noise(x * 20, depth * 50), 0.02, 0.25));
}

Rgb grass(double x, double depth) {
  constexpr Rgb kShade = {0.13, 0.26, 0.07};
  constexpr Rgb kBlade = {0.47, 0.62, 0.18};
  constexpr Rgb kPoppy = {0.80, 0.12, 0.10};
  const double blades = rough_noise(x * 60, depth * 45);
  const bool flower = noise(x * 40 + 5, depth * 40) > 0.9;
  return flower ? mix(kPoppy, kShade, 0.3 * blades) : mix(kShade, kBlade, blades);
}

}  // namespace

Rgb scene_colour(double x, double y) {
  const double along = x * kAspect;
  const double ridge = 0.42 + 0.10 * std::sin(along * 1.7) - 0.16 * rough_noise(along * 1.8, 3);
  const double hill_line = 0.58 + 0.06 * std::sin(along * 2.3 + 1) - 0.02 * noise(along * 25, 7);
  const double meadow_line = 0.78 + 0.03 * std::sin(along * 1.1 + 4);
  if (y > meadow_line) return grass(along, y - meadow_line);
  if (y > hill_line) return hills(along, y - hill_line);
  if (y > ridge) return mountains(along, y - ridge);
  return sky(along, y);
}

}  // namespace board::screen
