#include "documents/aipq_document_creator.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "documents/document_file.h"
#include "documents/pq_parameters.h"
#include "j2s/pq_schema.h"

namespace {

// Six scenes of nature, six of words.
constexpr std::array<const char*, 12> kSceneNames = {
    "nature-default", "nature-person", "nature-food",  "nature-building",
    "nature-sky",     "nature-plant",  "word-default", "word-person",
    "word-food",      "word-building", "word-sky",     "word-plant"};
static_assert(kSceneNames.size() == std::extent_v<decltype(aipq_tuning_param::dci)>);
static_assert(kSceneNames.size() == std::extent_v<decltype(aipq_tuning_param::acm)>);

// The low curve ends at 989, below the others, on purpose.
constexpr std::array<uint16_t, 33> kCoefficientsLow = {
    0,   54,  109, 163, 217, 265, 312, 359, 406, 444, 481, 519, 556, 587, 618, 648, 679,
    708, 738, 767, 796, 819, 842, 864, 887, 903, 918, 934, 949, 959, 969, 979, 989};
constexpr std::array<uint16_t, 33> kCoefficientsMid = {
    0,   20,  40,  60,  80,  112, 145, 178, 211, 269, 327, 384, 442, 490, 538,  582, 626,
    663, 701, 738, 775, 798, 821, 843, 866, 885, 905, 924, 943, 963, 983, 1003, 1023};
constexpr std::array<uint16_t, 33> kCoefficientsHigh = {
    0,   9,   17,  26,  35,  57,  80,  102, 125, 151, 178, 205, 232, 261, 289, 318, 346,
    379, 412, 445, 478, 508, 538, 571, 607, 643, 685, 733, 793, 856, 916, 970, 1023};
constexpr std::array<uint16_t, 32> kWeightsLow = {16, 16, 16, 16, 14, 12, 10, 8, 6, 4, 2};
constexpr std::array<uint16_t, 32> kWeightsMid = {0,  0,  0,  0,  3,  6,  9,  12, 15, 18, 18,
                                                  18, 18, 18, 18, 18, 18, 18, 18, 18, 18, 18,
                                                  15, 12, 9,  6,  3,  0,  0,  0,  0,  0};
constexpr std::array<uint16_t, 32> kWeightsHigh = {0,  0,  0,  0,  0,  0,  0,  0,  0,  0, 0,
                                                   0,  1,  2,  3,  4,  5,  6,  7,  8,  9, 10,
                                                   11, 12, 13, 14, 15, 16, 16, 16, 16, 16};

constexpr int16_t kNeutralTableGain = 127;
constexpr uint32_t kNeutralGain = 1023;

// The record points at constant texts: it is printed once, and must never be loaded into or freed.
char* constant_text(const char* text) {
  return const_cast<char*>(text);
}

template <typename From, typename To>
void copy_table(const From& from, To& to) {
  static_assert(std::tuple_size_v<From> == std::extent_v<To>);
  std::copy(from.begin(), from.end(), std::begin(to));
}

template <typename To, typename Value>
void fill_table(To& to, Value value) {
  std::fill(std::begin(to), std::end(to), value);
}

void fill(dci& scene, const char* name) {
  scene.name = constant_text(name);
  scene.dciEnable = 1;
  scene.dciIsActive = 1;
  copy_table(kCoefficientsLow, scene.dciWgtCoef_low);
  copy_table(kCoefficientsMid, scene.dciWgtCoef_mid);
  copy_table(kCoefficientsHigh, scene.dciWgtCoef_high);
  copy_table(kWeightsLow, scene.dciWeight_low);
  copy_table(kWeightsMid, scene.dciWeight_mid);
  copy_table(kWeightsHigh, scene.dciWeight_high);
}

// The delta tables stay zero: no shift at any hue.
void fill(acm& scene, const char* name) {
  scene.name = constant_text(name);
  scene.acmEnable = 1;
  scene.acmIsActive = 1;
  fill_table(scene.acmTableGainYbyY, kNeutralTableGain);
  fill_table(scene.acmTableGainHbyY, kNeutralTableGain);
  fill_table(scene.acmTableGainSbyY, kNeutralTableGain);
  fill_table(scene.acmTableGainYbyS, kNeutralTableGain);
  fill_table(scene.acmTableGainHbyS, kNeutralTableGain);
  fill_table(scene.acmTableGainSbyS, kNeutralTableGain);
  scene.lumGain = kNeutralGain;
  scene.hueGain = kNeutralGain;
  scene.satGain = kNeutralGain;
}

}  // namespace

int createDefaultAIPQJson(char* path) {
  const auto parameters = std::make_unique<aipq_tuning_param>();  // zeroed
  for (size_t scene = 0; scene < kSceneNames.size(); ++scene) {
    fill(parameters->dci[scene], kSceneNames[scene]);
    fill(parameters->acm[scene], kSceneNames[scene]);
  }
  pq::J2sContext context;
  const pq::JsonPtr document = pq::make_tree(context.get(), "aipq_tuning_param", parameters.get());
  return pq::save_document(path, pq::print_json(document.get()).get());
}
