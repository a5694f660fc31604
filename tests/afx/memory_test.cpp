// Where the string core gets its memory, what it does with it, and what happens when there is none.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <vlafx/exceptions.h>
#include <vlafx/string.h>

#ifndef _WIN32
#include <support/machinetest.h>
#endif

namespace afxtest {
namespace {

// The current manager while it lives; asserts that all blocks came back. A block that came back holds nothing any more.
class HookedManager final : public IStringManager {
 public:
  HookedManager() : former_(AfxSetStringManager(this)) {}
  ~HookedManager() {
    EXPECT_EQ(AfxSetStringManager(former_), this);
    EXPECT_EQ(open_, 0);
  }
  HookedManager(const HookedManager&) = delete;
  HookedManager& operator=(const HookedManager&) = delete;

  void* Allocate(std::size_t bytes) override {
    requests.push_back(bytes);
    open_ += !fails;
    return fails ? nullptr : std::memset(::operator new(bytes), 0xbd, bytes);
  }
  void Free(void* block, std::size_t bytes) override {
    EXPECT_EQ(static_cast<CStringData*>(block)->pStringMgr, this);
    std::memset(block, 0xbd, bytes);
    --open_;
    ::operator delete(block);
  }

  bool fails = false;
  std::vector<std::size_t> requests;

 private:
  int open_ = 0;
  IStringManager* former_;
};

template <class Char>
class MemoryTest : public testing::Test {};
using CharTypes = testing::Types<char, wchar_t>;
TYPED_TEST_SUITE(MemoryTest, CharTypes);

TYPED_TEST(MemoryTest, GrowsByHalfAtLeastAndReleasesAfterTheCopy) {
  constexpr int kLength = 100'000;
  HookedManager manager;
  CStringT<TypeParam> core;
  int allocated = 0;
  for (int length = 0; length < kLength; ++length) {
    TypeParam* const buffer = core.GetBuffer(length + 1);
    ASSERT_EQ(core.GetLength(), length);
    ASSERT_EQ(buffer[length], TypeParam());
    buffer[length] = TypeParam('x');
    core.ReleaseBufferSetLength(length + 1);
    if (core.GetAllocLength() != allocated) {
      EXPECT_GE(2 * core.GetAllocLength(), 3 * allocated);
      EXPECT_EQ(core.GetAllocLength() % 8, 0);
      allocated = core.GetAllocLength();
    }
  }
  EXPECT_TRUE(std::basic_string<TypeParam>(kLength, TypeParam('x')) == core.GetString());
  EXPECT_LE(manager.requests.size(), 25u);  // log(100000 / 8) to the base of 1.5, and a first block
}

TYPED_TEST(MemoryTest, AsksForTheWholeSizeOfTheLargestText) {
  HookedManager manager;
  manager.fails = true;
  CStringT<TypeParam> core;
  constexpr int kMost = std::numeric_limits<int>::max();
  constexpr std::uint64_t kBytes = sizeof(CStringData) + (std::uint64_t{kMost} + 1) * sizeof(TypeParam);
  for (const int n : {kMost, kMost - 1, kMost - 6}) {
    EXPECT_THROW(core.GetBuffer(n), CMemoryException*);
  }
  // What is more than a 32-bit program can have is not asked for.
  const std::size_t asked = std::in_range<std::size_t>(kBytes) ? 3 : 0;
  EXPECT_EQ(manager.requests, std::vector<std::size_t>(asked, static_cast<std::size_t>(kBytes)));
}

#ifndef _WIN32
template <class Char, class Other>
void expectZerosAfter(const Other* text) {
  CStringT<Char> core, unused;
  core = Char('x');
  core = text;
  unused = text;
  EXPECT_EQ(unused.GetAllocLength(), 0);
  EXPECT_EQ(core.GetLength(), 0);
  EXPECT_GT(core.GetAllocLength(), 0);
  EXPECT_TRUE(std::all_of(core.GetString(), core.GetString() + core.GetAllocLength(), [](Char c) { return c == 0; }));
}

using ConversionTest = support::MachineTest;

TEST_F(ConversionTest, FailureLeavesTheCoreEmptyAndWiped) {
  for (const std::uint64_t call : {1, 2}) {  // the one that measures, the one that converts
    faults().watch();
    faults().fail("MultiByteToWideChar", call, vlplatform::FaultSpan::forEver);
    expectZerosAfter<wchar_t>("secret");
    faults().fail("WideCharToMultiByte", call, vlplatform::FaultSpan::forEver);
    expectZerosAfter<char>(L"secret");
  }
}
#endif

}  // namespace
}  // namespace afxtest
