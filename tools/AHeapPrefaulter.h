#pragma once
// A single generation runs for a few milliseconds, and in a virtual machine
// a third of that can go to faulting in fresh heap pages one by one. This
// grows the heap at once and has an idle helper of the pool fault the pages
// in, in steps, while the main thread reads and builds.

#include <cstddef>

#include "core/AWorkerPool.h"

namespace ppdforge {

class AHeapPrefaulter {
 public:
  // Grows the heap by about `bytes` and gives `pool` the idle work of
  // faulting those pages in. Does nothing where the C library or the kernel
  // offer no way to do this safely (another C library, a build with a
  // sanitizer's allocator, kernels before Linux 5.14). Never fails.
  static void Start(AWorkerPool& pool, std::size_t bytes);
};

}  // namespace ppdforge
