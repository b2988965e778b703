#include "base/fair_mutex.h"

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;

// Threads that queue for one mutex; each one is waiting before the next one starts.
class FairMutexTest : public testing::Test {
 protected:
  void queue(auto body) {
    threads_.emplace_back(std::move(body));
    std::this_thread::sleep_for(30ms);
  }
  void TearDown() override {
    for (std::thread& thread : threads_)
      thread.join();
  }

  pq::FairMutex mutex_;
  std::atomic<bool> stop_ = false;
  std::vector<int> order_;  // guarded by mutex_
  std::vector<std::thread> threads_;
};

TEST_F(FairMutexTest, ServesWaitersInTheOrderOfTheirArrival) {
  mutex_.lock();
  for (int i = 0; i < 5; ++i) {
    queue([this, i] {
      const pq::FairMutexLock lock(mutex_);
      order_.push_back(i);
    });
  }
  mutex_.unlock();
  for (std::thread& thread : threads_)
    thread.join();
  threads_.clear();
  EXPECT_EQ(order_, (std::vector<int>{0, 1, 2, 3, 4}));
}

TEST_F(FairMutexTest, WaitersThatGiveUpHoldNobodyUp) {
  mutex_.lock();
  std::atomic<int> refused = 0;
  for (int i = 0; i < 2; ++i) {
    queue([this, &refused] { refused += mutex_.lock_unless(stop_) ? 0 : 1; });
  }
  queue([this] {
    const pq::FairMutexLock lock(mutex_);
    order_.push_back(1);
  });
  stop_ = true;
  mutex_.unlock();
  for (std::thread& thread : threads_)
    thread.join();
  threads_.clear();
  EXPECT_EQ(order_.size(), 1U);
  EXPECT_EQ(refused, 2);
}

}  // namespace
