/// The library's side of the log channel: tags, and log texts joined at compile time.
///
/// The format that reaches the channel is the record's whole text, name included. Twins and members that share a body
/// join theirs from literals with Text and kText, never by a "%s" for the function's name.
#ifndef VL_FRAME_LOG_H
#define VL_FRAME_LOG_H

#include <cstddef>

#include <txlogu/txlogu.h>

namespace vl {

/// The tag of all families but the registry's.
inline constexpr const wchar_t* kTag = L"txhostkit";

/// A text that can be joined, and be a template argument.
template <std::size_t Size>
struct Text {
  wchar_t chars[Size]{};

  constexpr Text() = default;
  // Literals become texts where one is asked for.
  constexpr Text(const wchar_t (&literal)[Size]) {
    for (std::size_t i = 0; i < Size; ++i) {
      chars[i] = literal[i];
    }
  }
};

template <std::size_t A, std::size_t B>
constexpr Text<A + B - 1> operator+(const Text<A>& a, const Text<B>& b) {
  Text<A + B - 1> joined;
  for (std::size_t i = 0; i < A - 1; ++i) {
    joined.chars[i] = a.chars[i];
  }
  for (std::size_t i = 0; i < B; ++i) {
    joined.chars[A - 1 + i] = b.chars[i];
  }
  return joined;
}

/// The static text of a joined one: kText<Text(L"vlSysGetFixedDrive") + Width::suffix + Text(L" (%d)")>.
template <Text Joined>
inline constexpr const wchar_t* kText = Joined.chars;

}  // namespace vl

#endif
