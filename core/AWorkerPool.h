#pragma once
// Helper threads shared by the whole process, started once: the tasks of one
// call run on the helpers and on the calling thread.

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace com_qv_print_driver_core_cpp_util_v1 {

class AWorkerPool {
 public:
  // The process's pool (never null); its helpers are stopped and joined at exit.
  static AWorkerPool& Shared();

  AWorkerPool() = default;
  AWorkerPool(const AWorkerPool&) = delete;
  AWorkerPool& operator=(const AWorkerPool&) = delete;
  // Stops and joins the helpers.
  ~AWorkerPool();

  // Starts helpers until `threads` threads (the caller's among them, at most
  // 16) can share a call; never stops any. Starting them ahead of the first
  // call saves their start-up time there.
  void Reserve(unsigned threads);

  // The threads that a call may use now: the helpers started and the caller.
  unsigned Threads();

  // Runs task(0) .. task(count - 1), each once and in any order, on up to
  // `threads` threads (the caller's among them); returns when all have run.
  // While another call runs (or from inside a task) the tasks run on the
  // caller alone. `task` must not throw.
  void ForEach(std::size_t count, unsigned threads, const std::function<void(std::size_t)>& task);

 private:
  struct Job {
    const std::function<void(std::size_t)>* task = nullptr;
    std::size_t count = 0;
    std::atomic<std::size_t> next{0};
    std::atomic<std::size_t> done{0};
    // Helpers that may still join.
    std::atomic<int> seats{0};
  };

  static void Work(Job& job);
  void HelperLoop();

  std::mutex submit_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::vector<std::thread> helpers_;
  std::shared_ptr<Job> job_;
  std::atomic<std::uint64_t> generation_{0};
  std::atomic<bool> stopping_{false};
};

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::AWorkerPool;
}
