// Where the string core gets its memory, what it does with it, and what happens when there is none.
#include <vlhostkit/types.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "core.h"

#ifndef _WIN32
#include <support/machinetest.h>
#endif

namespace afxtest {
namespace {

template <class Char>
constexpr std::uint64_t bytesFor(std::uint64_t length) {
  return sizeof(CStringData) + (length + 1) * sizeof(Char);
}

template <class Char>
class MemoryTest : public testing::Test {};
TYPED_TEST_SUITE(MemoryTest, CharTypes);

TYPED_TEST(MemoryTest, GrowsByHalfAtLeastAndReleasesAfterTheCopy) {
  constexpr int kLength = 100'000;
  const TypeParam x = TypeParam('x');
  HookedManager manager;
  std::size_t moves = 0;
  manager.onFree = [&](const void* block, std::size_t bytes) {
    const auto* const left = static_cast<const CStringData*>(block);
    EXPECT_EQ(left->pStringMgr, &manager);
    EXPECT_EQ(left->nRefs, 1);
    EXPECT_EQ(bytes, bytesFor<TypeParam>(static_cast<std::uint64_t>(left->nAllocLength)));
    // Given back as it is, and only when the block that follows it holds the text.
    const std::basic_string<TypeParam> expected(static_cast<std::size_t>(left->nDataLength), x);
    EXPECT_TRUE(expected == reinterpret_cast<const TypeParam*>(left + 1));
    EXPECT_TRUE(expected == reinterpret_cast<const TypeParam*>(static_cast<const CStringData*>(manager.latest) + 1));
    ++moves;
  };
  {
    CStringT<TypeParam> core;
    int allocated = 0;
    for (int length = 0; length < kLength; ++length) {
      core.GetBuffer(length + 1)[length] = x;
      ASSERT_EQ(core.GetLength(), length);
      core.ReleaseBufferSetLength(length + 1);
      if (core.GetAllocLength() != allocated) {
        EXPECT_GE(2 * core.GetAllocLength(), 3 * allocated);
        EXPECT_EQ(core.GetAllocLength() % 8, 0);
        allocated = core.GetAllocLength();
      }
    }
    EXPECT_TRUE(text(core) == std::basic_string<TypeParam>(kLength, x));
  }
  EXPECT_LE(manager.requests.size(), 25u);  // log(100000 / 8) to the base of 1.5, and a first block
  EXPECT_EQ(moves, manager.requests.size());
}

TYPED_TEST(MemoryTest, AsksForTheWholeSizeOfTheLargestText) {
  HookedManager manager;
  CStringT<TypeParam> core;
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr std::uint64_t kBytes = bytesFor<TypeParam>(kMost);
  for (const int n : {kMost, kMost - 1, kMost - 6}) {
    manager.onAllocate = [] { return false; };
    EXPECT_TRUE(throws<CMemoryException>([&] { core.GetBuffer(n); }));
    if (std::in_range<std::size_t>(kBytes)) {
      EXPECT_EQ(manager.requests.back(), kBytes) << n;
    } else {
      EXPECT_TRUE(manager.requests.empty()) << "more than a 32-bit program can have, and asked for";
    }
  }
}

#ifndef _WIN32

class ConversionTest : public support::MachineTest {};

template <class Char>
void expectZeros(const CStringT<Char>& core) {
  EXPECT_EQ(core.GetLength(), 0);
  EXPECT_TRUE(std::all_of(core.GetString(), core.GetString() + core.GetAllocLength(), [](Char c) { return c == 0; }));
}

TEST_F(ConversionTest, FailureLeavesTheCoreEmptyAndWiped) {
  for (const int call : {1, 2}) {  // the one that measures, the one that converts
    CStringT<wchar_t> wide;
    wide = L"something from before";
    faults().fail("MultiByteToWideChar", static_cast<std::uint64_t>(call));
    wide = "secret";
    expectZeros(wide);
    EXPECT_GT(wide.GetAllocLength(), 0);
    CStringT<char> narrow;
    narrow = "something from before";
    faults().fail("WideCharToMultiByte", static_cast<std::uint64_t>(call));
    narrow = L"secret";
    expectZeros(narrow);
  }
  CStringT<wchar_t> unused;
  faults().fail("MultiByteToWideChar");
  unused = "secret";
  EXPECT_EQ(unused.GetAllocLength(), 0);
}

#endif

}  // namespace
}  // namespace afxtest
