#pragma once
// The tool's allocator for a single generation. A generation allocates some
// ten thousand small objects and frees few of them before the process ends;
// the C library's allocator spends a sixth of the run on that. Once started,
// every C++ allocation of the process is cut from one reserved region, each
// thread from a block of its own. Freed memory is reused by the freeing
// thread for allocations of the same size (or, when large, of any smaller
// size), and the region goes with the process. Programs that never start it
// (batch mode, the tests, sanitizer builds, where it is not compiled in)
// allocate as usual.

#include <cstddef>

namespace ppdforge {

class AArena {
 public:
  struct Range {
    char* begin = nullptr;
    char* end = nullptr;
  };

  // Starts cutting allocations from a fresh region and returns its first
  // `expected` bytes (the part worth faulting in ahead of use); an empty
  // range where the region cannot be reserved or the arena is not compiled
  // in. Call once, before any other thread allocates; never fails.
  static Range Start(std::size_t expected);
};

}  // namespace ppdforge
