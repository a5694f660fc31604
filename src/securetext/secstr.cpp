// CSecStr: lifetime, assignment, the buffer protocol, and what goes straight to the string core.
#include <vlhostkit/securestring.h>

#include "securetext/discipline.h"

using vl::CountedText;
using vl::Temporary;

// The constructors delegate, so that an exception after the core is there ends a whole object: wiped and released.
CSecStr::CSecStr() : m_pStr(new CStringT<wchar_t>) {}

CSecStr::CSecStr(wchar_t character) : CSecStr() {
  *m_pStr = character;
}

CSecStr::CSecStr(const wchar_t* text) : CSecStr() {
  *m_pStr = text;
}

CSecStr::CSecStr(const wchar_t* text, int length) : CSecStr() {
  *m_pStr = CountedText<wchar_t>(text, length).get();
}

CSecStr::CSecStr(const CSecStr& other) : CSecStr() {
  *m_pStr = static_cast<const wchar_t*>(other.m_pStr->GetBuffer());
}

CSecStr::CSecStr(char* text) : CSecStr() {
  *m_pStr = static_cast<const char*>(text);
}

CSecStr::CSecStr(const char* text, int length) : CSecStr() {
  *m_pStr = CountedText<char>(text, length).get();
}

CSecStr::~CSecStr() {
  // Held, since the wipe might have changed any memory, for all that the compiler knows.
  const CStringT<wchar_t>* const core = m_pStr;
  vl::wipe(*m_pStr);
  delete core;
}

CSecStr& CSecStr::operator=(const wchar_t* text) {
  if (text == nullptr) {
    Empty();
  } else {
    vl::replace(*m_pStr, Temporary<wchar_t>(text));
  }
  return *this;
}

// Its own text, too: the copy is made first.
// NOLINTNEXTLINE(bugprone-unhandled-self-assignment,cert-oop54-cpp)
CSecStr& CSecStr::operator=(const CSecStr& other) {
  vl::replace(*m_pStr, Temporary<wchar_t>(other.GetString()));
  return *this;
}

CSecStr& CSecStr::operator=(char* text) {
  return *this = static_cast<const char*>(text);
}

CSecStr& CSecStr::operator=(const char* text) {
  vl::replace(*m_pStr, Temporary<wchar_t>(text));
  return *this;
}

CSecStr::operator const wchar_t*() const {
  return m_pStr->GetBuffer();
}

wchar_t* CSecStr::GetBuffer() const {
  return m_pStr->GetBuffer();
}

const wchar_t* CSecStr::GetString() const {
  return m_pStr->GetString();
}

wchar_t* CSecStr::GetBuffer(int n) {
  return vl::grow(*m_pStr, n);
}

void CSecStr::ReleaseBuffer(int n) {
  vl::release(*m_pStr, n);
}

void CSecStr::Empty() {
  vl::wipe(*m_pStr);
}

int CSecStr::GetLength() const {
  return m_pStr->GetLength();
}

bool CSecStr::IsEmpty() const {
  return m_pStr->IsEmpty();
}

int CSecStr::GetAllocLength() const {
  return m_pStr->GetAllocLength();
}

int CSecStr::Find(wchar_t character, int start) const {
  return m_pStr->Find(character, start);
}

int CSecStr::Find(const wchar_t* text, int start) const {
  return m_pStr->Find(text, start);
}

int CSecStr::ReverseFind(wchar_t character) const {
  return m_pStr->ReverseFind(character);
}

wchar_t CSecStr::GetAt(int index) const {
  return m_pStr->GetAt(index);
}

void CSecStr::SetAt(int index, wchar_t character) {
  m_pStr->SetAt(index, character);
}

int CSecStr::Compare(const wchar_t* text) const {
  return m_pStr->Compare(text);
}

int CSecStr::CompareNoCase(const wchar_t* text) const {
  return m_pStr->CompareNoCase(text);
}

int CSecStr::Remove(wchar_t character) {
  return m_pStr->Remove(character);
}

CSecStr& CSecStr::MakeUpper() {
  m_pStr->MakeUpper();
  return *this;
}

CSecStr& CSecStr::MakeLower() {
  m_pStr->MakeLower();
  return *this;
}

CSecStr& CSecStr::TrimRight() {
  m_pStr->TrimRight();
  return *this;
}

CSecStr& CSecStr::TrimRight(wchar_t character) {
  m_pStr->TrimRight(character);
  return *this;
}

CSecStr& CSecStr::TrimLeft() {
  m_pStr->TrimLeft();
  return *this;
}

CSecStr& CSecStr::TrimLeft(wchar_t character) {
  m_pStr->TrimLeft(character);
  return *this;
}

bool operator==(const CSecStr& a, const CSecStr& b) {
  return a.Compare(b.GetString()) == 0;
}
bool operator==(const CSecStr& a, const wchar_t* b) {
  return a.Compare(b) == 0;
}
bool operator==(const wchar_t* a, const CSecStr& b) {
  return b.Compare(a) == 0;
}
bool operator!=(const CSecStr& a, const CSecStr& b) {
  return a.Compare(b.GetString()) != 0;
}
bool operator!=(const CSecStr& a, const wchar_t* b) {
  return a.Compare(b) != 0;
}
bool operator!=(const wchar_t* a, const CSecStr& b) {
  return b.Compare(a) != 0;
}
bool operator<(const CSecStr& a, const CSecStr& b) {
  return a.Compare(b.GetString()) < 0;
}
