// fault_loop SUBJECT [every] [whole]: makes each call of the subject fail, one per run, and checks
// that nothing but the one request suffers. Runs on a simulated board in place of the daemon.
//
// A call site that is reached often fails only at its first and last call, because the calls
// between do not differ. With "every" it fails at each call. With "whole" the documents are those
// that the daemon creates, instead of small ones.
#include <dirent.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>

#include "base/log.h"
#include "faults/fault.h"
#include "faults/subject.h"
#include "in_process/platform.h"

namespace faults {
namespace {

constexpr Fault kFaults[] = {
    {"allocation", Call::kAllocation, ENOMEM},
    {"open: EMFILE", Call::kOpen, EMFILE},
    {"open: EIO", Call::kOpen, EIO},
    {"stat: EIO", Call::kStatus, EIO},
    {"read: EIO", Call::kRead, EIO},
    {"read: short", Call::kRead, kShort},
    {"write: ENOSPC", Call::kWrite, ENOSPC},
    {"write: EIO", Call::kWrite, EIO},
    {"write: EINTR", Call::kWrite, EINTR},
    {"write: short", Call::kWrite, kShort},
    {"fsync: EIO", Call::kSync, EIO},
    {"lseek: EIO", Call::kSeek, EIO},
    {"close: EIO", Call::kClose, EIO},
    {"unlink: EIO", Call::kRemove, EIO},
    {"send: EPIPE", Call::kSend, EPIPE},
    {"send: EINTR", Call::kSend, EINTR},
    {"send: short", Call::kSend, kShort},
    {"receive: ECONNRESET", Call::kReceive, ECONNRESET},
    {"receive: EINTR", Call::kReceive, EINTR},
    {"accept: ECONNABORTED", Call::kAccept, ECONNABORTED},
    {"accept: EMFILE", Call::kAccept, EMFILE},
    {"accept: EINTR", Call::kAccept, EINTR},
    {"socket: EMFILE", Call::kSocket, EMFILE},
    {"setsockopt: ENOMEM", Call::kSocketOption, ENOMEM},
    {"fork: EAGAIN", Call::kFork, EAGAIN},
    {"thread: EAGAIN", Call::kThread, EAGAIN},
    {"libdrm", Call::kDisplay, EIO},
    {"property", Call::kProperty, EIO},
    {"dlopen, dlsym", Call::kLoad, EIO},
    {"3D LUT engine", Call::kEngine, EIO},
    {"base parameters", Call::kParameters, EIO},
};

size_t open_descriptors() {
  DIR* folder = opendir("/proc/self/fd");
  size_t count = 0;
  while (readdir(folder) != nullptr)
    ++count;
  closedir(folder);
  return count;
}

// The subject's results without a fault.
struct Expected {
  std::string reply;
  Stored before, after;
};

class Loop {
 public:
  Loop(const Subject& subject, bool every) : subject_(subject), every_(every) {}

  // Returns the number of harmful faults.
  int run() {
    warm_up();
    for (const Fault& fault : kFaults)
      run(fault);
    return harmful_;
  }

 private:
  void run(const Fault& fault) {
    const std::vector<uint64_t> places = learn(fault);
    if (places.empty()) return;
    size_t failed = 0;
    int harmful = 0;
    for (const bool lasting : {false, true}) {
      if (lasting && !can_last(fault)) continue;
      for (const size_t call : choose(places, lasting)) {
        ++failed;
        const std::string harm = strike_once(fault, call, lasting);
        if (harm.empty() || ++harmful > 5) continue;
        std::printf("%s, %s %s call %zu: %s\n", subject_.name.c_str(), fault.name,
                    lasting ? "from" : "at", call, harm.c_str());
      }
    }
    std::printf("%-24s %-22s %6zu calls, %6zu faults, %d harmful\n", subject_.name.c_str(),
                fault.name, places.size(), failed, harmful);
    std::fflush(stdout);
    harmful_ += harmful;
  }

  // Runs without a fault. Returns the call site of each call.
  std::vector<uint64_t> learn(const Fault& fault) {
    subject_.prepare();
    expected_.before = stored();
    record(fault);
    expected_.reply = subject_.run();
    disarm();
    expected_.after = stored();
    subject_.finish();
    return recorded();
  }

  // Creates everything that is made once and then kept.
  void warm_up() const {
    for (int i = 0; i < 2; ++i) {
      subject_.prepare();
      (void)subject_.run();
      (void)subject_.serves_afterwards();
    }
    subject_.prepare();
    (void)subject_.run();
    subject_.finish();
  }

  // The calls that must fail, counted from 1. A lasting fault of a site's first call also makes its
  // last one fail.
  [[nodiscard]] std::vector<size_t> choose(const std::vector<uint64_t>& places,
                                           bool lasting) const {
    std::map<uint64_t, size_t> last_at_place;
    for (size_t i = 0; i < places.size(); ++i)
      last_at_place[places[i]] = i;
    std::set<uint64_t> seen;
    std::vector<size_t> chosen;
    for (size_t i = 0; i < places.size(); ++i) {
      const bool first = seen.insert(places[i]).second;
      const bool last = !lasting && last_at_place[places[i]] == i;
      if (every_ || first || last) chosen.push_back(i + 1);
    }
    return chosen;
  }

  // A lasting fault of a retried call would never end.
  static bool can_last(const Fault& fault) { return fault.error != EINTR && fault.error != kShort; }

  // The harm that the fault did, and the resources it left in use; empty for none.
  [[nodiscard]] std::string strike_once(const Fault& fault, size_t call, bool lasting) const {
    const long blocks = live_blocks();
    const size_t descriptors = open_descriptors();
    std::string harm = strike_and_judge(fault, call, lasting);
    if (!harm.empty()) return harm;
    const long more_blocks = live_blocks() - blocks;
    const auto more_descriptors = static_cast<long>(open_descriptors() - descriptors);
    if (more_blocks != 0) harm += std::to_string(more_blocks) + " blocks of memory left ";
    if (more_descriptors != 0) harm += std::to_string(more_descriptors) + " descriptors left";
    return harm;
  }

  [[nodiscard]] std::string strike_and_judge(const Fault& fault, size_t call, bool lasting) const {
    subject_.prepare();
    arm(fault, call, lasting);
    const std::string reply = subject_.run();
    disarm();
    std::string harm = judge_reply(reply) + subject_.serves_afterwards();
    const Stored now = stored();
    if (now.pq != expected_.before.pq && now.pq != expected_.after.pq) {
      harm += " the PQ document is neither the old nor the new one";
    }
    if (now.aipq != expected_.before.aipq && now.aipq != expected_.after.aipq) {
      harm += " the AIPQ document is neither the old nor the new one";
    }
    if (!settle_side_files()) harm += " a side file stays";
    if (stored().pq != now.pq || stored().aipq != now.aipq) harm += " a side file had other text";

    subject_.prepare();
    if (subject_.run() != expected_.reply) harm += " without the fault, another reply";
    if (stored() != expected_.after) harm += " without the fault, other documents";
    subject_.finish();
    return harm;
  }

  [[nodiscard]] std::string judge_reply(const std::string& reply) const {
    if (reply.empty() || reply == expected_.reply) return "";
    if (subject_.any_bytes && reply.size() == expected_.reply.size()) return "";
    return "another reply";
  }

  const Subject& subject_;
  bool every_;
  Expected expected_;
  int harmful_ = 0;
};

}  // namespace
}  // namespace faults

int main(int argc, char** argv) {
  using namespace faults;
  if (argc < 2) return 2;
  in_process::platform.fails = [](in_process::Call call) {
    return call == in_process::Call::kParameters && strike(Call::kParameters) != 0;
  };
  const std::string_view name = argv[1];
  const auto wanted = [&](std::string_view word) {
    return std::find(argv + 2, argv + argc, word) != argv + argc;
  };
  const Stored first = wanted("whole") ? whole_documents() : small_documents();
  store(first);
  std::vector<Subject> subjects = requests(first);
  subjects.push_back(connection(first));
  for (Subject& start : starts(first))
    subjects.push_back(std::move(start));
  for (const Subject& subject : subjects) {
    if (subject.name == name) return Loop(subject, wanted("every")).run() == 0 ? 0 : 1;
  }
  std::fprintf(stderr, "no subject %s\n", argv[1]);
  return 2;
}
