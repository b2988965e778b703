#include "fuzz/support/documents.h"

#include <baseparameter_api.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <memory>

#include "base/owner.h"
#include "documents/aipq_document_creator.h"
#include "documents/names.h"
#include "documents/pq_document_creator.h"
#include "documents/pq_parameters.h"
#include "fuzz/support/board.h"
#include "fuzz/support/check.h"

namespace fuzz {
namespace {

constexpr const char* kFolder = "/data/vendor/qxalgo";

struct Documents {
  std::string pq, aipq;
};
Documents full_documents, small_documents;

Documents create() {
  // Every byte of the records is set, so that the document has numbers of all sizes.
  std::string records(sizeof(pq_tuning_info), '\0');
  for (size_t i = 0; i < records.size(); ++i)
    records[i] = static_cast<char>(i / 2);
  power_on();
  fill_parameters(records);
  getJsonFromBaseparameter(const_cast<char*>(pq::kPqDocument));
  createDefaultAIPQJson(const_cast<char*>(pq::kAipqDocument));
  return {read_file(pq::kPqDocument), read_file(pq::kAipqDocument)};
}

// The text that results from loading and saving a PQ document.
std::string normalised(const std::string& text) {
  const pq::JsonPtr document = pq::parse_json(text);
  pq::J2sContext context;
  pq::PqParameters parameters;
  parameters.load(context.get(), cJSON_GetObjectItem(document.get(), "pq_tuning_param"));
  // Converts item by item: the daemon's fast printing must give the same result.
  const pq::JsonPtr again(cJSON_CreateObject());
  pq::add_to_object(
      again.get(), "pq_tuning_param",
      pq::JsonPtr(j2s_struct_to_json(context.get(), "pq_tuning_param", &parameters.values)));
  const pq::TextPtr printed(cJSON_Print(again.get()));
  return printed.get();
}

template <typename Visit>
void for_each_other_file(Visit visit) {
  const std::unique_ptr<DIR, pq::Call<closedir>> folder(opendir(kFolder));
  while (const dirent* entry = readdir(folder.get())) {
    const std::string_view name = entry->d_name;
    if (name != "." && name != ".." && name != "pq_config.json" && name != "aipq_config.json") {
      visit(std::string(kFolder) + "/" + entry->d_name);
    }
  }
}

}  // namespace

void create_documents() {
  use_full_tables(true);
  full_documents = create();
  use_full_tables(false);
  small_documents = create();
}

void put_documents() {
  for_each_other_file([](const std::string& path) { std::filesystem::remove_all(path); });
  const Documents& documents = full_tables() ? full_documents : small_documents;
  write_file(pq::kPqDocument, documents.pq);
  write_file(pq::kAipqDocument, documents.aipq);
}

std::string read_file(const char* path) {
  std::string content;
  const pq::UniqueFd fd(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  struct stat status {};
  if (!fd.valid() || fstat(fd.get(), &status) != 0 || !S_ISREG(status.st_mode)) return content;
  content.resize(static_cast<size_t>(status.st_size));
  require(read(fd.get(), content.data(), content.size()) == status.st_size, "a file can be read");
  return content;
}

void write_file(const char* path, std::string_view content) {
  const pq::UniqueFd fd(open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0600));
  const ssize_t written = fd.valid() ? write(fd.get(), content.data(), content.size()) : -1;
  require(written == static_cast<ssize_t>(content.size()), "a file can be written");
}

bool put(const char* path, char kind, std::string_view content, const char* elsewhere) {
  std::filesystem::remove_all(path);
  switch (kind) {
    case 'f':
      write_file(path, content);
      return true;
    case 'd':
      return mkdir(path, 0700) == 0;
    case 'p':
      return mkfifo(path, 0600) == 0;
    case 'l':
      return symlink(elsewhere, path) == 0;
    default:
      return false;
  }
}

void require_sound_documents() {
  for_each_other_file(
      [](const std::string& /*path*/) { require(false, "nothing is left beside the documents"); });
  const Documents& created = full_tables() ? full_documents : small_documents;
  const std::string pq = read_file(pq::kPqDocument);
  require(pq == created.pq || normalised(pq) == pq, "the PQ document is in the schema's form");
  const std::string aipq = read_file(pq::kAipqDocument);
  require(aipq == created.aipq || pq::parse_json(aipq), "the AIPQ document can be read");
}

}  // namespace fuzz
