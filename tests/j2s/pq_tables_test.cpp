// <cmath> has a function named gamma; the schema must not collide with it.
#include "j2s/pq_schema.h"

#include <cmath>
#include <random>
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

  j2s_ctx ctx_ = {};
  std::mt19937 random_{5};
};

template <typename Action>
void for_each_text(pq_config& config, Action action) {
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

// Uses every byte of every number; sets some of the texts.
std::unique_ptr<pq_config> random_config(std::mt19937& random) {
  auto config = std::make_unique<pq_config>();
  std::generate_n(reinterpret_cast<unsigned char*>(config.get()), sizeof(pq_config),
                  std::ref(random));
  static char any[] = "any";
  for_each_text(*config, [&](char*& text) { text = random() % 2 == 0 ? &any[0] : nullptr; });
  return config;
}

std::string dump(j2s_ctx& ctx, const pq_config& config) {
  return print(own(j2s_struct_to_json(&ctx, nullptr, &config)).get());
}

TEST_F(PqTables, ARecordDescribesItsMember) {
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
  const int16_t index = ctx_.obj_table[ctx_.struct_table[6].first_obj].next_obj;
  EXPECT_EQ(std::memcmp(&ctx_.obj_table[index], &scenes, sizeof scenes), 0);
}

TEST_F(PqTables, AWholeConfigurationSurvivesItsTextInSeveralThreads) {
  const std::string text = dump(ctx_, *random_config(random_));
  const auto convert = [&](cJSON* json) {
    for (int round = 0; round < 3; ++round) {
      j2s_ctx ctx = {};
      j2s_init(&ctx);
      const auto loaded = std::make_unique<pq_config>();
      EXPECT_EQ(j2s_json_to_struct(&ctx, json, nullptr, loaded.get()), 0);
      EXPECT_EQ(dump(ctx, *loaded), text);
      for_each_text(*loaded, [](char*& text_of_member) { std::free(text_of_member); });
      j2s_deinit(&ctx);
    }
  };
  // Parsed beforehand: cJSON's parser keeps its last error in a variable shared by all threads.
  const Json ours = parse(text);
  const Json theirs = parse(text);
  std::thread other(convert, theirs.get());
  convert(ours.get());
  other.join();
}

TEST_F(PqTables, APrintableTreePrintsAsTheRealOne) {
  for (int i = 0; i < 20; ++i) {
    const auto config = random_config(random_);
    const Json real = own(j2s_struct_to_json(&ctx_, nullptr, config.get()));
    const Json formatted = own(j2s_struct_to_printable(&ctx_, nullptr, config.get(), true));
    const Json compact = own(j2s_struct_to_printable(&ctx_, nullptr, config.get(), false));
    ASSERT_EQ(print_formatted(formatted.get()), print_formatted(real.get()));
    ASSERT_EQ(print(compact.get()), print(real.get()));
  }
}

}  // namespace
}  // namespace j2s_test
