#include <memoryscan/memoryscan.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace memoryscan {
namespace {

// Out of the optimiser's sight: what is written before is there when a scan runs.
void keep(void* memory) {
  __asm__ __volatile__("" : : "r"(memory) : "memory");
}

template <class Char>
class MemoryScanTest : public testing::Test {};
using Widths = testing::Types<char, char16_t, char32_t, wchar_t>;
TYPED_TEST_SUITE(MemoryScanTest, Widths);

TYPED_TEST(MemoryScanTest, FindsTheTextInEveryKindOfMemoryAndNothingAfterwards) {
  static TypeParam data[Secret::kLength];
  thread_local TypeParam ofThread[Secret::kLength];
  TypeParam stack[Secret::kLength];
  const auto heap = std::make_unique<TypeParam[]>(Secret::kLength);
  const auto large = std::make_unique<TypeParam[]>(1 << 20);
  const Secret secret;
  for (TypeParam* const place : {data, ofThread, stack, heap.get(), large.get() + 1000}) {
    secret.reveal(place);
    keep(place);
    const ScanResult alive = scanMemory(secret);
    EXPECT_EQ(alive.count, 1u) << testing::PrintToString(alive);
    EXPECT_EQ(alive.first[0].address, place);
    EXPECT_EQ(alive.first[0].characters, Secret::kLength);
    EXPECT_EQ(alive.first[0].width, sizeof(TypeParam));
    std::memset(place, 0, Secret::kLength * sizeof(TypeParam));
    keep(place);
    const ScanResult gone = scanMemory(secret);
    EXPECT_EQ(gone.count, 0u) << testing::PrintToString(gone);
  }
}

TYPED_TEST(MemoryScanTest, FindsAWindowAtAnyPlaceButNothingShorter) {
  constexpr std::size_t kBytes = Secret::kWindow * sizeof(TypeParam);
  const Secret secret;
  const auto block = std::make_unique<unsigned char[]>(1024);
  for (std::size_t from = 0; from + Secret::kWindow <= Secret::kLength; ++from) {
    Revealed<TypeParam> text(secret);
    std::memcpy(block.get() + 100 + from, text.get() + from, kBytes);
    EXPECT_TRUE(secret.isIn(block.get(), 1024)) << from;
    EXPECT_TRUE(secret.isIn(block.get() + 100 + from, kBytes)) << from;
    EXPECT_FALSE(secret.isIn(block.get() + 100 + from, kBytes - 1)) << from;
    EXPECT_FALSE(secret.isIn(block.get() + 100 + from + sizeof(TypeParam), 900)) << from;
    block[100 + from] ^= 0x80;
    EXPECT_FALSE(secret.isIn(block.get(), 1024)) << from;
    std::memset(block.get(), 0, 1024);
  }
}

// A frame that ends without wiping, deep enough for the search not to overwrite it.
[[gnu::noinline]] void leaveOnStack(const Secret& secret) {
  wchar_t text[16 * 1024];
  secret.reveal(text);
  keep(text);
}

TEST(MemoryScan, ScrubbingReachesTheDeadStackOnly) {
  const Secret secret;
  Revealed<char> inUse(secret);
  keep(inUse.get());
  leaveOnStack(secret);
#ifndef __SANITIZE_ADDRESS__  // its frames don't stand on the stack
  EXPECT_EQ(scanDeadStack(secret).count, 1u);
#endif
  scrubDeadStack();
  EXPECT_EQ(scanDeadStack(secret).count, 0u);
#ifndef __SANITIZE_ADDRESS__
  const ScanResult result = scanMemory(secret);
  EXPECT_EQ(result.count, 1u) << testing::PrintToString(result);
  EXPECT_EQ(result.first[0].address, inUse.get());
#endif
}

}  // namespace
}  // namespace memoryscan
