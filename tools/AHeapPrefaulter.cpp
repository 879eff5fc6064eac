#include "tools/AHeapPrefaulter.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#if defined(__GLIBC__)
#include <malloc.h>
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace ppdforge {

#if defined(__GLIBC__) && defined(PPDFORGE_TUNED_PROCESS)

namespace {

#ifndef MADV_POPULATE_WRITE
constexpr int MADV_POPULATE_WRITE = 23;
#endif

// Sixteen pages take the helper some 30 us: a call's tasks never wait long.
constexpr std::size_t kStep = 64 << 10;
// The largest request that the C library's settings take.
constexpr std::size_t kLargest = 32 << 20;
// Larger than the heap's first block, so that the heap must grow.
constexpr std::size_t kGrowth = 256 << 10;

int Setting(std::size_t bytes) { return static_cast<int>(std::min(bytes, kLargest)); }

}  // namespace

void AHeapPrefaulter::Start(AWorkerPool& pool, std::size_t bytes) {
  const long pageSize = sysconf(_SC_PAGESIZE);
  if (bytes == 0 || pageSize <= 0) return;
  const auto page = static_cast<std::uintptr_t>(pageSize);
  // Large blocks (the product file's text, the PPD's) come from the heap too,
  // the heap grows by `bytes` at a time, and freed memory is never returned.
  mallopt(M_MMAP_THRESHOLD, Setting(std::max(bytes, kGrowth)));
  mallopt(M_TRIM_THRESHOLD, Setting(4 * bytes));
  mallopt(M_TOP_PAD, Setting(bytes));
  void* block = std::malloc(kGrowth);
  if (block == nullptr) return;
  // The freed block is where the next allocations go.
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(block) & ~(page - 1);
  std::free(block);
  const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(sbrk(0)) & ~(page - 1);
  // A heap that could not grow in place left the block elsewhere.
  if (begin >= end || end - begin > 2 * std::max(bytes, kGrowth)) return;

  pool.SetIdleWork([next = begin, end]() mutable {
    const std::size_t length = std::min<std::uintptr_t>(kStep, end - next);
    // Populating never changes what the pages hold, so the main thread may
    // use them meanwhile; a kernel without it (before 5.14) ends the work.
    if (madvise(reinterpret_cast<void*>(next), length, MADV_POPULATE_WRITE) != 0) return false;
    next += length;
    return next < end;
  });
}

#else

void AHeapPrefaulter::Start(AWorkerPool&, std::size_t) {}

#endif

}  // namespace ppdforge
