#include "documents/document_file.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>
#include <utility>

#include "base/log.h"
#include "documents/read_error.h"
#include "documents/side_file.h"
#include "j2s/files.h"
#include "json/limits.h"
#include "json/tree.h"

namespace pq {
namespace {

struct FileReading {
  DocumentState state = DocumentState::kUnknown;
  TextPtr text;
  int error = 0;  // errno's numbers; 0 with a text
};

FileReading read_text(const char* path) {
  j2s::FileText file = j2s::read_file(path, kMaxDocumentSize);
  if (file.text) return {DocumentState::kWhole, std::move(file.text), 0};
  if (file.error == EFBIG) return {DocumentState::kDamaged, nullptr, file.error};
  const bool missing = means_no_readable_file(file.error);
  return {missing ? DocumentState::kMissing : DocumentState::kUnknown, nullptr, file.error};
}

bool is_absent(const FileReading& file) {
  return file.error == ENOENT || file.error == ENOTDIR;
}

bool holds_json(const FileReading& file) {
  return file.text && parse_json(file.text.get());
}

// Where a document's text is after a look at its side file.
struct Whereabouts {
  bool in_place = true;  // else in the side file alone
  int error = 0;         // why it is not known; else 0
};

// Copies the side file's text into the document, and removes the side file once the disk confirms.
// Returns the number of bytes, or -1.
int replace_text(const char* path, const char* text, SideFile& side) {
  const j2s::FileSaved saved = j2s::save_file(path, text);
  if (saved.result < 0) {
    log_error()("cannot write %s: %s; its text is in %s", path, std::strerror(saved.error),
                side.path());
  } else if (saved.error != 0) {
    log_error()("the disk does not confirm %s: %s; its text is also in %s", path,
                std::strerror(saved.error), side.path());
  } else {
    side.remove();
  }
  return saved.result;
}

// Restores a document that cannot be read any more. Leaves any other as it is, and its side file.
Whereabouts put_back(const char* path, SideFile& side) {
  if (!side.exists()) return {true, side.error()};
  const FileReading document = read_text(path);
  if (document.state == DocumentState::kUnknown) return {true, document.error};
  if (is_absent(document) || holds_json(document)) return {};
  const FileReading saved = read_text(side.path());
  if (saved.state == DocumentState::kUnknown) return {true, saved.error};
  if (!holds_json(saved)) return {};
  const int result = replace_text(path, saved.text.get(), side);
  log_error()("%s was cut short while it was saved, restored: %d", path, result);
  return {result >= 0, 0};
}

// A document and a side file of the same text: the save was all but done, or the disk did not
// confirm it. Written again, it is safe to remove the side file.
void settle(const char* path, SideFile& side) {
  const FileReading document = read_text(path);
  const FileReading saved = read_text(side.path());
  if (saved.state == DocumentState::kUnknown) return;
  const bool same =
      document.text && saved.text && std::strcmp(document.text.get(), saved.text.get()) == 0;
  if (same) {
    replace_text(path, saved.text.get(), side);
  } else {
    side.remove();
  }
}

bool keep_damaged(const char* path, const char* kept) {
  if (::rename(path, kept) != 0) {
    log_error()("cannot keep the damaged %s as %s: %s; nothing is saved", path, kept,
                std::strerror(errno));
    return false;
  }
  log_error()("the damaged %s is kept as %s", path, kept);
  return true;
}

// After a failed save. Not beside a side file, which would be taken for the document's text.
void take_damaged_back(const char* path, const char* kept, SideFile& side) {
  side.remove();
  if (!side.exists() && ::rename(kept, path) == 0) log_error()("%s is damaged as before", path);
}

bool can_be_saved(const char* path, const char* text) {
  if (text == nullptr || text[0] == '\0') return false;
  const size_t size = std::strlen(text);
  if (size <= kMaxDocumentSize) return true;
  log_error()("%s is not saved: %zu bytes are more than the %zu that it may have", path, size,
              kMaxDocumentSize);
  return false;
}

// kept: the name to keep the present file under; null: it is replaced.
int save(const char* path, const char* text, const char* kept) {
  if (!can_be_saved(path, text)) return -1;
  SideFile side(path);
  const Whereabouts present = put_back(path, side);
  if (present.error != 0) {
    log_error()("%s is not saved: its side file cannot be looked up: %s", path,
                std::strerror(present.error));
  }
  if (present.error != 0 || !present.in_place) return -1;
  if (kept != nullptr && !keep_damaged(path, kept)) return -1;
  const int result = side.write(text) ? replace_text(path, text, side) : -1;
  if (result < 0 && kept != nullptr) take_damaged_back(path, kept, side);
  return result;
}

template <typename Save>
int without_exceptions(const char* path, Save save) {
  try {
    return save();
  } catch (const std::bad_alloc&) {
    log_error()("no memory to save %s: it stays as it was", path);
    return -1;
  }
}

void log_reading(const char* path, const FileReading& file) {
  if (file.state == DocumentState::kDamaged) {
    log_error()("%s is damaged: it has more than %zu bytes", path, kMaxDocumentSize);
  } else if (is_absent(file)) {
    log_error()("%s is missing: %s; a restart of the service creates it", path,
                std::strerror(file.error));
  } else if (file.state != DocumentState::kWhole) {
    log_error()("cannot read %s: %s", path, std::strerror(file.error));
  }
}

FileReading read_where_it_is(const char* path) {
  SideFile side(path);
  const Whereabouts present = put_back(path, side);
  if (present.error != 0) return {DocumentState::kUnknown, nullptr, present.error};
  return read_text(present.in_place ? path : side.path());
}

}  // namespace

DocumentText read_document(const char* path) {
  FileReading file;
  try {
    file = read_where_it_is(path);
  } catch (const std::bad_alloc&) {
    file.error = ENOMEM;
  }
  log_reading(path, file);
  return {file.state, std::move(file.text)};
}

int save_document(const char* path, const char* text) {
  return without_exceptions(path, [&] { return save(path, text, nullptr); });
}

int replace_damaged_document(const char* path, const char* text) {
  return without_exceptions(path, [&] {
    const std::string kept = std::string(path) + ".damaged";
    return save(path, text, kept.c_str());
  });
}

bool restore_document(const char* path) {
  int error = ENOMEM;
  try {
    SideFile side(path);
    const Whereabouts present = put_back(path, side);
    error = present.error;
    if (error == 0 && present.in_place && side.exists()) settle(path, side);
    if (error == 0) return present.in_place;
  } catch (const std::bad_alloc&) {
  }
  log_error()("cannot look for what an earlier save of %s left: %s", path, std::strerror(error));
  return false;
}

}  // namespace pq
