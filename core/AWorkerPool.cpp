#include "core/AWorkerPool.h"

#include <algorithm>

namespace com_qv_print_driver_core_cpp_util_v1 {

namespace {

constexpr unsigned kMaxThreads = 16;
thread_local bool insideTask = false;

}  // namespace

AWorkerPool& AWorkerPool::Shared() {
  static AWorkerPool pool;
  return pool;
}

AWorkerPool::~AWorkerPool() {
  {
    std::lock_guard lock(mutex_);
    stopping_.store(true, std::memory_order_release);
  }
  wake_.notify_all();
  for (std::thread& helper : helpers_) helper.join();
}

void AWorkerPool::Reserve(unsigned threads) {
  threads = std::min(threads, kMaxThreads);
  std::lock_guard lock(mutex_);
  while (helpers_.size() + 1 < threads) helpers_.emplace_back([this] { HelperLoop(); });
}

unsigned AWorkerPool::Threads() {
  std::lock_guard lock(mutex_);
  return static_cast<unsigned>(helpers_.size()) + 1;
}

void AWorkerPool::Work(Job& job) {
  insideTask = true;
  for (std::size_t i = job.next++; i < job.count; i = job.next++) {
    (*job.task)(i);
    job.done.fetch_add(1, std::memory_order_release);
  }
  insideTask = false;
}

void AWorkerPool::ForEach(std::size_t count, unsigned threads,
                          const std::function<void(std::size_t)>& task) {
  std::unique_lock<std::mutex> busy;
  if (threads > 1 && count > 1 && !insideTask) busy = std::unique_lock(submit_, std::try_to_lock);
  if (!busy.owns_lock()) {
    for (std::size_t i = 0; i < count; ++i) task(i);
    return;
  }
  Reserve(threads);
  auto job = std::make_shared<Job>();
  job->task = &task;
  job->count = count;
  job->seats.store(static_cast<int>(std::min(threads, kMaxThreads)) - 1);
  {
    std::lock_guard lock(mutex_);
    job_ = job;
    generation_.fetch_add(1, std::memory_order_release);
  }
  wake_.notify_all();
  Work(*job);
  // What is left runs on helpers and is short: poll for its end.
  while (job->done.load(std::memory_order_acquire) < count) std::this_thread::yield();
  std::lock_guard lock(mutex_);
  job_.reset();
}

void AWorkerPool::HelperLoop() {
  std::uint64_t seen = 0;
  for (;;) {
    std::shared_ptr<Job> job;
    {
      std::unique_lock lock(mutex_);
      wake_.wait(lock, [&] {
        return generation_.load(std::memory_order_relaxed) != seen || stopping_.load(std::memory_order_relaxed);
      });
      if (stopping_.load(std::memory_order_relaxed)) return;
      seen = generation_.load(std::memory_order_relaxed);
      job = job_;
    }
    if (job != nullptr && job->seats.fetch_sub(1) > 0) Work(*job);
  }
}

}  // namespace com_qv_print_driver_core_cpp_util_v1
