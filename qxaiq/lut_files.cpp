#include "qxaiq/lut_files.h"

#include <sys/statvfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cinttypes>
#include <cstdio>
#include <cstring>

#include "base/log.h"
#include "common/drm_lut.h"
#include "documents/names.h"

namespace pq {
namespace {

// A board whose /data is full may not boot again. Old files are never removed, so new ones stop in
// time.
constexpr uint64_t kMiB = uint64_t{1024} * 1024;
constexpr uint64_t kMinFreeMiB = 64;
constexpr uint64_t kMinFreePercent = 5;

}  // namespace

void LutFiles::write_next() {
  std::array<char, 128> file{};
  std::snprintf(file.data(), file.size(), kLutFileFormat, next_++);
  if (!has_room()) return;
  const bool written = drm_lut_save_3dlut(file.data()) >= 0 && access(file.data(), F_OK) == 0;
  if (!written) report_missing(file.data());
}

bool LutFiles::has_room() {
  struct statvfs partition = {};
  if (statvfs(kLutFolder, &partition) != 0) return true;  // the engine will find out
  const uint64_t free_mib = uint64_t{partition.f_bavail} * partition.f_frsize / kMiB;
  const uint64_t size_mib = uint64_t{partition.f_blocks} * partition.f_frsize / kMiB;
  const bool full = free_mib < kMinFreeMiB || free_mib * 100 < size_mib * kMinFreePercent;
  if (full && !stopped_) {
    log_error()("no LUT files for now: %" PRIu64 " of %" PRIu64 " MiB are free in %s, %" PRIu64
                " MiB and %" PRIu64 " %% have to stay free. Remove old files there (lut_*.cube)\n",
                free_mib, size_mib, kLutFolder, kMinFreeMiB, kMinFreePercent);
  }
  stopped_ = full;
  return !full;
}

// An engine that is missing or fails has been reported already, with what it answered.
void LutFiles::report_missing(const char* file) {
  if (reported_ || access(kLutFolder, W_OK | X_OK) == 0) return;
  log_error()(
      "no LUT files: cannot write %s: %s. Android lets no vendor service create a file in %s; "
      "the display needs none. For the files, make SELinux permissive (setenforce 0)\n",
      file, std::strerror(errno), kLutFolder);
  reported_ = true;
}

}  // namespace pq
