#include "tools/AHeapPrefaulter.h"

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

}  // namespace

bool AHeapPrefaulter::FaultIn(AArena::Range range) {
  const long pageSize = sysconf(_SC_PAGESIZE);
  if (range.begin == range.end || pageSize <= 0) return false;
  const auto page = static_cast<std::uintptr_t>(pageSize);
  const std::uintptr_t begin = reinterpret_cast<std::uintptr_t>(range.begin) & ~(page - 1);
  const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(range.end) & ~(page - 1);
  if (begin >= end) return false;
  // Populating leaves what the pages hold alone, so memory already cut
  // from the range stays as it is.
  return madvise(reinterpret_cast<void*>(begin), end - begin, MADV_POPULATE_WRITE) == 0;
}

#else

bool AHeapPrefaulter::FaultIn(AArena::Range) { return false; }

#endif

}  // namespace ppdforge
