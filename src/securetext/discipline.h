/// What CSecStr and CSecStrA share: the wipe, the private copy before it, growth over zeros, the end of raw access.
/// One body for both widths, on their string core.
#ifndef VL_SECURETEXT_DISCIPLINE_H
#define VL_SECURETEXT_DISCIPLINE_H

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include <vlhostkit/securestring.h>
#include <vlhostkit/wipe.h>

#include "platform.h"
#include "securetext/throwhresult.h"

namespace vl {

inline void copyText(wchar_t* target, int size, const wchar_t* source) {
  wcscpy_s(target, static_cast<std::size_t>(size), source);
}
inline void copyText(char* target, int size, const char* source) {
  strcpy_s(target, static_cast<std::size_t>(size), source);
}

template <class Char>
std::size_t bytesOf(int chars) {
  return static_cast<std::size_t>(chars) * sizeof(Char);
}

/// The same for what goes to a bounded move: the count must fit a signed 32-bit value.
template <class Char>
std::size_t checkedBytes(std::int64_t chars) {
  const std::int64_t bytes = chars * static_cast<std::int64_t>(sizeof(Char));
  if (chars < 0 || bytes > std::numeric_limits<std::int32_t>::max()) {
    throw msl::utilities::SafeIntException(msl::utilities::SafeIntArithmeticOverflow);
  }
  return static_cast<std::size_t>(bytes);
}

inline int checkedLength(std::int64_t chars) {
  if (chars < 0 || chars > std::numeric_limits<std::int32_t>::max()) {
    throw msl::utilities::SafeIntException(msl::utilities::SafeIntArithmeticOverflow);
  }
  return static_cast<int>(chars);
}

/// A text too long for a core can't be stored anywhere.
template <class Char>
int lengthOf(const Char* text) {
  const std::size_t length = text == nullptr ? 0 : std::char_traits<Char>::length(text);
  if (length >= static_cast<std::size_t>(std::numeric_limits<int>::max())) {
    ThrowHresult(kOutOfMemory);
  }
  return static_cast<int>(length);
}

/// An allocated length of 0 means that there is nothing to wipe: the buffer may be the one that all empty cores share.
template <class Char>
void wipe(CStringT<Char>& core) {
  const int allocated = core.GetAllocLength();
  if (allocated != 0) {
    VL::Framework::wipe(core.GetBuffer(), bytesOf<Char>(allocated));
    core.ReleaseBuffer(0);
  }
}

/// A text of a member's own, wiped at its end: a secure string without the block that its core takes there.
template <class Char>
class Temporary : public CStringT<Char> {
 public:
  Temporary() = default;
  /// The constructors delegate, so that an exception ends a whole object. This one leaves room for one character more,
  /// which is what replace() asks for.
  explicit Temporary(const Char* text) : Temporary() {
    if (const int length = lengthOf(text); length != 0) {
      std::memcpy(this->GetBuffer(length + 1), text, bytesOf<Char>(length));
      this->ReleaseBuffer(length);
    }
  }
  explicit Temporary(const typename CStringT<Char>::YCHAR* text) : Temporary() { CStringT<Char>::operator=(text); }
  Temporary(Temporary&& other) noexcept : Temporary() { this->swap(other); }
  ~Temporary() { wipe<Char>(*this); }
};

/// A counted text with a terminator, in an array that is zeroed at its end. Empty for a length of 0.
template <class Char>
class CountedText {
 public:
  CountedText(const Char* text, int length) : length_(length) {
    if (text == nullptr && length != 0) {
      ThrowHresult(kInvalidArgument);
    }
    if (length < 0) {
      ThrowHresult(kOutOfMemory);
    }
    if (length == 0) {
      return;
    }
    // The array form of new fails for a count whose bytes overflow.
    chars_ = std::make_unique_for_overwrite<Char[]>(static_cast<std::size_t>(length) + 1);
    std::memcpy(chars_.get(), text, bytesOf<Char>(length));
    chars_[static_cast<std::size_t>(length)] = Char{};
  }
  ~CountedText() {
    if (chars_ != nullptr) {
      VL::Framework::wipe(chars_.get(), bytesOf<Char>(length_));
    }
  }
  CountedText(const CountedText&) = delete;
  CountedText& operator=(const CountedText&) = delete;

  /// Null if empty.
  const Char* get() const { return chars_.get(); }

 private:
  int length_;
  std::unique_ptr<Char[]> chars_;
};

/// Wipes the core and gives it the text of `source`, a private copy that its owner wipes. A core that would have to
/// grow takes the buffer of the copy and leaves its own, so that nothing is allocated where the copy has room for one
/// character more.
template <class Char>
void replace(CStringT<Char>& core, CStringT<Char>&& source) {
  wipe(core);
  const int length = lengthOf(source.GetString());
  if (core.GetAllocLength() <= length && source.GetAllocLength() > length) {
    core.swap(source);
  } else {
    std::memcpy(core.GetBuffer(length + 1), source.GetString(), bytesOf<Char>(length));
  }
  core.ReleaseBuffer(length);
}

/// Zeroes what a private copy, which ends at its first NUL, leaves unwritten of `length` characters.
template <class Char>
void fillBehind(Char* buffer, int copied, int length) {
  std::fill(buffer + copied, buffer + std::max(copied, length), Char{});
}

/// Raw access to at least `n` characters; grows over zeros.
template <class Char>
Char* grow(CStringT<Char>& core, int n) {
  const int length = core.GetLength();
  if (n <= core.GetAllocLength()) {
    return core.GetBuffer();
  }
  const Temporary<Char> saved(core.GetString());
  wipe(core);
  Char* const buffer = core.GetBuffer(n);
  const int copied = std::min(length, saved.GetLength());
  std::memcpy(buffer, saved.GetString(), bytesOf<Char>(copied));
  fillBehind(buffer, copied, length);
  core.ReleaseBufferSetLength(length);
  return core.GetBuffer();
}

/// Ends raw access and zeroes everything behind the text.
template <class Char>
void release(CStringT<Char>& core, int n) {
  const int allocated = core.GetAllocLength();
  Char* const buffer = core.GetBuffer();
  if (n < -1) {
    ThrowHresult(kInvalidArgument);
  }
  if (n == -1) {
    // Never past the allocation, also where a caller has filled all of it.
    const Char* const end = std::char_traits<Char>::find(buffer, static_cast<std::size_t>(allocated), Char{});
    n = end != nullptr ? static_cast<int>(end - buffer) : allocated;
  }
  if (n > allocated) {
    ThrowHresult(kInvalidArgument);
  }
  if (allocated > n) {
    VL::Framework::wipe(buffer + n, bytesOf<Char>(allocated - n));
  }
  core.ReleaseBuffer(n);
}

/// Inserts `text`, which may lie inside the core's own. Gives the new length.
template <class Char>
int insert(CStringT<Char>& core, int index, const Char* text) {
  const Temporary<Char> saved(core.GetString());
  const Temporary<Char> inserted(text);
  const int length = core.GetLength();
  const int count = inserted.GetLength();
  if (count == 0) {
    return length;
  }
  const int at = std::clamp(index, 0, length);
  const int whole = checkedLength(static_cast<std::int64_t>(length) + count);
  const std::size_t tail = checkedBytes<Char>(static_cast<std::int64_t>(whole) - at - count);
  const std::size_t room = checkedBytes<Char>(static_cast<std::int64_t>(whole) - at);
  const std::size_t bytes = checkedBytes<Char>(count);
  wipe(core);
  Char* const buffer = core.GetBuffer(whole);
  copyText(buffer, whole, saved.GetString());
  fillBehind(buffer, saved.GetLength(), length);
  memmove_s(buffer + at + count, tail, buffer + at, tail);
  memcpy_s(buffer + at, room, inserted.GetString(), bytes);
  core.ReleaseBuffer(whole);
  return core.GetLength();
}

/// Reports the null text of Append to the runtime.
inline void reportNullText() {
  errno = EINVAL;
  _invalid_parameter(nullptr, nullptr, nullptr, 0, 0);
}

}  // namespace vl

#endif
