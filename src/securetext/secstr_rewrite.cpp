// CSecStr: members that change the text. Each takes a private copy first, wipes the buffer before it grows or is
// filled anew, and wipes its temporaries last.
#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cwchar>
#include <limits>
#include <string_view>
#include <utility>

#include <vlafx/resources.h>
#include <vlhostkit/securestring.h>

#include "securetext/discipline.h"

namespace {

using CountedText = vl::CountedText<wchar_t>;
using Temporary = vl::Temporary<wchar_t>;

HINSTANCE findByFramework(UINT id) {
  return AfxFindStringResourceHandle(id);
}

// Whether `text` goes on with `wanted`, which isn't empty. A plain loop: where hits are dense, calls cost more than
// they look at.
bool hitAt(const wchar_t* text, const wchar_t* end, std::wstring_view wanted) {
  if (*text != wanted.front() || static_cast<std::size_t>(end - text) < wanted.size()) {
    return false;
  }
  for (std::size_t i = 1; i < wanted.size(); ++i) {
    if (text[i] != wanted[i]) {
      return false;
    }
  }
  return true;
}

int countHits(const wchar_t* text, const wchar_t* end, std::wstring_view wanted) {
  if (wanted.size() == 1) {
    return static_cast<int>(std::count(text, end, wanted.front()));
  }
  int hits = 0;
  while (text != end) {
    const bool hit = hitAt(text, end, wanted);
    hits += hit;
    text += hit ? wanted.size() : 1;
  }
  return hits;
}

// Ends a list of arguments, also when an exception passes.
struct ArgumentsEnd {
  std::va_list& arguments;
  ~ArgumentsEnd() { va_end(arguments); }
};

// The text of `format` with its arguments.
Temporary formatted(const wchar_t* format, std::va_list arguments) {
  std::va_list counted;
  va_copy(counted, arguments);
  const ArgumentsEnd end{counted};
  const int length = _vscwprintf(format, counted);
  // A format that is none; the object stays as it was.
  if (length < 0 || length == std::numeric_limits<int>::max()) {
    vl::ThrowHresult(vl::kInvalidArgument);
  }
  Temporary work;
  // It fits: its length was counted.
  static_cast<void>(vswprintf_s(work.GetBuffer(length + 1), static_cast<std::size_t>(length) + 1, format, arguments));
  vl::release(work, -1);
  return work;
}

}  // namespace

HINSTANCE (*CSecStr::m_pFnFindStringResourceHandle)(UINT) = &findByFramework;

void CSecStr::UpdateFindStringResourceHandleFunction(HINSTANCE (*find)(UINT)) {
  m_pFnFindStringResourceHandle = find;
}

// One pass over the text: the result of editing hit by hit, in linear time. It goes to a string of its own, so the text
// is its own source until the end.
int CSecStr::Replace(const wchar_t* oldText, const wchar_t* newText) {
  const std::wstring_view wanted(oldText != nullptr ? oldText : L"");
  const std::wstring_view replacement(newText != nullptr ? newText : L"");
  const wchar_t* text = GetString();
  const wchar_t* const textEnd = text + vl::lengthOf(text);
  const int hits = wanted.empty() ? 0 : countHits(text, textEnd, wanted);
  if (hits == 0) {
    return 0;
  }
  const std::int64_t growth = static_cast<std::int64_t>(replacement.size()) - static_cast<std::int64_t>(wanted.size());
  const int size = vl::checkedLength(std::max<std::int64_t>(growth, 0) * hits + (textEnd - text) + 1);
  vl::checkedBytes<wchar_t>(size);
  Temporary work;
  wchar_t* const buffer = work.GetBuffer(size);
  wchar_t* end = buffer;
  while (text != textEnd) {
    if (hitAt(text, textEnd, wanted)) {
      for (const wchar_t character : replacement) {
        *end++ = character;
      }
      text += wanted.size();
    } else {
      *end++ = *text++;
    }
  }
  vl::release(work, static_cast<int>(end - buffer));
  vl::replace(*m_pStr, std::move(work));
  return hits;
}

CSecStr& CSecStr::operator+=(const CSecStr& text) {
  const Temporary saved(GetString());
  Temporary work;
  const int length = saved.GetLength();
  const int added = text.GetLength();
  const int whole = vl::checkedLength(static_cast<std::int64_t>(length) + added + 1) - 1;
  wchar_t* const buffer = work.GetBuffer(whole + 1);
  wcscpy_s(buffer, static_cast<std::size_t>(whole) + 1, saved.GetString());
  wcscpy_s(buffer + length, static_cast<std::size_t>(added) + 1, text.GetString());
  vl::release(work, whole);
  vl::replace(*m_pStr, std::move(work));
  return *this;
}

CSecStr& CSecStr::operator+=(const wchar_t* text) {
  return *this += CSecStr(text);
}

CSecStr& CSecStr::operator+=(wchar_t character) {
  const Temporary saved(GetString());
  const int length = saved.GetLength();
  const int room = vl::checkedLength(static_cast<std::int64_t>(length) + 2);
  vl::wipe(*m_pStr);
  wchar_t* const buffer = m_pStr->GetBuffer(room);
  wcscpy_s(buffer, static_cast<std::size_t>(room), saved.GetString());
  buffer[length] = character;
  m_pStr->ReleaseBuffer(length + 1);
  return *this;
}

int CSecStr::Insert(int index, const wchar_t* text) {
  return vl::insert(*m_pStr, index, text);
}

int CSecStr::Insert(int index, wchar_t character) {
  return Insert(index, CSecStr(character).GetString());
}

void CSecStr::Append(const wchar_t* text) {
  Insert(GetLength(), text);
}

void CSecStr::Append(const wchar_t* text, int length) {
  if (text == nullptr) {
    if (length == 0) {
      return;
    }
    vl::reportNullText();
  }
  Insert(GetLength(), Temporary(CountedText(text, length).get()).GetString());
}

void CSecStr::SetString(const wchar_t* text, int length) {
  vl::replace(*m_pStr, Temporary(CountedText(text, length).get()));
}

void CSecStr::Format(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const ArgumentsEnd end{arguments};
  const Temporary copy(format);
  vl::replace(*m_pStr, formatted(copy.GetString(), arguments));
}

void CSecStr::Format(UINT id, ...) {
  std::va_list arguments;
  va_start(arguments, id);
  const ArgumentsEnd end{arguments};
  CSecStr format;
  format.LoadStringW(m_pFnFindStringResourceHandle(id), id);
  vl::replace(*m_pStr, formatted(format.GetString(), arguments));
}

int CSecStr::LoadStringW(HINSTANCE module, UINT id) {
  Temporary saved(GetString());
  vl::wipe(*m_pStr);
  const int loaded = m_pStr->LoadStringW(module, id);
  if (loaded == 0) {
    vl::replace(*m_pStr, std::move(saved));
  }
  return loaded;
}

int CSecStr::LoadStringW(UINT id) {
  return LoadStringW(m_pFnFindStringResourceHandle(id), id);
}
