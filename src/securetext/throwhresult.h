/// The one way in which secure text raises a result.
#ifndef VL_SECURETEXT_THROWHRESULT_H
#define VL_SECURETEXT_THROWHRESULT_H

#include <vlafx/exceptions.h>

namespace vl {

inline constexpr HRESULT kInvalidArgument = static_cast<HRESULT>(0x80070057u);
inline constexpr HRESULT kOutOfMemory = static_cast<HRESULT>(0x8007000Eu);

[[noreturn]] inline void ThrowHresult(HRESULT result) {
  if (result == kOutOfMemory) {
    AfxThrowMemoryException();
  }
  AfxThrowOleException(result);
}

}  // namespace vl

#endif
