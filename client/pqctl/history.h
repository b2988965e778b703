// The changes made to a board from this machine, so that they can be undone: a file for each change
// with the values before it, in a folder for each board, $XDG_STATE_HOME/pqctl/history/BOARD/.
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
  pqclient::JsonPtr before;  // the old value
  pqclient::JsonPtr after;   // the new value
};

struct HistoryEntry {
  int number = 0;          // counts up, from 1
  std::string time;        // UTC, as in RFC 3339: "2026-11-21T07:30:00Z"
  std::string command;     // as typed: "set csc/cscHue 256"
  bool is_undo = false;    // this entry undoes a change
  bool is_undone = false;  // undone since
  std::vector<HistoryChange> changes;
};

// The entry in its file's form, including the values.
pqclient::JsonPtr json_of(const HistoryEntry& entry);

// Every call may throw Error kFile.
class History {
 public:
  // The history of this board: by its name, or by its address if it has none.
  explicit History(const Board& board);

  // Oldest first. Skips entries that are damaged or of another version of pqctl.
  [[nodiscard]] std::vector<HistoryEntry> entries() const;

  // The newest file, if it is skipped; otherwise empty.
  [[nodiscard]] std::filesystem::path unreadable_newest() const;

  // Numbers the entry and removes the oldest ones beyond a few hundred.
  [[nodiscard]] int add(HistoryEntry entry) const;

  void mark_undone(int number) const;

 private:
  [[nodiscard]] std::filesystem::path file_of(int number) const;
  [[nodiscard]] std::vector<int> numbers() const;  // ascending
  [[nodiscard]] std::optional<HistoryEntry> read(int number) const;
  void write(const HistoryEntry& entry) const;

  std::filesystem::path folder_;
};

#endif  // PQCTL_HISTORY_H_
