/// One-line types for what the platform hands out: owned, moved, released once.
#ifndef VL_FRAME_HANDLE_H
#define VL_FRAME_HANDLE_H

#include <utility>

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
      Release(value_);
    }
    value_ = value;
  }

 private:
  Value value_ = Invalid;
};

/// A module loaded for one call.
using Module = Handle<HMODULE, &FreeLibrary>;

/// An open registry key.
using RegistryKey = Handle<HKEY, &RegCloseKey>;

/// The entry point `name` of `module` as a function of type `Function`, null if there is none.
template <class Function>
Function entryPoint(const Module& module, const char* name) {
  // Through void*: the platform hands out every entry point under one function type.
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(module.get(), name)));
}

}  // namespace vl

#endif
