#include "pqclient/change.h"

#include <gtest/gtest.h>

#include <chrono>

#include "client/storing_board.h"
#include "pqclient/check.h"

namespace pqclient {
namespace {

using std::chrono::milliseconds;

constexpr Timing kQuick{.gap = milliseconds(20)};

// Stores at `path` and returns what the board then has there.
std::string stored_by(StoringBoard& board, const char* path, const std::string& value) {
  TuningClient client(board.address(), kQuick);
  const Target target = parse_target(path);
  const Answer answer = store(client, target, *parse_value(target, value));
  return print_json(*target.find_in(*answer.value));
}

std::string table_of(int count, const std::string& entry) {
  std::string text = "[" + entry;
  for (int i = 1; i < count; ++i)
    text += "," + entry;
  return text + "]";
}

TEST(Store, ClearsTheBoardsBufferOnceWhenALongValueIsLost) {
  const std::string value = table_of(845, "100");
  for (const int lost : {1, 100}) {
    StoringBoard board;
    board.ignore_writes(lost);
    EXPECT_EQ(stored_by(board, "acm/acmTableGainYbyS", value) == value, lost == 1);
    EXPECT_EQ(board.story(), "wrwswr");    // the second write clears, the third is the value
    EXPECT_EQ(board.writes(), lost == 1);  // so clearing has changed nothing
  }
}

TEST(Store, LeavesTheBufferAloneForAValueThatArrivesInOnePiece) {
  StoringBoard board;
  board.ignore_writes(1);
  EXPECT_EQ(stored_by(board, "csc/cscHue", "5"), "300");
  EXPECT_EQ(board.story(), "wr");
}

TEST(Change, IsFollowedByAGap) {
  StoringBoard board;
  TuningClient client(board.address(), {.gap = milliseconds(200)});
  const auto start = std::chrono::steady_clock::now();
  client.write_pq(*replace_operation("/csc/cscHue", *parse_json("5")));
  client.query_pq("/csc");
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(200));
}

}  // namespace
}  // namespace pqclient
