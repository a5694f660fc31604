#include <vlafx/string.h>

#include <algorithm>
#include <cstring>
#include <cwchar>
#include <limits>
#include <string>
#include <string_view>

#include <vlafx/exceptions.h>
#include <vlhostkit/wipe.h>

#include "charclass.h"
#include "textlength.h"

namespace {

template <class Char>
std::basic_string_view<Char> view(const CSimpleStringT<Char>& core) {
  return {core.GetString(), static_cast<std::size_t>(core.GetLength())};
}

constexpr int indexOf(std::size_t found) {
  return found != std::string_view::npos ? static_cast<int>(found) : -1;
}

// 0 if the platform fails; with a capacity of 0 the size that is needed.
int convert(const char* text, int length, wchar_t* buffer, int capacity) {
  return MultiByteToWideChar(CP_ACP, 0, text, length, buffer, capacity);
}
int convert(const wchar_t* text, int length, char* buffer, int capacity) {
  return WideCharToMultiByte(CP_ACP, 0, text, length, buffer, capacity, nullptr, nullptr);
}

int compare(const char* a, const char* b) {
  return std::strcmp(a, b);
}
int compare(const wchar_t* a, const wchar_t* b) {
  return std::wcscmp(a, b);
}

template <class Char>
void requireText(const Char* text) {
  if (text == nullptr) {
    AfxThrowInvalidArgException();
  }
}

template <class Char>
std::make_unsigned_t<Char> number(Char character) {
  return static_cast<std::make_unsigned_t<Char>>(character);
}

template <class Core, class Predicate>
void trimRight(Core& core, Predicate drops) {
  int length = core.GetLength();
  while (length > 0 && drops(core.GetString()[length - 1])) {
    --length;
  }
  core.ReleaseBufferSetLength(length);
}

template <class Core, class Predicate>
void trimLeft(Core& core, Predicate drops) {
  const int length = core.GetLength();
  int first = 0;
  while (first < length && drops(core.GetString()[first])) {
    ++first;
  }
  if (first != 0) {
    core.SetString(core.GetString() + first, length - first);
  }
}

template <class Char, class Map>
void mapInPlace(CSimpleStringT<Char>& core, Map map) {
  Char* const text = core.GetBuffer();
  std::transform(text, text + core.GetLength(), text, map);
}

}  // namespace

template <class Char>
CStringT<Char>& CStringT<Char>::operator=(XCHAR character) {
  this->SetString(&character, character != Char() ? 1 : 0);
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::operator=(const YCHAR* text) {
  const int length = vlafx::lengthOf(text);
  if (length == 0) {
    this->setLength(0);
    return *this;
  }
  int converted = convert(text, length, nullptr, 0);
  if (converted > 0) {
    Char* const buffer = this->GetBuffer(converted);
    converted = convert(text, length, buffer, converted);
  }
  if (converted > 0) {
    this->setLength(converted);
  } else {
    VL::Framework::wipe(this->GetBuffer(), static_cast<std::size_t>(this->GetAllocLength()) * sizeof(Char));
    this->setLength(0);
  }
  return *this;
}

template <class Char>
int CStringT<Char>::Find(XCHAR character, int start) const {
  return start >= 0 ? indexOf(view(*this).find(character, static_cast<std::size_t>(start))) : -1;
}

template <class Char>
int CStringT<Char>::Find(PCXSTR text, int start) const {
  static constexpr Char kNothing[1] = {};
  return start >= 0 ? indexOf(view(*this).find(text != nullptr ? text : kNothing, static_cast<std::size_t>(start)))
                    : -1;
}

template <class Char>
int CStringT<Char>::ReverseFind(XCHAR character) const {
  return indexOf(view(*this).rfind(character));
}

template <class Char>
int CStringT<Char>::Compare(PCXSTR text) const {
  requireText(text);
  return compare(this->GetString(), text);
}

template <class Char>
int CStringT<Char>::CompareNoCase(PCXSTR text) const {
  requireText(text);
  for (PCXSTR own = this->GetString();; ++own, ++text) {
    const Char a = vlafx::toLower(*own);
    const Char b = vlafx::toLower(*text);
    if (a != b) {
      return number(a) < number(b) ? -1 : 1;
    }
    if (a == Char()) {
      return 0;
    }
  }
}

template <class Char>
int CStringT<Char>::Remove(XCHAR character) {
  Char* const text = this->GetBuffer();
  Char* const end = text + this->GetLength();
  Char* const last = std::remove(text, end, character);
  this->setLength(static_cast<int>(last - text));
  return static_cast<int>(end - last);
}

template <class Char>
CStringT<Char>& CStringT<Char>::MakeUpper() {
  mapInPlace(*this, [](Char c) { return vlafx::toUpper(c); });
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::MakeLower() {
  mapInPlace(*this, [](Char c) { return vlafx::toLower(c); });
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::TrimRight() {
  trimRight(*this, [](Char c) { return vlafx::isBlank(c); });
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::TrimRight(XCHAR character) {
  trimRight(*this, [=](Char c) { return c == character; });
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::TrimLeft() {
  trimLeft(*this, [](Char c) { return vlafx::isBlank(c); });
  return *this;
}

template <class Char>
CStringT<Char>& CStringT<Char>::TrimLeft(XCHAR character) {
  trimLeft(*this, [=](Char c) { return c == character; });
  return *this;
}

template <class Char>
BOOL CStringT<Char>::LoadStringW(HINSTANCE module, UINT id) requires std::is_same_v<Char, wchar_t> {
  PCXSTR text = nullptr;
  const int length = ::LoadStringW(module, id, reinterpret_cast<LPWSTR>(&text), 0);
  if (length <= 0) {
    return FALSE;
  }
  this->SetString(text, length);
  return TRUE;
}

template class CStringT<char>;
template class CStringT<wchar_t>;
