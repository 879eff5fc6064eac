#include "tools/AHeapPrefaulter.h"

#include <algorithm>
#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace ppdforge {

#if defined(__linux__)

namespace {

#ifndef MADV_POPULATE_WRITE
constexpr int MADV_POPULATE_WRITE = 23;
#endif

// Sixteen pages take the helper some 30 us: a call's tasks never wait long.
constexpr std::uintptr_t kStep = 64 << 10;

}  // namespace

std::function<bool()> AHeapPrefaulter::Steps(AArena::Range range) {
  const long pageSize = sysconf(_SC_PAGESIZE);
  if (range.begin == range.end || pageSize <= 0) return {};
  const auto page = static_cast<std::uintptr_t>(pageSize);
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(range.begin) & ~(page - 1);
  const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(range.end) & ~(page - 1);
  if (begin >= end) return {};
  return [next = begin, end]() mutable {
    const std::size_t length = std::min(kStep, end - next);
    // Populating never changes what the pages hold, so the main thread may
    // use them meanwhile; a kernel without it (before 5.14) ends the work.
    if (madvise(reinterpret_cast<void*>(next), length, MADV_POPULATE_WRITE) != 0) return false;
    next += length;
    return next < end;
  };
}

#else

std::function<bool()> AHeapPrefaulter::Steps(AArena::Range) { return {}; }

#endif

}  // namespace ppdforge
