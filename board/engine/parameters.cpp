#include "engine/parameters.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

#include <cjson/cJSON.h>

namespace board::engine {
namespace {

struct DeleteJson {
  void operator()(cJSON* item) const { cJSON_Delete(item); }
};

int number_in(const cJSON* item, int low, int high) {
  const double value = cJSON_IsNumber(item) ? cJSON_GetNumberValue(item) : 0;
  return static_cast<int>(std::clamp(value, static_cast<double>(low), static_cast<double>(high)));
}

// One section of the document; null where the document has none.
class Section {
 public:
  Section(const cJSON* parameters, const char* name)
      : object_(cJSON_GetObjectItemCaseSensitive(parameters, name)) {}

  bool flag(const char* key) const { return number(key, -1, 1) != 0; }
  int number(const char* key, int low, int high) const {
    return number_in(cJSON_GetObjectItemCaseSensitive(object_, key), low, high);
  }
  void table(const std::string& key, int low, int high, std::span<int> values) const {
    const cJSON* list = cJSON_GetObjectItemCaseSensitive(object_, key.c_str());
    const cJSON* item = cJSON_IsArray(list) ? list->child : nullptr;
    for (int& value : values) {
      if (item == nullptr) return;
      value = number_in(item, low, high);
      item = item->next;
    }
  }

 private:
  const cJSON* object_;
};

WeightedCurve read_curve(const Section& dci, const std::string& name) {
  WeightedCurve curve;
  dci.table("dciWgtCoef_" + name, 0, kLumaMax, curve.points);
  dci.table("dciWeight_" + name, 0, std::numeric_limits<uint16_t>::max(), curve.weights);
  return curve;
}

// letter: as the table names have it, Y, H or S.
HueAdjustment read_adjustment(const Section& acm, char letter, int delta_max,
                              const char* master_gain) {
  HueAdjustment adjustment;
  acm.table(std::string("acmTableDelta") + letter + "byH", -delta_max, delta_max, adjustment.delta);
  const std::string gain = std::string("acmTableGain") + letter;
  acm.table(gain + "byY", 0, kTableGainMax, adjustment.gain_by_luma);
  acm.table(gain + "byS", 0, kTableGainMax, adjustment.gain_by_saturation);
  adjustment.master_gain = acm.number(master_gain, 0, kMasterGainMax);
  return adjustment;
}

SharpParameters read_sharp(const Section& sharp) {
  SharpParameters parameters;
  parameters.enable = sharp.flag("sharpEnable");
  parameters.peaking_gain = sharp.number("sharpPeakingGain", 0, kPeakingGainMax);
  parameters.shoot_control = sharp.flag("sharpEnableShootCtrl");
  parameters.over = sharp.number("sharpShootCtrlOver", 0, kShootMax);
  parameters.under = sharp.number("sharpShootCtrlUnder", 0, kShootMax);
  return parameters;
}

}  // namespace

Parameters read_parameters(const std::filesystem::path& document) {
  std::ifstream stream(document);
  if (!stream) throw std::runtime_error("cannot read " + document.string());
  const std::string text{std::istreambuf_iterator<char>(stream), {}};
  const std::unique_ptr<cJSON, DeleteJson> root(cJSON_ParseWithLength(text.data(), text.size()));
  const cJSON* tuning = cJSON_GetObjectItemCaseSensitive(root.get(), "pq_tuning_param");
  if (!cJSON_IsObject(tuning)) {
    throw std::runtime_error(document.string() + " holds no \"pq_tuning_param\" object");
  }

  const Section dci(tuning, "dci");
  const Section acm(tuning, "acm");
  Parameters parameters;
  parameters.dci = {dci.flag("dciEnable"), read_curve(dci, "low"), read_curve(dci, "mid"),
                    read_curve(dci, "high")};
  parameters.acm = {acm.flag("acmEnable"), read_adjustment(acm, 'Y', kLumaDeltaMax, "lumGain"),
                    read_adjustment(acm, 'H', kHueDeltaMax, "hueGain"),
                    read_adjustment(acm, 'S', kSaturationDeltaMax, "satGain")};
  parameters.sharp = read_sharp(Section(tuning, "sharp"));
  return parameters;
}

}  // namespace board::engine
