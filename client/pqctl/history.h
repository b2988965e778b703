// What was changed on a board from here, so that it can be taken back: a file for each change with
// the values from before it, in a folder for each board, $XDG_STATE_HOME/pqctl/history/BOARD/.
#ifndef PQCTL_HISTORY_H_
#define PQCTL_HISTORY_H_

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "configuration.h"
#include "pqclient/json.h"
#include "pqclient/target.h"

struct HistoryChange {
  pqclient::Target place;
  pqclient::JsonPtr before;  // what was there
  pqclient::JsonPtr after;   // what was to be there
};

struct HistoryEntry {
  int number = 0;          // counts up, from 1
  std::string time;        // UTC, as in RFC 3339: "2026-11-21T07:30:00Z"
  std::string command;     // as typed: "set csc/cscHue 256"
  bool is_undo = false;    // itself takes a change back
  bool is_undone = false;  // has been taken back
  std::vector<HistoryChange> changes;
};

// The entry as its file has it, values and all.
pqclient::JsonPtr json_of(const HistoryEntry& entry);

// Every call may throw Error kFile.
class History {
 public:
  // Of this board: by its name, else by its address.
  explicit History(const Board& board);

  // Oldest first. What is damaged, or of another version of pqctl, is passed over.
  [[nodiscard]] std::vector<HistoryEntry> entries() const;

  // The newest file, when it is passed over; else empty.
  [[nodiscard]] std::filesystem::path unreadable_newest() const;

  // Gives the entry its number and keeps the newest few hundred.
  int add(HistoryEntry entry) const;

  void mark_undone(int number) const;

 private:
  [[nodiscard]] std::filesystem::path file_of(int number) const;
  [[nodiscard]] std::vector<int> numbers() const;  // ascending
  [[nodiscard]] std::optional<HistoryEntry> read(int number) const;
  void write(const HistoryEntry& entry) const;

  std::filesystem::path folder_;
};

#endif  // PQCTL_HISTORY_H_
