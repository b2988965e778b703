// The locks of the two documents. The test needs no documents: it checks only the waiting.
#include "documents/document_transaction.h"

#include <gtest/gtest.h>

#include <chrono>
#include <future>

#include "base/quit.h"

namespace {

using pq::Document;
using pq::DocumentTransaction;
using namespace std::chrono_literals;

constexpr auto kLongEnough = 20s;

// Returns true if `act` finishes on another thread while this one continues.
template <typename Act>
bool ends(Act act) {
  return std::async(std::launch::async, act).wait_for(kLongEnough) == std::future_status::ready;
}

TEST(DocumentTransaction, OfOneDocumentDelaysNeitherQueriesNorTheOtherDocument) {
  const DocumentTransaction change(Document::kPq);
  EXPECT_TRUE(ends([] { pq::read_for_query(Document::kPq); }));
  EXPECT_TRUE(ends([] { pq::read_for_query(Document::kAipq); }));
  EXPECT_TRUE(ends([] { const DocumentTransaction other(Document::kAipq); }));
}

TEST(DocumentTransaction, WaitsForTheOneBefore) {
  std::future<void> second;
  {
    const DocumentTransaction first(Document::kPq);
    second = std::async(std::launch::async, [] { const DocumentTransaction next(Document::kPq); });
    EXPECT_EQ(second.wait_for(100ms), std::future_status::timeout);
  }
  EXPECT_EQ(second.wait_for(kLongEnough), std::future_status::ready);
}

TEST(DocumentTransaction, DoesNotBeginOnceTheDaemonShutsDown) {
  const DocumentTransaction first(Document::kPq);
  auto begun =
      std::async(std::launch::async, [] { return DocumentTransaction(Document::kPq).begun(); });
  EXPECT_EQ(begun.wait_for(100ms), std::future_status::timeout);
  pq::quit_requested = true;
  EXPECT_FALSE(begun.get());
  pq::quit_requested = false;
}

}  // namespace
