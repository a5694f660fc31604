/// Looks at the memory of string cores.
#ifndef SECURETEXT_WATCHEDMANAGER_H
#define SECURETEXT_WATCHEDMANAGER_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <functional>
#include <new>

#include <vlafx/stringmgr.h>

namespace securetext {

inline constexpr unsigned char kFill = 0xa5;

/// The header of the buffer that `text` stands in.
template <class Char>
const CStringData& headerOf(const Char* text) {
  return *(reinterpret_cast<const CStringData*>(text) - 1);
}

/// Whether the characters from `first` up to the allocated length are all NUL.
template <class Char>
bool zeroFrom(const Char* text, int first) {
  const Char* const end = text + headerOf(text).nAllocLength;
  return std::all_of(text + first, std::max(text + first, end), [](Char c) { return c == Char{}; });
}

/// While one lives, new buffers come from it: filled with kFill, and looked at when they are given back. All buffers
/// that were made in its time must end in it.
class WatchedManager final : public IStringManager {
 public:
  WatchedManager() : former_(AfxSetStringManager(this)) {}
  ~WatchedManager() { AfxSetStringManager(former_); }
  WatchedManager(const WatchedManager&) = delete;
  WatchedManager& operator=(const WatchedManager&) = delete;

  void* Allocate(std::size_t bytes) override {
    if (onAllocate) {
      onAllocate();
    }
    void* const block = ::operator new(bytes, std::nothrow);
    if (block != nullptr) {
      std::memset(block, kFill, bytes);
      ++open_;
    }
    return block;
  }
  void Free(void* block, std::size_t bytes) override {
    const CStringData& header = *static_cast<const CStringData*>(block);
    const auto slots = static_cast<std::size_t>(header.nAllocLength) + 1;
    const std::size_t size = (bytes - sizeof header) / slots;
    const auto* const chars = reinterpret_cast<const unsigned char*>(&header + 1);
    dirty_ += !std::all_of(chars, chars + (slots - 1) * size, [](unsigned char byte) { return byte == 0; });
    --open_;
    ::operator delete(block);
  }

  /// Nothing is left, and everything was given back full of zeros.
  bool clean() const { return open_ == 0 && dirty_ == 0; }
  /// Blocks given back with something in them.
  int dirty() const { return dirty_; }

  std::function<void()> onAllocate;

 private:
  IStringManager* former_;
  int open_ = 0;
  int dirty_ = 0;
};

}  // namespace securetext

#endif
