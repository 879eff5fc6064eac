#pragma once
// A single generation runs for a few milliseconds, and in a virtual machine
// a third of that can go to faulting fresh pages in one by one. Faulting in
// the pages that the generation will use with one call costs about half as
// much per page.

#include "tools/AArena.h"

namespace ppdforge {

class AHeapPrefaulter {
 public:
  // Faults the pages of `range` in, writable, without changing what they
  // hold. False for an empty range and on kernels before Linux 5.14, which
  // cannot do so; the pages are then faulted in on first use as before.
  static bool FaultIn(AArena::Range range);
};

}  // namespace ppdforge
