// A fake board with small documents, which stores what it is told.
#ifndef TESTS_CLIENT_STORING_BOARD_H_
#define TESTS_CLIENT_STORING_BOARD_H_

#include <mutex>
#include <string>

#include "client/fake_board.h"
#include "pqclient/json.h"

class StoringBoard {
 public:
  StoringBoard();

  [[nodiscard]] pqclient::Address address() const { return board_.address(); }

  // The next n writes get lost, as a document does that leftovers garble.
  void ignore_writes(int n) { locked()->writes_to_ignore = n; }

  // How many writes were applied.
  int writes() { return locked()->writes; }
  // The data bytes of the last test colour.
  std::string pattern() { return locked()->pattern; }
  // All requests since the start, one letter each: read, write, command, stray chunk.
  std::string story() { return locked()->story; }

 private:
  void serve(Visitor& visitor);
  // False for a request that this board cannot answer: it then hangs up.
  bool handle_document(Visitor& visitor, const Request& request);
  bool handle_command(Visitor& visitor, const Request& request);
  void apply(cJSON* document, cJSON* operations);

  // What the test and the board's thread share.
  struct Record {
    int writes_to_ignore = 0;
    int writes = 0;
    std::string pattern;
    std::string story;
  };
  // Holds the lock until the end of the statement.
  struct Locked {
    std::unique_lock<std::mutex> lock;
    Record* record;
    Record* operator->() const { return record; }
  };
  Locked locked() { return {std::unique_lock(mutex_), &record_}; }

  std::mutex mutex_;
  Record record_;
  // Used by the board's thread alone.
  pqclient::JsonPtr pq_;
  pqclient::JsonPtr aipq_;
  int saved_dci_ = 0;
  FakeBoard board_;  // last: its thread uses all the others
};

#endif  // TESTS_CLIENT_STORING_BOARD_H_
