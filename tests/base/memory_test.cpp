#include "base/memory.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <new>
#include <thread>

namespace {

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

// Too much for any machine; the sanitizers would end the program. Not known to the compiler, which
// would warn.
void* allocate_too_much() {
  const volatile size_t size = SIZE_MAX / 2;
  return pq::noting_malloc(size);
}

TEST(AllocationWatch, SeesTheFailuresOfItsOwnLifeAndThread) {
  EXPECT_EQ(allocate_too_much(), nullptr);
  const pq::AllocationWatch watch;
  std::free(pq::noting_malloc(1));
  std::thread([] { EXPECT_EQ(allocate_too_much(), nullptr); }).join();
  EXPECT_FALSE(watch.failed());
  {
    const pq::AllocationWatch inner;
    EXPECT_EQ(allocate_too_much(), nullptr);
    EXPECT_THROW(inner.throw_if_failed(), std::bad_alloc);
  }
  EXPECT_TRUE(watch.failed()) << "an inner watch hides nothing";
}

#endif

}  // namespace
