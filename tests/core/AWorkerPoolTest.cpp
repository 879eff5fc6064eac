#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

#include "core/AWorkerPool.h"

namespace ppdforge {
namespace {

TEST(AWorkerPool, RunsEveryTaskOnceOnAnyNumberOfThreads) {
  const struct {
    std::size_t count;
    unsigned threads;
  } cases[] = {{0, 4}, {1, 4}, {2, 2}, {1000, 1}, {1000, 2}, {1000, 4}, {1000, 64}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.count << " tasks on " << c.threads << " threads");
    std::vector<std::atomic<int>> runs(c.count);
    AWorkerPool::Shared().ForEach(c.count, c.threads, [&](std::size_t i) { ++runs[i]; });
    for (std::size_t i = 0; i < c.count; ++i) ASSERT_EQ(runs[i].load(), 1) << i;
  }
  // At most 16 threads in all, and never fewer than were reserved.
  AWorkerPool::Shared().Reserve(100);
  EXPECT_EQ(AWorkerPool::Shared().Threads(), 16u);
}

TEST(AWorkerPool, CallsFromTasksAndFromOtherThreadsRunOnTheirCaller) {
  std::atomic<int> inner{0};
  AWorkerPool::Shared().ForEach(8, 4, [&](std::size_t) {
    AWorkerPool::Shared().ForEach(10, 4, [&](std::size_t) { ++inner; });
  });
  EXPECT_EQ(inner.load(), 80);

  AWorkerPool own;
  std::atomic<int> runs{0};
  own.ForEach(100, 3, [&](std::size_t) { ++runs; });
  EXPECT_EQ(runs.load(), 100);
  EXPECT_EQ(own.Threads(), 3u);
}

}  // namespace
}  // namespace ppdforge
