// CSecStrA.
#include <vlhostkit/securestring.h>

#include <utility>

#include "securetext/discipline.h"

using vl::CountedText;
using vl::Temporary;

// As in CSecStr, the constructors delegate, so that an exception ends a whole object.
CSecStrA::CSecStrA() = default;

CSecStrA::CSecStrA(const CSecStrA& other) : CSecStrA() {
  m_str = static_cast<const char*>(other.GetBuffer());
}

CSecStrA::CSecStrA(const CSecStr& text) : CSecStrA() {
  const int length = text.GetLength();
  char* const buffer = GetBuffer(length + 1);
  std::size_t converted = 0;
  // Not looked at: the length is that of the wide text in any case, over zeros where nothing was converted.
  std::memset(buffer, 0, vl::bytesOf<char>(length + 1));
  static_cast<void>(wcstombs_s(&converted, buffer, static_cast<std::size_t>(length) + 1, text.GetString(),
                               static_cast<std::size_t>(length)));
  ReleaseBuffer(length);
}

CSecStrA::CSecStrA(const char* text) : CSecStrA() {
  m_str = text;
}

CSecStrA::CSecStrA(const char* text, int length) : CSecStrA() {
  const CountedText<char> counted(text, length);
  if (counted.get() == nullptr) {
    m_str = L"";
  } else {
    m_str = counted.get();
  }
}

CSecStrA::~CSecStrA() {
  vl::wipe(m_str);
}

// Its own text, too: the copy is made first.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
CSecStrA& CSecStrA::operator=(const CSecStrA& other) {
  vl::replace(m_str, Temporary<char>(other.GetString()));
  return *this;
}

CSecStrA& CSecStrA::operator=(wchar_t* text) {
  Empty();
  const CSecStr wide(static_cast<const wchar_t*>(text));
  CSecStrA narrow(wide);
  vl::replace(m_str, std::move(narrow.m_str));
  return *this;
}

CSecStrA::operator const char*() const {
  return GetBuffer();
}

char* CSecStrA::GetBuffer() const {
  return const_cast<CStringT<char>&>(m_str).GetBuffer();
}

const char* CSecStrA::GetString() const {
  return m_str.GetString();
}

int CSecStrA::GetLength() const {
  return m_str.GetLength();
}

char* CSecStrA::GetBuffer(int n) {
  return vl::grow(m_str, n);
}

void CSecStrA::ReleaseBuffer(int n) {
  vl::release(m_str, n);
}

void CSecStrA::Empty() {
  vl::wipe(m_str);
}

int CSecStrA::Find(const char* text, int start) const {
  return m_str.Find(text, start);
}

void CSecStrA::Append(const char* text, int length) {
  if (text == nullptr) {
    vl::reportNullText();
  }
  Insert(GetLength(), CSecStrA(text, length).GetString());
}

int CSecStrA::Insert(int index, const char* text) {
  return vl::insert(m_str, index, text);
}
