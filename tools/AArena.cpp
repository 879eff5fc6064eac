#include "tools/AArena.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

#if defined(PPDFORGE_TUNED_PROCESS)
#include <sys/mman.h>
#endif

namespace ppdforge {

#if defined(PPDFORGE_TUNED_PROCESS)

namespace {

// Address space only: pages are backed when first touched. A generation
// that outgrows it goes on with the C library's allocator.
constexpr std::size_t kRegion = std::size_t{1} << 30;
// Each thread cuts its small allocations from a block of this size; larger
// ones get a slice of their own, so that no block is left mostly unused.
constexpr std::size_t kBlock = 64 << 10;
constexpr std::size_t kLargest = kBlock / 4;
constexpr std::size_t kAlignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

// Set once, before the pool starts its helpers.
char* regionBegin = nullptr;
std::atomic<std::size_t> regionUsed{0};

struct Block {
  char* next = nullptr;
  char* end = nullptr;
};
thread_local Block block;

// Every page that a run does not touch saves a fault, and freed memory is
// mostly asked for again: vectors and strings that grow free the very sizes
// that later ones take. So freed small blocks wait in one list per size,
// and freed large slices (the product file's text, a vector of the model)
// are cut again for later large allocations. The lists are the freeing
// thread's own, so that none of this takes a lock.
thread_local void* freeBySize[kLargest / kAlignment + 1];
struct Span {
  char* begin;
  std::size_t size;
};
constexpr std::size_t kSpans = 16;
thread_local Span spans[kSpans];
thread_local std::size_t spanCount = 0;

std::size_t RoundUp(std::size_t size, std::size_t alignment) { return (size + alignment - 1) & ~(alignment - 1); }

bool InRegion(const void* pointer) {
  const auto* bytes = static_cast<const char*>(pointer);
  return regionBegin != nullptr && bytes >= regionBegin && bytes < regionBegin + kRegion;
}

// A slice of the region, or null when it is used up.
char* Slice(std::size_t size) {
  const std::size_t at = regionUsed.fetch_add(size, std::memory_order_relaxed);
  return at + size <= kRegion ? regionBegin + at : nullptr;
}

// `size` is a multiple of the default alignment, at most kLargest.
void KeepSmall(char* bytes, std::size_t size) {
  void*& head = freeBySize[size / kAlignment];
  *reinterpret_cast<void**>(bytes) = head;
  head = bytes;
}

void Keep(char* bytes, std::size_t size) {
  if (size == 0) return;
  if (size <= kLargest) {
    KeepSmall(bytes, size);
  } else if (spanCount < kSpans) {
    spans[spanCount++] = Span{bytes, size};
  }
}

// The front of the smallest kept span that holds `size` bytes, or null.
char* CutSpan(std::size_t size) {
  std::size_t best = spanCount;
  for (std::size_t i = 0; i < spanCount; ++i) {
    if (spans[i].size >= size && (best == spanCount || spans[i].size < spans[best].size)) best = i;
  }
  if (best == spanCount) return nullptr;
  const Span taken = spans[best];
  spans[best] = spans[--spanCount];
  Keep(taken.begin + size, taken.size - size);
  return taken.begin;
}

void* Allocate(std::size_t size, std::size_t alignment) {
  if (regionBegin == nullptr) {
    return alignment <= kAlignment ? std::malloc(size == 0 ? 1 : size)
                                   : std::aligned_alloc(alignment, RoundUp(size == 0 ? 1 : size, alignment));
  }
  size = RoundUp(size == 0 ? 1 : size, kAlignment);
  if (size <= kLargest && alignment <= kAlignment) {
    void*& head = freeBySize[size / kAlignment];
    if (head != nullptr) {
      void* result = head;
      head = *static_cast<void**>(result);
      return result;
    }
    if (static_cast<std::size_t>(block.end - block.next) < size) {
      char* fresh = Slice(kBlock);
      if (fresh == nullptr) return std::malloc(size);
      Keep(block.next, static_cast<std::size_t>(block.end - block.next));
      block = Block{fresh, fresh + kBlock};
    }
    char* result = block.next;
    block.next += size;
    return result;
  }
  if (alignment <= kAlignment) {
    if (char* kept = CutSpan(size)) return kept;
  }
  // Slices start at multiples of the default alignment; a stricter one
  // takes up to one alignment more (and is never taken back).
  char* slice = Slice(alignment <= kAlignment ? size : size + alignment);
  if (slice == nullptr) return std::aligned_alloc(std::max(alignment, kAlignment), RoundUp(size, alignment));
  return alignment <= kAlignment ? slice : reinterpret_cast<char*>(RoundUp(reinterpret_cast<std::uintptr_t>(slice), alignment));
}

// `size` is what the allocation asked for, or 0 where the caller does not
// tell it (such memory stays unused until the end).
void Release(void* pointer, std::size_t size) {
  if (pointer == nullptr) return;
  if (!InRegion(pointer)) {
    std::free(pointer);
    return;
  }
  if (size == 0) return;
  auto* bytes = static_cast<char*>(pointer);
  size = RoundUp(size, kAlignment);
  // The thread's latest small allocation (a temporary string, a vector
  // that just grew) goes back to its block, where the next one of any size
  // reuses it.
  if (bytes + size == block.next && bytes >= block.end - kBlock) {
    block.next = bytes;
  } else {
    Keep(bytes, size);
  }
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* result = Allocate(size, alignment);
  if (result == nullptr) throw std::bad_alloc();
  return result;
}

}  // namespace

AArena::Range AArena::Start(std::size_t expected) {
  if (regionBegin != nullptr) return {};
  void* region = mmap(nullptr, kRegion, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (region == MAP_FAILED) return {};
  regionBegin = static_cast<char*>(region);
  return Range{regionBegin, regionBegin + std::min(expected, kRegion)};
}

}  // namespace ppdforge

void* operator new(std::size_t size) { return ppdforge::AllocateOrThrow(size, ppdforge::kAlignment); }
void* operator new[](std::size_t size) { return ppdforge::AllocateOrThrow(size, ppdforge::kAlignment); }
void* operator new(std::size_t size, std::align_val_t alignment) {
  return ppdforge::AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
  return ppdforge::AllocateOrThrow(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return ppdforge::Allocate(size, ppdforge::kAlignment);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return ppdforge::Allocate(size, ppdforge::kAlignment);
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return ppdforge::Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
  return ppdforge::Allocate(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* pointer) noexcept { ppdforge::Release(pointer, 0); }
void operator delete[](void* pointer) noexcept { ppdforge::Release(pointer, 0); }
void operator delete(void* pointer, std::size_t size) noexcept { ppdforge::Release(pointer, size); }
void operator delete[](void* pointer, std::size_t size) noexcept { ppdforge::Release(pointer, size); }
void operator delete(void* pointer, std::align_val_t) noexcept { ppdforge::Release(pointer, 0); }
void operator delete[](void* pointer, std::align_val_t) noexcept { ppdforge::Release(pointer, 0); }
void operator delete(void* pointer, std::size_t, std::align_val_t) noexcept { ppdforge::Release(pointer, 0); }
void operator delete[](void* pointer, std::size_t, std::align_val_t) noexcept { ppdforge::Release(pointer, 0); }
void operator delete(void* pointer, const std::nothrow_t&) noexcept { ppdforge::Release(pointer, 0); }
void operator delete[](void* pointer, const std::nothrow_t&) noexcept { ppdforge::Release(pointer, 0); }
void operator delete(void* pointer, std::align_val_t, const std::nothrow_t&) noexcept {
  ppdforge::Release(pointer, 0);
}
void operator delete[](void* pointer, std::align_val_t, const std::nothrow_t&) noexcept {
  ppdforge::Release(pointer, 0);
}

#else

AArena::Range AArena::Start(std::size_t) { return {}; }

}  // namespace ppdforge

#endif
