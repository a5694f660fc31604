/// Static objects that outlive all others.
#ifndef VLAFX_SRC_FOREVER_H
#define VLAFX_SRC_FOREVER_H

#include <cstddef>
#include <new>

namespace vlafx {

/// The one object of a type, in static storage: made at first use and never destroyed, so that calls at exit still
/// find it.
template <class T>
T& forever() {
  alignas(T) static std::byte storage[sizeof(T)];
  static T* const object = new (storage) T;
  return *object;
}

}  // namespace vlafx

#endif
