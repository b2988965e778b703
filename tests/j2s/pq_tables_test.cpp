// <cmath> has a function called gamma; the schema has to live with it.
#include "j2s/pq_schema.h"

#include <cmath>
#include <thread>

#include "tests/j2s/synthetic.h"

namespace j2s_test {
namespace {

class PqTables : public testing::Test {
 protected:
  PqTables() {
    setenv("J2S_NO_CACHE", "1", 1);
    j2s_init(&ctx_);
  }
  ~PqTables() override { j2s_deinit(&ctx_); }

  std::string dump(const char* name, const void* data) {
    return print(own(j2s_struct_to_json(&ctx_, name, data)).get());
  }

  j2s_ctx ctx_ = {};
};

void for_each_text(pq_config& config, const std::function<void(char*&)>& action) {
  pq_tuning_param& pq = config.pq_tuning_param;
  for (char** text : {&pq.csc.name, &pq.csc.cscMode, &pq.dci.name, &pq.acm.name, &pq.gamma.name,
                      &pq.sharp.name}) {
    action(*text);
  }
  for (struct dci& scene : config.aipq_tuning_param.dci)
    action(scene.name);
  for (struct acm& scene : config.aipq_tuning_param.acm)
    action(scene.name);
}

// A configuration in which every byte of every number counts.
std::unique_ptr<pq_config> patterned_config() {
  auto config = std::make_unique<pq_config>();
  auto* bytes = reinterpret_cast<unsigned char*>(config.get());
  for (size_t i = 0; i < sizeof(pq_config); ++i)
    bytes[i] = static_cast<unsigned char>(i * 37 + 11);
  for_each_text(*config, [](char*& text) { text = nullptr; });
  return config;
}

// Loads, compares the result's text, and frees.
void expect_round_trip(j2s_ctx& ctx, cJSON* json, const std::string& text) {
  const auto loaded = std::make_unique<pq_config>();
  EXPECT_EQ(j2s_json_to_struct(&ctx, json, nullptr, loaded.get()), 0);
  EXPECT_EQ(print(own(j2s_struct_to_json(&ctx, nullptr, loaded.get())).get()), text);
  for_each_text(*loaded, [](char*& text_of_member) { std::free(text_of_member); });
}

TEST_F(PqTables, RecordsDescribeTheStructures) {
  const j2s_obj mode = {"cscMode",
                        J2S_TYPE_STRING,
                        J2S_FLAG_POINTER,
                        offsetof(struct csc, cscMode),
                        8,
                        1,
                        8,
                        3,
                        -1,
                        -1,
                        -1};
  const j2s_obj scenes = {"acm",
                          J2S_TYPE_STRUCT,
                          J2S_FLAG_ARRAY,
                          offsetof(aipq_tuning_param, acm),
                          sizeof(struct acm),
                          12,
                          sizeof(struct acm),
                          -1,
                          2,
                          -1,
                          -1};
  EXPECT_EQ(std::memcmp(&ctx_.obj_table[2], &mode, sizeof mode), 0);
  EXPECT_EQ(std::memcmp(&ctx_.obj_table[106], &scenes, sizeof scenes), 0);
}

TEST_F(PqTables, BlocksHaveTheDocumentsKeysInTheirOrder) {
  struct csc block = {};
  block.cscHue = 4294967295U;
  block.cscEnable = -1;
  EXPECT_EQ(dump("csc", &block),
            R"({"name":"","cscEnable":-1,"cscMode":"","cscBrightness":0,"cscHue":4294967295,)"
            R"("cscContrast":0,"cscSaturation":0,"cscRGain":0,"cscGGain":0,"cscBGain":0})");
  const Json param = own(j2s_struct_to_json(&ctx_, "pq_tuning_param", nullptr));
  std::string keys;
  for (const cJSON* key = param->child; key != nullptr; key = key->next)
    keys += key->string;
  EXPECT_EQ(keys, "cscdciacmgammasharp");
  const cJSON* gamma_json = cJSON_GetObjectItemCaseSensitive(param.get(), "gamma");
  EXPECT_EQ(cJSON_GetArraySize(cJSON_GetObjectItem(gamma_json, "gammaTab_B")), 1024);
}

TEST_F(PqTables, AWholeConfigurationSurvivesItsText) {
  const std::string text = dump(nullptr, patterned_config().get());
  expect_round_trip(ctx_, parse(text).get(), text);
}

TEST_F(PqTables, ThreadsConvertAtTheSameTime) {
  const std::string text = dump(nullptr, patterned_config().get());
  const auto convert = [&](cJSON* json) {
    for (int round = 0; round < 3; ++round) {
      j2s_ctx ctx = {};
      j2s_init(&ctx);
      expect_round_trip(ctx, json, text);
      j2s_deinit(&ctx);
    }
  };
  // Parsed beforehand: cJSON's parser notes its last error in a place that all threads share.
  const Json ours = parse(text);
  const Json theirs = parse(text);
  std::thread other(convert, theirs.get());
  convert(ours.get());
  other.join();
}

}  // namespace
}  // namespace j2s_test
