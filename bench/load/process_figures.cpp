#include "load/process_figures.h"

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace load {

namespace fs = std::filesystem;

ProcessFigures read_process(pid_t process) {
  const fs::path folder = fs::path("/proc") / std::to_string(process);
  ProcessFigures figures;
  std::ifstream status(folder / "status");
  for (std::string name; status >> name;) {
    if (name == "VmRSS:") status >> figures.resident_kib;
    if (name == "Threads:") status >> figures.threads;
    status.ignore(1'000, '\n');
  }
  if (figures.threads == 0) {
    throw std::runtime_error("the daemon (process " + std::to_string(process) + ") is gone");
  }
  const fs::directory_iterator descriptors(folder / "fd");
  figures.descriptors = static_cast<size_t>(std::distance(begin(descriptors), end(descriptors)));
  return figures;
}

std::string mebibytes(long kib) {
  std::array<char, 32> text{};
  std::snprintf(text.data(), text.size(), "%.1f MiB", static_cast<double>(kib) / 1024.0);
  return text.data();
}

}  // namespace load
