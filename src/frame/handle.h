/// One-line types for what the platform hands out: owned, moved, released once. A release leaves the thread's
/// last-error value as it was, so that a failure's reason outlives the clean-up.
#ifndef VL_FRAME_HANDLE_H
#define VL_FRAME_HANDLE_H

#include <cstdlib>
#include <utility>

#include "frame/lasterror.h"
#include "platform.h"

namespace vl {

/// Owns a value of the platform and releases it with `Release`. `Invalid` is the value that owns nothing.
template <class Value, auto Release, Value Invalid = Value{}>
class Handle {
 public:
  Handle() = default;
  explicit Handle(Value value) : value_(value) {}
  Handle(Handle&& other) noexcept : value_(std::exchange(other.value_, Invalid)) {}
  Handle& operator=(Handle&& other) noexcept {
    if (this != &other) {
      reset(std::exchange(other.value_, Invalid));
    }
    return *this;
  }
  ~Handle() { reset(); }

  explicit operator bool() const { return value_ != Invalid; }
  Value get() const { return value_; }
  /// Where a platform function stores a new value; what was owned is released first.
  Value* put() {
    reset();
    return &value_;
  }
  void reset(Value value = Invalid) {
    if (value_ != Invalid) {
      const LastErrorGuard lastError;
      Release(value_);
    }
    value_ = value;
  }
  /// Gives the value away: the caller releases it.
  Value release() { return std::exchange(value_, Invalid); }

 private:
  Value value_ = Invalid;
};

/// A module loaded for one call.
using Module = Handle<HMODULE, &FreeLibrary>;

/// What is opened and closed.
using RegistryKey = Handle<HKEY, &RegCloseKey>;
using Token = Handle<HANDLE, &CloseHandle>;
using Policy = Handle<LSA_HANDLE, &LsaClose>;

template <class Pointer>
void freeHeap(Pointer block) {
  HeapFree(GetProcessHeap(), 0, block);
}
template <class Pointer>
void freeLocal(Pointer block) {
  LocalFree(block);
}
template <class Pointer>
void freeLsa(Pointer block) {
  LsaFreeMemory(block);
}
template <class Pointer>
void freeSession(Pointer block) {
  WTSFreeMemory(block);
}
template <class Pointer>
void freeRuntime(Pointer block) {
  std::free(block);
}

/// Memory, named by where it comes from: the process heap, LocalAlloc, the security authority, the session queries,
/// and the runtime's calloc.
template <class Pointer>
using HeapBlock = Handle<Pointer, &freeHeap<Pointer>>;
template <class Pointer>
using LocalBlock = Handle<Pointer, &freeLocal<Pointer>>;
template <class Pointer>
using LsaBlock = Handle<Pointer, &freeLsa<Pointer>>;
template <class Pointer>
using SessionBlock = Handle<Pointer, &freeSession<Pointer>>;
template <class Pointer>
using RuntimeBlock = Handle<Pointer, &freeRuntime<Pointer>>;

/// The entry point `name` of `module` as a function of type `Function`, null if there is none, or no module.
template <class Function>
Function entryPoint(HMODULE module, const char* name) {
  // Through void*: the platform hands out every entry point under one function type.
  return module == nullptr ? nullptr
                           : reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module, name)));
}
template <class Function>
Function entryPoint(const Module& module, const char* name) {
  return entryPoint<Function>(module.get(), name);
}

}  // namespace vl

#endif
