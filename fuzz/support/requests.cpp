#include "fuzz/support/requests.h"

#include "base/owner.h"
#include "fuzz/support/body.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "fuzz/support/input.h"
#include "json/tree.h"

namespace fuzz {
namespace {

constexpr int kMaxRequests = 3;

void run_request(std::string_view line, const Service& service) {
  const std::string before = read_file(service.document);
  bool may_change = false;
  if (line.starts_with('?')) {
    const Body body(line.substr(1));
    const pq::TextPtr answer(service.query(body.bytes(), body.length()));
    require(!answer || pq::parse_json(answer.get()), "an answer is JSON");
  } else {
    const Body body(line);
    may_change = service.change(body.bytes(), body.length()) == 0;
  }
  require(may_change || read_file(service.document) == before, "the document is unchanged");
}

}  // namespace

void run_requests(const uint8_t* data, size_t size, const Service& service) {
  Input input(data, size);
  start_board(input);
  put_documents();
  {
    const NoDescriptorLeft check;
    for (int i = 0; i < kMaxRequests && !input.at_end(); ++i)
      run_request(input.line(), service);
  }
  require_sound_documents();
}

}  // namespace fuzz
