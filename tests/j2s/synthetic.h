// Helpers to fill a structure and to compare its content.
#ifndef TESTS_J2S_SYNTHETIC_H_
#define TESTS_J2S_SYNTHETIC_H_

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "tests/j2s/synthetic_tables.h"

namespace j2s_test {

inline std::string stderr_of(const std::function<void()>& action) {
  testing::internal::CaptureStderr();
  action();
  return testing::internal::GetCapturedStderr();
}

inline std::string print_formatted(const cJSON* item) {
  const std::unique_ptr<char, decltype(&std::free)> text(cJSON_Print(item), &std::free);
  return text == nullptr ? "" : text.get();
}

// Runs `check` on each object of a JSON array from the folder of test cases.
inline void for_each_case(const std::string& file, const std::function<void(cJSON*)>& check) {
  const std::unique_ptr<char, decltype(&std::free)> text(
      j2s_read_file((std::string(J2S_TEST_CASES "/") + file).c_str(), nullptr), &std::free);
  const Json cases = own(cJSON_Parse(text.get()));
  EXPECT_GT(cJSON_GetArraySize(cases.get()), 0) << file;
  for (cJSON* each = cases == nullptr ? nullptr : cases->child; each != nullptr;
       each = each->next) {
    const testing::ScopedTrace trace(file.c_str(), 1,
                                     cJSON_GetStringValue(cJSON_GetObjectItem(each, "case")));
    check(each);
  }
}

}  // namespace j2s_test

#endif  // TESTS_J2S_SYNTHETIC_H_
