#include "backup_file.h"

#include <zlib.h>

#include <array>
#include <cstdio>

#include "files.h"
#include "pqclient/error.h"
#include "time_text.h"

namespace {

using pqclient::Error;
using pqclient::ErrorKind;
using pqclient::JsonPtr;

constexpr const char* kFormat = "pqctl backup";
constexpr int kVersion = 1;
constexpr const char* kPqRoot = "pq_tuning_param";  // in the board's PQ document

std::string checksum(const cJSON& documents) {
  const std::string text = pqclient::print_json(documents);
  const uLong sum =
      crc32(0, reinterpret_cast<const Bytef*>(text.data()), static_cast<uInt>(text.size()));
  std::array<char, 16> digits{};
  (void)std::snprintf(digits.data(), digits.size(), "crc32:%08lx", sum);
  return digits.data();
}

std::string text_in(const cJSON& object, const char* name) {
  const cJSON* item = pqclient::last_member(object, name);
  return cJSON_IsString(item) != 0 ? item->valuestring : "";
}

Backup backup_of(const std::string& path, const cJSON& file) {
  const cJSON* version = pqclient::last_member(file, "version");
  if (cJSON_IsNumber(version) == 0 || version->valueint != kVersion) {
    throw Error(
        ErrorKind::kInput,
        path + " was written by another version of pqctl: read it with " + text_in(file, "tool"));
  }
  const cJSON* documents = pqclient::last_member(file, "documents");
  if (cJSON_IsObject(documents) == 0) {
    throw Error(ErrorKind::kInput, path + " contains no documents: the backup is damaged");
  }
  const cJSON* platform = pqclient::last_member(file, "platform");
  Backup backup;
  backup.time = text_in(file, "time");
  backup.tool = text_in(file, "tool");
  backup.board = text_in(file, "board");
  if (cJSON_IsNumber(platform) != 0) backup.platform = platform->valueint;
  backup.has_checksum = true;
  backup.is_as_written = text_in(file, "checksum") == checksum(*documents);
  backup.documents = SectionTree(pqclient::copy_json(*documents));
  return backup;
}

// Accepts either of the two files that the board keeps. Null if it is neither.
JsonPtr documents_of_board_file(const cJSON& file) {
  if (const cJSON* pq = pqclient::last_member(file, kPqRoot); cJSON_IsObject(pq) != 0) {
    return pqclient::copy_json(*pq);
  }
  if (cJSON_IsArray(pqclient::last_member(file, "dci")) == 0) return nullptr;
  JsonPtr documents(cJSON_CreateObject());
  pqclient::add_member(*documents, "ai", pqclient::copy_json(file));
  return documents;
}

}  // namespace

Backup read_board(Session& session) {
  Backup backup;
  for (const pqclient::Target& section : pqclient::sections_in_writing_order())
    backup.documents.add(section, session.read_section(section));
  backup.time = utc_text(std::chrono::system_clock::now());
  backup.tool = "pqctl " PQCTL_VERSION;
  backup.board = session.board().text();
  backup.platform = session.client().platform();
  return backup;
}

std::string backup_text(const Backup& backup) {
  const JsonPtr file(cJSON_CreateObject());
  const auto add = [&](const char* name, JsonPtr item) {
    pqclient::add_member(*file, name, std::move(item));
  };
  add("format", pqclient::make_string(kFormat));
  add("version", JsonPtr(cJSON_CreateNumber(kVersion)));
  add("time", pqclient::make_string(backup.time));
  add("tool", pqclient::make_string(backup.tool));
  add("board", pqclient::make_string(backup.board));
  if (backup.platform) add("platform", JsonPtr(cJSON_CreateNumber(*backup.platform)));
  add("checksum", pqclient::make_string(checksum(backup.documents.json())));
  add("documents", pqclient::copy_json(backup.documents.json()));
  return pqclient::print_json_for_people(*file) + "\n";
}

Backup read_backup(const std::string& path) {
  const JsonPtr file = pqclient::parse_whole_json(read_input(path));
  if (cJSON_IsObject(file.get()) != 0) {
    if (text_in(*file, "format") == kFormat) return backup_of(path, *file);
    if (JsonPtr documents = documents_of_board_file(*file)) {
      Backup backup;
      backup.documents = SectionTree(std::move(documents));
      return backup;
    }
  }
  throw Error(ErrorKind::kInput,
              path + " is neither a backup of pqctl nor a board's document, or it is damaged");
}
