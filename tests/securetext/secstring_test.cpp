// secstring and its allocator; what they give back is looked at by the wipe proof.
#include <gtest/gtest.h>

#include <cstdint>
#include <type_traits>

#include <vlhostkit/securetext.h>

using Allocator = VL::Framework::secallocator<wchar_t>;

static_assert(std::is_base_of_v<std::allocator<wchar_t>, Allocator>);
static_assert(std::has_virtual_destructor_v<Allocator> && sizeof(Allocator) == sizeof(void*));
static_assert(std::is_same_v<secstring, std::basic_string<wchar_t, std::char_traits<wchar_t>, Allocator>>);
static_assert(std::is_same_v<std::allocator_traits<Allocator>::rebind_alloc<wchar_t>, Allocator>);

TEST(SecString, AllocatorLimits) {
  Allocator allocator;
  EXPECT_EQ(allocator.allocate(0), nullptr);
  allocator.deallocate(nullptr, 0);
  for (const std::size_t count : {std::size_t{0x80000000}, SIZE_MAX / sizeof(wchar_t), SIZE_MAX}) {
    EXPECT_THROW(allocator.deallocate(allocator.allocate(count), count), std::bad_alloc) << count;
  }
}
