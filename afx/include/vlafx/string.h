/// The string core under the secure strings.
#ifndef VLAFX_STRING_H
#define VLAFX_STRING_H

#include <type_traits>

#include <vlafx/simplestring.h>
#include <vlhostkit/types.h>

/// CSimpleStringT with the operations of a string class. None of them copies text outside the buffer of the core. A
/// null text counts as empty everywhere, but for Compare and CompareNoCase, which throw CInvalidArgException*.
///
/// White space is U+0009 to U+000D and the space, in wide text also U+0085, U+00A0 and the other blanks of Unicode.
///
/// Case is folded character by character, so lengths never change. Wide text: by the platform's own table for all of
/// the basic plane (CharUpperW and CharLowerW), whatever locale the program has set. Narrow text: the letters A to Z
/// only, since a byte beyond them is not always a character.
template <class Char>
class CStringT : public CSimpleStringT<Char> {
 public:
  using typename CSimpleStringT<Char>::XCHAR;
  using typename CSimpleStringT<Char>::PCXSTR;
  /// The other width.
  using YCHAR = std::conditional_t<std::is_same_v<Char, char>, wchar_t, char>;

  CStringT() noexcept = default;

  /// Replaces the text; `text` may lie in this buffer, which is kept if it is large enough.
  CStringT& operator=(PCXSTR text) {
    this->SetString(text);
    return *this;
  }
  /// Replace the text. The second one converts between the process's ANSI code page and wide text, from buffer to
  /// buffer; what has no counterpart becomes the replacement character. If the platform's conversion fails, the core is
  /// left empty, with the whole buffer zeroed.
  VLAFX_API CStringT& operator=(XCHAR character);
  VLAFX_API CStringT& operator=(const YCHAR* text);

  /// Index of the first occurrence at or after `start`, -1 if there is none, or if `start` is beyond the length or
  /// negative. The empty text is found at `start`. All of the length is searched, past a NUL also.
  VLAFX_API int Find(XCHAR character, int start = 0) const;
  VLAFX_API int Find(PCXSTR text, int start = 0) const;
  VLAFX_API int ReverseFind(XCHAR character) const;

  /// 0 if equal, negative if this text sorts first, positive if after; by the characters' numbers, those of the lower
  /// case in CompareNoCase. Both texts end at their first NUL.
  VLAFX_API int Compare(PCXSTR text) const;
  VLAFX_API int CompareNoCase(PCXSTR text) const;

  /// In place; what a shorter text leaves behind its terminator stays in the buffer. Remove returns how many went.
  VLAFX_API int Remove(XCHAR character);
  VLAFX_API CStringT& MakeUpper();
  VLAFX_API CStringT& MakeLower();
  VLAFX_API CStringT& TrimRight();
  VLAFX_API CStringT& TrimRight(XCHAR character);
  VLAFX_API CStringT& TrimLeft();
  VLAFX_API CStringT& TrimLeft(XCHAR character);

  /// Fills the core with the string resource `id` of `module`, straight from the module. 0 if there is none, with the
  /// text as it was; nonzero otherwise. Wide text only.
  VLAFX_API BOOL LoadStringW(HINSTANCE module, UINT id) requires std::is_same_v<Char, wchar_t>;
};

#endif
