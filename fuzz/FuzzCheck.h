#pragma once
// The invariant check of the fuzzers: a broken invariant aborts with its
// text, which libFuzzer reports as a crash and keeps the input for.

#include <cstdio>
#include <cstdlib>

#define PPDFORGE_FUZZ_CHECK(condition)                                                  \
  do {                                                                                  \
    if (!(condition)) {                                                                 \
      std::fprintf(stderr, "%s:%d: invariant broken: %s\n", __FILE__, __LINE__, #condition); \
      std::abort();                                                                     \
    }                                                                                   \
  } while (false)
