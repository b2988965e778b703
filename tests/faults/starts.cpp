// The daemon's start-up, beginning with its main().
#include <getopt.h>

#include "base/quit.h"
#include "faults/subject.h"

// The daemon's main(), renamed in this program.
int run_daemon(int argc, char* argv[]);

namespace faults {
namespace {

// Starts the daemon with shutdown already requested. Returns its exit status.
int start() {
  char name[] = "qxaiq_tool_server";
  char* arguments[] = {name, nullptr};
  optind = 0;
  pq::quit_requested = true;
  const int status = run_daemon(1, arguments);
  pq::quit_requested = false;
  return status;
}

Subject make_start(const char* name, const Stored& before, const Stored& after,
                   const std::string& side_file = "") {
  Subject subject;
  subject.name = name;
  subject.prepare = [=] {
    store(before);
    if (!side_file.empty()) write_file("/data/vendor/qxalgo/.pq_config.json.saving", side_file);
  };
  // A daemon that cannot serve logs an error and exits; init restarts it.
  subject.run = [] {
    (void)start();
    return std::string();
  };
  subject.serves_afterwards = [=]() -> std::string {
    if (start() != 0) return "the next start failed";
    return stored() == after ? "" : "the next start left other documents";
  };
  return subject;
}

}  // namespace

std::vector<Subject> starts(const Stored& first) {
  const std::string half = first.pq.substr(0, first.pq.size() / 2);
  return {
      make_start("start", first, first),
      make_start("start-new-pq-document", {"", first.aipq}, {whole_documents().pq, first.aipq}),
      make_start("start-new-aipq-document", {first.pq, ""}, {first.pq, whole_documents().aipq}),
      make_start("start-restoring", {half, first.aipq}, first, first.pq),
  };
}

}  // namespace faults
