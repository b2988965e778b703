#include "bench/documents.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "documents/aipq_document_creator.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "in_process/platform.h"
#include "json/tree.h"

namespace bench {
namespace {

constexpr int kTimes = 4;

void multiply_arrays(cJSON* item) {
  if (!cJSON_IsArray(item)) {
    for (cJSON* child = item->child; child != nullptr; child = child->next)
      multiply_arrays(child);
    return;
  }
  const pq::JsonPtr original(cJSON_Duplicate(item, true));
  for (int i = 1; i < kTimes; ++i) {
    const cJSON* element = nullptr;
    cJSON_ArrayForEach(element, original.get()) {
      cJSON_AddItemToArray(item, cJSON_Duplicate(element, true));
    }
  }
}

}  // namespace

Documents create_documents() {
  in_process::platform.properties["ro.board.platform"] = "qxt200";
  in_process::platform.parameters = board::panel_defaults(2, 0);
  std::filesystem::create_directories(std::filesystem::path(pq::kPqDocument).parent_path());
  getJsonFromBaseparameter(const_cast<char*>(pq::kPqDocument));
  createDefaultAIPQJson(const_cast<char*>(pq::kAipqDocument));
  return {read_file(pq::kPqDocument), read_file(pq::kAipqDocument)};
}

std::string four_times_as_large(const std::string& document) {
  const pq::JsonPtr tree = pq::parse_json(document);
  multiply_arrays(tree.get());
  return pq::TextPtr(cJSON_Print(tree.get())).get();
}

void write_file(const char* path, const std::string& text) {
  const pq::UniqueFd file(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (write(file.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size())) return;
  std::perror(path);
  std::exit(1);
}

std::string read_file(const char* path) {
  const pq::TextPtr text(j2s_read_file(path, nullptr));
  return text ? text.get() : "";
}

}  // namespace bench
