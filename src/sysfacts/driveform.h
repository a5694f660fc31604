/// The flat forms of the drive functions: one buffer of two characters and the terminator.
#ifndef VL_SYSFACTS_DRIVEFORM_H
#define VL_SYSFACTS_DRIVEFORM_H

#include <algorithm>

#include "frame/callframe.h"
#include "frame/width.h"

namespace vl {

/// The call of an overload on the caller's buffer, whose text goes in and stays if the overload sets none. `Operation`
/// names the function (`name`) and has the overloads (`call`). Text without a terminator within the capacity ends
/// there.
template <class Operation, class Width, class Char = typename Width::Char>
int callOnBuffer(Char* buffer, DWORD capacity) {
  std::size_t length = 0;  // an end pointer could wrap with the capacity that a generous caller gives
  while (length < capacity && buffer[length] != Char{}) {
    ++length;
  }
  typename Width::String drive(buffer, length);
  const int result = Operation::call(drive);
  if (result != ERROR_SUCCESS) {
    return result;
  }
  if (drive.size() >= capacity) {
    return ERROR_INSUFFICIENT_BUFFER;
  }
  *std::copy(drive.begin(), drive.end(), buffer) = Char{};
  return result;
}

template <class Operation, class Width, class Char = typename Width::Char>
int driveForm(Char* buffer, DWORD* chars) {
  constexpr DWORD kDriveChars = 3;
  static constexpr Text kName = Operation::name + Width::suffix;
  int result = ERROR_SUCCESS;
  const CallFrame frame(kTag, kText<kName + Text(L" (%p,%p)")>, ExitWith(kText<kName + Text(L" (%d)")>, result), buffer,
                        chars);
  if (chars == nullptr) {
    txlogLog(kTag, TXLOG_ERROR, kText<kName + Text(L" Invalid parameter.")>);
    result = ERROR_INVALID_PARAMETER;
    return result;
  }
  if (buffer != nullptr) {
    result = *chars < kDriveChars ? int{ERROR_INSUFFICIENT_BUFFER} : callOnBuffer<Operation, Width>(buffer, *chars);
  }
  *chars = kDriveChars;
  return result;
}

}  // namespace vl

#endif
