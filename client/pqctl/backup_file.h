// Backup files: everything that a board has stored.
//
//   {"format": "pqctl backup", "version": 1, "time": "2026-11-21T07:30:00Z", "tool": "pqctl 1.0.8",
//    "board": "lab (192.0.2.7:5543)", "platform": 1, "checksum": "crc32:89abcdef",
//    "documents": {"gamma": {...}, ..., "csc": {...}, "ai": {"dci": [...], "acm": [...]}}}
//
// The checksum is CRC-32 (as in zlib and ISO 3309) over the documents printed without blanks.
#ifndef PQCTL_BACKUP_FILE_H_
#define PQCTL_BACKUP_FILE_H_

#include <optional>
#include <string>

#include "section_tree.h"
#include "session.h"

struct Backup {
  std::string time;  // as utc_text() writes it
  std::string tool;
  std::string board;
  std::optional<int> platform;  // the board's number
  SectionTree documents;
  bool has_checksum = false;
  bool is_as_written = false;  // the checksum matches

  [[nodiscard]] bool is_damaged() const { return has_checksum && !is_as_written; }
};

// Queries all seven sections; the time is the current time.
Backup read_board(Session& session);

std::string backup_text(const Backup& backup);

// "-" is standard input. Also accepts a document in the board's own form: such a file has no time,
// platform or checksum, and only its own sections. Throws Error kFile if it cannot be read, kInput
// if it is neither.
Backup read_backup(const std::string& path);

#endif  // PQCTL_BACKUP_FILE_H_
