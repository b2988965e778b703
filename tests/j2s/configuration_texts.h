// The texts of a whole configuration. They belong to whoever has it.
#ifndef TESTS_J2S_CONFIGURATION_TEXTS_H_
#define TESTS_J2S_CONFIGURATION_TEXTS_H_

#include "j2s/pq_schema.h"

namespace j2s_test {

// Calls action(char*& text) for each.
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

}  // namespace j2s_test

#endif  // TESTS_J2S_CONFIGURATION_TEXTS_H_
