#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
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

// Waits (up to a few seconds) until `done` holds.
template <class Done>
bool Eventually(Done done) {
  for (int i = 0; i < 5000 && !done(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
  return done();
}

TEST(AWorkerPool, IdleWorkRunsBetweenCallsUntilItIsDoneOrReplaced) {
  // Declared before the pool, which they outlive.
  std::atomic<int> steps{0}, runs{0}, endless{0}, replaced{0}, never{0};
  std::atomic<bool> release{false};
  AWorkerPool pool;
  pool.Reserve(2);
  // Each step waits for the test, so that calls meet a step under way.
  pool.SetIdleWork([&] {
    while (!release.load()) std::this_thread::yield();
    return ++steps < 50;
  });
  std::thread releaser([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    release = true;
  });
  pool.ForEach(100, 2, [&](std::size_t) { ++runs; });
  releaser.join();
  EXPECT_EQ(runs.load(), 100);
  ASSERT_TRUE(Eventually([&] { return steps.load() == 50; }));

  // Work that never finishes by itself gives way to calls and to newer work.
  pool.SetIdleWork([&] { return ++endless > 0; });
  ASSERT_TRUE(Eventually([&] { return endless.load() > 10; }));
  pool.ForEach(100, 2, [&](std::size_t) { ++runs; });
  EXPECT_EQ(runs.load(), 200);
  pool.SetIdleWork([&] { return ++replaced < 3; });
  ASSERT_TRUE(Eventually([&] { return replaced.load() == 3; }));
  const int frozen = endless.load();
  std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(endless.load(), frozen);
  EXPECT_EQ(steps.load(), 50);

  // Without helpers it never runs; the pool ends with work left.
  AWorkerPool alone;
  alone.SetIdleWork([&] { return ++never > 0; });
  alone.ForEach(10, 1, [&](std::size_t) { ++runs; });
  EXPECT_EQ(never.load(), 0);
}

}  // namespace
}  // namespace ppdforge
