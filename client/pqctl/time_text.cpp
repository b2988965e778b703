#include "time_text.h"

#include <array>
#include <ctime>

namespace {

using Text = std::array<char, sizeof "2026-11-21T07:30:00Z" + 8>;  // room for longer years

}  // namespace

std::string utc_text(std::chrono::system_clock::time_point time) {
  const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
  std::tm parts{};
  gmtime_r(&seconds, &parts);
  Text text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%SZ", &parts)};
}

std::string local_text(const std::string& utc) {
  std::tm parts{};
  const char* end = strptime(utc.c_str(), "%Y-%m-%dT%H:%M:%SZ", &parts);
  if (end == nullptr || *end != '\0') return utc;
  const std::time_t seconds = timegm(&parts);
  std::tm local{};
  localtime_r(&seconds, &local);
  Text text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y-%m-%d %H:%M:%S", &local)};
}
