/// `secstring`, the standard wide string on an allocator that wipes what it gives back.
#ifndef VLHOSTKIT_SECSTRING_H
#define VLHOSTKIT_SECSTRING_H

#include <cstddef>
#include <memory>
#include <new>
#include <string>

#include <vlhostkit/wipe.h>

namespace VL::Framework {

/// std::allocator whose `deallocate` zeroes the whole block before it releases it. Objects have no state: any two are
/// equal, and a block may be given back through another one.
template <class T>
class secallocator : public std::allocator<T> {
 public:
  /// Made, copied and converted without a state to take along.
  secallocator() = default;
  secallocator(const secallocator&) = default;
  secallocator& operator=(const secallocator&) = default;
  template <class U>
  secallocator(const secallocator<U>& other) noexcept : std::allocator<T>(other) {}
  virtual ~secallocator() = default;

  /// 0 elements give a null pointer. Throws std::bad_alloc for more than 0x7FFFFFFF elements, or out of memory.
  T* allocate(std::size_t count) {
    constexpr std::size_t kMost = 0x7FFFFFFF;
    if (count == 0) {
      return nullptr;
    }
    if (count > kMost) {
      throw std::bad_alloc();
    }
    return static_cast<T*>(::operator new(count * sizeof(T)));
  }

  /// `count` is that of `allocate`. A null pointer is ignored.
  void deallocate(T* block, std::size_t count) noexcept {
    if (block != nullptr) {
      wipe(block, count * sizeof(T));
      ::operator delete(block);
    }
  }
};

/// Every heap block that a secstring lets go of is zeroed over its whole capacity, at its end and when it grows. Text
/// short enough to stand in the object itself (3 characters with a 4-byte wchar_t, 7 with a 2-byte one) does not pass
/// through the allocator and is not wiped.
using secstring = std::basic_string<wchar_t, std::char_traits<wchar_t>, secallocator<wchar_t>>;

}  // namespace VL::Framework

using VL::Framework::secstring;

#endif
