// CSecStr: members that change the text. Each takes a private copy first, wipes the buffer before it grows or is
// filled anew, and wipes its temporaries last.
#include <algorithm>
#include <cstdarg>
#include <cstdint>
#include <cwchar>
#include <limits>
#include <string_view>

#include <vlafx/resources.h>
#include <vlhostkit/securestring.h>

#include "securetext/discipline.h"

namespace {

HINSTANCE findByFramework(UINT id) {
  return AfxFindStringResourceHandle(id);
}

// The first hit at or after `from`, the text's length if there is none. A plain loop: where hits are dense, calls cost
// more than they look at.
std::size_t findHit(std::wstring_view text, std::wstring_view wanted, std::size_t from) {
  const wchar_t first = wanted.front();
  for (std::size_t at = from; at + wanted.size() <= text.size(); ++at) {
    if (text[at] == first && text.compare(at, wanted.size(), wanted) == 0) {
      return at;
    }
  }
  return text.size();
}

int countHits(std::wstring_view text, std::wstring_view wanted) {
  int hits = 0;
  for (std::size_t at = findHit(text, wanted, 0); at != text.size(); at = findHit(text, wanted, at + wanted.size())) {
    ++hits;
  }
  return hits;
}

// Pieces are short as a rule: a loop beats a call.
wchar_t* put(wchar_t* target, std::wstring_view piece) {
  for (const wchar_t character : piece) {
    *target++ = character;
  }
  return target;
}

// Ends a list of arguments, also when an exception passes.
struct ArgumentsEnd {
  std::va_list& arguments;
  ~ArgumentsEnd() { va_end(arguments); }
};

// The text of `format` with its arguments, in a string of its own.
void formatInto(CStringT<wchar_t>& target, const CSecStr& format, std::va_list arguments) {
  std::va_list counted;
  va_copy(counted, arguments);
  const ArgumentsEnd end{counted};
  const int length = _vscwprintf(format.GetString(), counted);
  // A format that is none; the object stays as it was.
  if (length < 0 || length == std::numeric_limits<int>::max()) {
    vl::ThrowHresult(vl::kInvalidArgument);
  }
  CSecStr work;
  wchar_t* const buffer = work.GetBuffer(length + 1);
  vswprintf_s(buffer, static_cast<std::size_t>(length) + 1, format.GetString(), arguments);
  work.ReleaseBuffer(-1);
  vl::replace(target, work);
}

}  // namespace

HINSTANCE (*CSecStr::m_pFnFindStringResourceHandle)(UINT) = &findByFramework;

void CSecStr::UpdateFindStringResourceHandleFunction(HINSTANCE (*find)(UINT)) {
  m_pFnFindStringResourceHandle = find;
}

// One pass over the text: the result of editing hit by hit, in linear time.
int CSecStr::Replace(const wchar_t* oldText, const wchar_t* newText) {
  const std::wstring_view wanted(oldText != nullptr ? oldText : L"");
  const std::wstring_view replacement(newText != nullptr ? newText : L"");
  const int hits = wanted.empty() ? 0 : countHits(m_pStr->GetBuffer(), wanted);
  if (hits == 0) {
    return 0;
  }
  const CSecStr saved(GetString());
  CSecStr work;
  const std::int64_t growth = static_cast<std::int64_t>(replacement.size()) - static_cast<std::int64_t>(wanted.size());
  const int size = vl::checkedLength(std::max<std::int64_t>(growth, 0) * hits + saved.GetLength() + 1);
  vl::checkedBytes<wchar_t>(size);
  wchar_t* const buffer = work.GetBuffer(size);
  wchar_t* end = buffer;
  const std::wstring_view text(saved.GetString());
  std::size_t done = 0;
  for (std::size_t hit = findHit(text, wanted, 0); hit != text.size(); hit = findHit(text, wanted, done)) {
    end = put(put(end, text.substr(done, hit - done)), replacement);
    done = hit + wanted.size();
  }
  end = put(end, text.substr(done));
  work.ReleaseBuffer(static_cast<int>(end - buffer));
  vl::replace(*m_pStr, work);
  return hits;
}

CSecStr& CSecStr::operator+=(const CSecStr& text) {
  const CSecStr saved(GetString());
  CSecStr work;
  const int length = saved.GetLength();
  const int added = text.GetLength();
  const int whole = vl::checkedLength(static_cast<std::int64_t>(length) + added + 1) - 1;
  wchar_t* const buffer = work.GetBuffer(whole + 1);
  wcscpy_s(buffer, static_cast<std::size_t>(whole) + 1, saved.GetString());
  wcscpy_s(buffer + length, static_cast<std::size_t>(added) + 1, text.GetString());
  work.ReleaseBuffer(whole);
  vl::replace(*m_pStr, work);
  return *this;
}

CSecStr& CSecStr::operator+=(const wchar_t* text) {
  return *this += CSecStr(text);
}

CSecStr& CSecStr::operator+=(wchar_t character) {
  const CSecStr saved(GetString());
  // Made before the buffer is refilled: a failure must not leave characters there behind a length of 0.
  const CSecStr added(character);
  vl::wipe(*m_pStr);
  const int length = saved.GetLength();
  wchar_t* const buffer = m_pStr->GetBuffer(length + 2);
  wcscpy_s(buffer, static_cast<std::size_t>(length) + 2, saved.GetString());
  wcscpy_s(buffer + length, 2, added.GetString());
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
  Insert(GetLength(), CSecStr(text, length).GetString());
}

void CSecStr::SetString(const wchar_t* text, int length) {
  vl::replace(*m_pStr, CSecStr(text, length));
}

void CSecStr::Format(const wchar_t* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const ArgumentsEnd end{arguments};
  formatInto(*m_pStr, CSecStr(format), arguments);
}

void CSecStr::Format(UINT id, ...) {
  CSecStr format;
  format.LoadStringW(m_pFnFindStringResourceHandle(id), id);
  std::va_list arguments;
  va_start(arguments, id);
  const ArgumentsEnd end{arguments};
  formatInto(*m_pStr, format, arguments);
}

int CSecStr::LoadStringW(HINSTANCE module, UINT id) {
  const CSecStr saved(GetString());
  vl::wipe(*m_pStr);
  const int loaded = m_pStr->LoadStringW(module, id);
  if (loaded == 0) {
    vl::replace(*m_pStr, saved);
  }
  return loaded;
}

int CSecStr::LoadStringW(UINT id) {
  return LoadStringW(m_pFnFindStringResourceHandle(id), id);
}
