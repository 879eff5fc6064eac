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

void* Allocate(std::size_t size, std::size_t alignment) {
  if (regionBegin == nullptr) {
    return alignment <= kAlignment ? std::malloc(size == 0 ? 1 : size)
                                   : std::aligned_alloc(alignment, RoundUp(size == 0 ? 1 : size, alignment));
  }
  size = RoundUp(size == 0 ? 1 : size, kAlignment);
  if (size <= kLargest && alignment <= kAlignment) {
    if (static_cast<std::size_t>(block.end - block.next) < size) {
      char* fresh = Slice(kBlock);
      if (fresh == nullptr) return std::malloc(size);
      block = Block{fresh, fresh + kBlock};
    }
    char* result = block.next;
    block.next += size;
    return result;
  }
  // Slices start at multiples of the default alignment; a stricter one
  // takes up to one alignment more.
  char* slice = Slice(alignment <= kAlignment ? size : size + alignment);
  if (slice == nullptr) return std::aligned_alloc(std::max(alignment, kAlignment), RoundUp(size, alignment));
  return alignment <= kAlignment ? slice : reinterpret_cast<char*>(RoundUp(reinterpret_cast<std::uintptr_t>(slice), alignment));
}

void Release(void* pointer, std::size_t size) {
  if (pointer == nullptr) return;
  if (!InRegion(pointer)) {
    std::free(pointer);
    return;
  }
  // The thread's latest small allocation (a temporary string, a vector
  // that just grew) is taken back; anything else stays until the end.
  auto* bytes = static_cast<char*>(pointer);
  if (size != 0 && bytes + RoundUp(size, kAlignment) == block.next && bytes >= block.end - kBlock) block.next = bytes;
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
