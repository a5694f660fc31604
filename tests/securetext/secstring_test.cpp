// secstring and its allocator: each block is looked at when it is given back.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

#include <vlhostkit/securetext.h>

namespace {

// The blocks taken while it watches. No memory of its own.
struct Blocks {
  static constexpr std::size_t kMost = 64;
  struct Block {
    const void* memory;
    std::size_t bytes;
  };
  Block taken[kMost]{};
  std::size_t count = 0;
  int released = 0;
  int dirty = 0;
  bool watching = false;

  void take(const void* memory, std::size_t bytes) {
    if (watching && count < kMost) {
      taken[count++] = {memory, bytes};
    }
  }
  void release(const void* memory) {
    for (std::size_t i = 0; i < count; ++i) {
      if (taken[i].memory == memory) {
        const auto* const bytes = static_cast<const unsigned char*>(memory);
        dirty += !std::all_of(bytes, bytes + taken[i].bytes, [](unsigned char byte) { return byte == 0; });
        ++released;
        taken[i] = {};
        return;
      }
    }
  }
};
constinit Blocks blocks;

}  // namespace

// Not inlined: the compiler would take the pair of malloc and delete for a mistake.
[[gnu::noinline]] void* operator new(std::size_t bytes) {
  void* const memory = std::malloc(std::max<std::size_t>(bytes, 1));
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  blocks.take(memory, bytes);
  return memory;
}
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  blocks.release(memory);
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}

namespace securetext {
namespace {

using Allocator = VL::Framework::secallocator<wchar_t>;

static_assert(std::is_base_of_v<std::allocator<wchar_t>, Allocator>);
static_assert(std::has_virtual_destructor_v<Allocator> && sizeof(Allocator) == sizeof(void*));
static_assert(std::is_same_v<secstring, std::basic_string<wchar_t, std::char_traits<wchar_t>, Allocator>>);
static_assert(std::is_same_v<std::allocator_traits<Allocator>::rebind_alloc<wchar_t>, Allocator>);

class SecString : public testing::Test {
 protected:
  SecString() {
    blocks = {};
    blocks.watching = true;
  }
  ~SecString() override { blocks = {}; }
};

// The same search finds what an ordinary string leaves.
TEST_F(SecString, TheLookSeesWhatIsNotWiped) {
  { std::wstring text(100, L's'); }
  EXPECT_EQ(blocks.released, 1);
  EXPECT_EQ(blocks.dirty, 1);
}

TEST_F(SecString, EveryBlockGoesBackZeroed) {
  int grown = 0;
  {
    secstring text;
    for (int i = 0; i < 1000; ++i) {
      text += L's';
    }
    EXPECT_EQ(text, secstring(1000, L's'));
    text.shrink_to_fit();
    text.insert(500, L"inserted where there is no room left for it, so that the text must move to another block");
    secstring moved = std::move(text);
    secstring copy = moved;
    copy = L"s";
    text = std::move(copy);
    moved.swap(text);
    grown = blocks.released;
  }
  EXPECT_GE(grown, 5);
  EXPECT_GT(blocks.released, grown);
  EXPECT_EQ(blocks.dirty, 0);
}

TEST_F(SecString, AllocatorWipesAllItWasAskedFor) {
  Allocator allocator;
  wchar_t* const memory = allocator.allocate(37);
  std::fill(memory, memory + 37, L'x');
  EXPECT_EQ(blocks.taken[0].bytes, 37 * sizeof(wchar_t));
  Allocator(allocator).deallocate(memory, 37);
  EXPECT_EQ(blocks.released, 1);
  EXPECT_EQ(blocks.dirty, 0);
}

TEST_F(SecString, AllocatorLimits) {
  Allocator allocator;
  EXPECT_EQ(allocator.allocate(0), nullptr);
  allocator.deallocate(nullptr, 0);
  for (const std::size_t count : {std::size_t{0x80000000}, SIZE_MAX / sizeof(wchar_t), SIZE_MAX}) {
    EXPECT_THROW(allocator.allocate(count), std::bad_alloc) << count;
  }
  EXPECT_EQ(blocks.count, 0u);
}

}  // namespace
}  // namespace securetext
