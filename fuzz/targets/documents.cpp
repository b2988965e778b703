// Files in the documents' folder at start-up. Lines after the first:
//
//   kinds: a character each for the PQ document, its side file and the AIPQ document:
//     f a file, d a folder, p a pipe, l a link to a missing file, otherwise nothing
//   their contents, one line each
//   the base-parameter records' bytes, to the end
#include <unistd.h>

#include <array>
#include <filesystem>
#include <string>

#include "base/owner.h"
#include "documents/document_file.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "fuzz/support/board.h"
#include "fuzz/support/body.h"
#include "fuzz/support/check.h"
#include "fuzz/support/documents.h"
#include "fuzz/support/input.h"
#include "json/tree.h"
#include "qxaiq/aipq_service.h"
#include "qxaiq/pattern_commands.h"
#include "qxaiq/pq_query.h"
#include "qxaiq/pq_update.h"

namespace {

constexpr char kElsewhere[] = "/data/elsewhere";
constexpr char kSideFile[] = "/data/vendor/qxalgo/.pq_config.json.saving";

bool exists(const char* path) {
  return access(path, F_OK) == 0;
}

// Readable as a text, up to the first zero byte.
bool readable(const char* path) {
  return pq::parse_json(fuzz::read_file(path).c_str()) != nullptr;
}

// The daemon does the same before it serves.
void restore() {
  const bool was_there = exists(pq::kPqDocument);
  const bool was_readable = readable(pq::kPqDocument);
  const bool side_was_readable = readable(kSideFile);
  const std::string before = fuzz::read_file(pq::kPqDocument);
  pq::restore_document(pq::kPqDocument);
  pq::restore_document(pq::kAipqDocument);
  fuzz::require(exists(pq::kPqDocument) == was_there, "no document is made from a side file");
  fuzz::require(!was_readable || fuzz::read_file(pq::kPqDocument) == before,
                "a good document is left alone");
  const bool was_file = std::filesystem::is_regular_file(pq::kPqDocument);
  fuzz::require(!was_file || !side_was_readable || readable(pq::kPqDocument),
                "a good side file replaces a broken document");
}

void serve() {
  constexpr std::string_view kQuery = R"([{"path":"/csc","platform":1}])";
  constexpr std::string_view kAipqQuery = R"([{"path":"/dci"}])";
  constexpr std::string_view kChange = R"([{"op":"add","path":"/csc/cscHue","value":1}])";
  const fuzz::Body query(kQuery), aipq_query(kAipqQuery), change(kChange);
  const pq::TextPtr answer(getPQ(query.bytes(), query.length()));
  fuzz::require(answer != nullptr, "a query of a section always has an answer");
  const pq::TextPtr aipq_answer(getAIPQ(aipq_query.bytes(), aipq_query.length()));
  fuzz::require(aipq_answer != nullptr, "a query of a table always has an answer");

  const std::string before = fuzz::read_file(pq::kPqDocument);
  if (updatePQ(change.bytes(), change.length()) == 0) {
    fuzz::require(readable(pq::kPqDocument), "an update leaves a document");
  } else {
    fuzz::require(fuzz::read_file(pq::kPqDocument) == before, "a failed update changes nothing");
  }
  updateAIPQ(change.bytes(), change.length());
  CommandData_t packet = {};
  packet.dat[0] = pq::kEnterPatternMode;
  pq::switch_pattern_mode(0, packet);
}

void create() {
  std::filesystem::remove_all(pq::kPqDocument);
  std::filesystem::remove_all(kSideFile);
  getJsonFromBaseparameter(const_cast<char*>(pq::kPqDocument));
  fuzz::require(readable(pq::kPqDocument), "the store's document can be read");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::Input input(data, size);
  fuzz::start_board(input);
  const std::string_view kinds = input.line();
  std::filesystem::remove(kElsewhere);
  const std::array paths = {pq::kPqDocument, static_cast<const char*>(kSideFile),
                            pq::kAipqDocument};
  for (size_t i = 0; i < paths.size(); ++i)
    fuzz::put(paths[i], i < kinds.size() ? kinds[i] : ' ', input.line(), kElsewhere);
  fuzz::fill_parameters(input.rest());
  {
    const fuzz::NoDescriptorLeft check;
    restore();
    serve();
    create();
  }
  return 0;
}
