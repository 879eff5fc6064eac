#pragma once
// A single generation runs for a few milliseconds, and in a virtual machine
// a third of that can go to faulting in fresh pages one by one. An idle
// helper of the worker pool faults the pages that the generation will use
// in, in steps, while the main thread reads and builds.

#include <functional>

#include "tools/AArena.h"

namespace ppdforge {

class AHeapPrefaulter {
 public:
  // The idle work (AWorkerPool::SetIdleWork) of faulting the pages of
  // `range` in: each call faults some in and tells whether any are left.
  // Empty for an empty range. On kernels before Linux 5.14, which cannot
  // populate pages without changing what they hold, the first call ends it.
  static std::function<bool()> Steps(AArena::Range range);
};

}  // namespace ppdforge
