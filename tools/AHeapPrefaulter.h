#pragma once
// A single generation runs for a few milliseconds, and in a virtual machine
// a third of that can go to faulting in fresh pages one by one. An idle
// helper of the pool faults the pages that the generation will use in, in
// steps, while the main thread reads and builds.

#include "core/AWorkerPool.h"
#include "tools/AArena.h"

namespace ppdforge {

class AHeapPrefaulter {
 public:
  // Gives `pool` the idle work of faulting the pages of `range` in (the
  // start of the tool's arena). Does nothing for an empty range, or on
  // kernels before Linux 5.14, which cannot populate pages without
  // changing what they hold. Never fails.
  static void Start(AWorkerPool& pool, AArena::Range range);
};

}  // namespace ppdforge
