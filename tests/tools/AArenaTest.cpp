// The tool's arena, in a test program of its own: once started, it serves
// every allocation of the process, this test's and GoogleTest's included.

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <new>
#include <random>
#include <thread>
#include <vector>

#include "tools/AArena.h"

namespace ppdforge {
namespace {

constexpr std::size_t kExpected = 1 << 20;
AArena::Range started;

// Freed pointers are compared as numbers: using them is undefined.
std::uintptr_t Address(const void* pointer) { return reinterpret_cast<std::uintptr_t>(pointer); }

bool InStarted(const void* pointer) {
  const auto* bytes = static_cast<const char*>(pointer);
  return bytes >= started.begin && bytes < started.begin + (std::size_t{1} << 30);
}

TEST(AArenaTest, StartsOnceWithTheExpectedRange) {
  ASSERT_NE(started.begin, nullptr);
  EXPECT_EQ(started.end - started.begin, static_cast<std::ptrdiff_t>(kExpected));
  const AArena::Range again = AArena::Start(kExpected);
  EXPECT_EQ(again.begin, nullptr);
  EXPECT_EQ(again.end, nullptr);
  void* pointer = ::operator new(100);
  EXPECT_TRUE(InStarted(pointer));
  ::operator delete(pointer, 100);
}

TEST(AArenaTest, AFreedBlockIsReusedForItsSizeOnly) {
  // Sizes that nothing else in this program frees.
  void* freed = ::operator new(4048);
  void* later = ::operator new(4048);  // so that `freed` is not the latest
  const std::uintptr_t freedAt = Address(freed);
  ::operator delete(freed, 4048);
  void* other = ::operator new(4064);
  EXPECT_NE(Address(other), freedAt);
  void* again = ::operator new(4040);  // rounds up to the same size
  EXPECT_EQ(Address(again), freedAt);
  ::operator delete(later, 4048);
  ::operator delete(other, 4064);
  ::operator delete(again, 4040);
}

TEST(AArenaTest, TheLatestAllocationGoesBackToItsBlock) {
  void* first = ::operator new(12272);
  const std::uintptr_t firstAt = Address(first);
  ::operator delete(first, 12272);
  void* second = ::operator new(11984);  // any size, from the same place
  EXPECT_EQ(Address(second), firstAt);
  ::operator delete(second, 11984);
}

TEST(AArenaTest, AFreedLargeSliceIsCutForSmallerLargeAllocations) {
  constexpr std::size_t kLarge = 100 << 10;
  constexpr std::size_t kPart = 40 << 10;
  void* large = ::operator new(kLarge);
  const std::uintptr_t largeAt = Address(large);
  ::operator delete(large, kLarge);
  void* first = ::operator new(kPart);
  void* second = ::operator new(kPart);
  EXPECT_EQ(Address(first), largeAt);
  EXPECT_EQ(Address(second), largeAt + kPart);
  // The last 20 KB stay for later, too few for a third.
  void* third = ::operator new(kPart);
  EXPECT_TRUE(Address(third) < largeAt || Address(third) >= largeAt + kLarge);
  for (void* pointer : {first, second, third}) ::operator delete(pointer, kPart);
}

TEST(AArenaTest, StricterAlignmentsAreKept) {
  for (const std::size_t alignment : {32, 64, 4096}) {
    void* pointer = ::operator new(24, std::align_val_t{alignment});
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pointer) % alignment, 0u) << alignment;
    ::operator delete(pointer, 24, std::align_val_t{alignment});
  }
}

// Random sizes across the small, the large and the split cases, freed in
// random order: no live block may overlap another or lose its contents.
void Churn(unsigned seed, int rounds) {
  std::mt19937 random(seed);
  std::map<char*, std::size_t> live;
  const auto fill = [](char* bytes, std::size_t size) {
    std::memset(bytes, static_cast<int>(reinterpret_cast<std::uintptr_t>(bytes) >> 4 & 0xff), size);
  };
  const auto intact = [](const char* bytes, std::size_t size) {
    const auto expected = static_cast<char>(reinterpret_cast<std::uintptr_t>(bytes) >> 4 & 0xff);
    for (std::size_t i = 0; i < size; ++i) {
      if (bytes[i] != expected) return false;
    }
    return true;
  };
  for (int round = 0; round < rounds; ++round) {
    if (!live.empty() && random() % 3 == 0) {
      auto it = live.begin();
      std::advance(it, static_cast<long>(random() % live.size()));
      ASSERT_TRUE(intact(it->first, it->second)) << "round " << round;
      ::operator delete(it->first, it->second);
      live.erase(it);
      continue;
    }
    const std::size_t size = random() % 8 == 0 ? 1 + random() % 100000 : 1 + random() % 600;
    auto* bytes = static_cast<char*>(::operator new(size));
    auto after = live.lower_bound(bytes);
    ASSERT_TRUE(after == live.end() || bytes + size <= after->first) << "round " << round;
    if (after != live.begin()) {
      const auto before = std::prev(after);
      ASSERT_LE(before->first + before->second, bytes) << "round " << round;
    }
    fill(bytes, size);
    live.emplace(bytes, size);
  }
  for (const auto& [bytes, size] : live) {
    EXPECT_TRUE(intact(bytes, size));
    ::operator delete(bytes, size);
  }
}

TEST(AArenaTest, LiveBlocksNeverOverlap) { Churn(1, 20000); }

TEST(AArenaTest, ThreadsFreeingEachOthersBlocksNeverOverlap) {
  std::vector<void*> handedOver;
  for (int i = 0; i < 2000; ++i) handedOver.push_back(::operator new(16 + i % 200));
  std::thread other([&handedOver] {
    for (std::size_t i = 0; i < handedOver.size(); ++i) ::operator delete(handedOver[i], 16 + i % 200);
    Churn(2, 5000);
  });
  Churn(3, 5000);
  other.join();
}

}  // namespace
}  // namespace ppdforge

int main(int argc, char** argv) {
  ppdforge::started = ppdforge::AArena::Start(ppdforge::kExpected);
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
