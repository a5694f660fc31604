/// The members that take memory, for tests in which there is none.
#ifndef SECURETEXT_MEMBERS_H
#define SECURETEXT_MEMBERS_H

#include <vlhostkit/securetext.h>

#include "resources.h"
#include "watchedmanager.h"

namespace securetext {

// What is left of an object when the call fails.
enum class Left {
  same,        ///< its text, if nothing must grow
  sameOrEmpty  ///< its text or none
};

template <class String>
struct Member {
  const char* name;
  void (*call)(String& string);
  Left left = Left::same;
};

inline const Member<CSecStr> kWideMembers[] = {
    {"assign text", [](CSecStr& s) { s = L"another text that may need more room"; }},
    {"assign object", [](CSecStr& s) { s = CSecStr(L"another text that may need more room"); }},
    {"assign narrow", [](CSecStr& s) { s = "another text that may need more room"; }},
    {"grow", [](CSecStr& s) { s.GetBuffer(s.GetAllocLength() + 1); }, Left::sameOrEmpty},
    {"Replace", [](CSecStr& s) { s.Replace(L"e", L"<a longer text>"); }},
    {"add object", [](CSecStr& s) { s += CSecStr(L" and a second text that needs room"); }},
    {"add character", [](CSecStr& s) { s += L'!'; }},
    {"Insert", [](CSecStr& s) { s.Insert(3, L" and a second text that needs room"); }},
    {"Append counted", [](CSecStr& s) { s.Append(L" and a second text that needs room", 20); }},
    {"SetString", [](CSecStr& s) { s.SetString(L"another text that may need more room", 30); }},
    {"refused", [](CSecStr& s) { s.SetString(static_cast<const wchar_t*>(nullptr), 3); }},
    {"Format", [](CSecStr& s) { s.Format(L"%s and %S and %40d", s.GetString(), "narrow", 5); }},
    {"Format resource", [](CSecStr& s) { s.Format(UINT{IDS_LONG}); }},
    {"LoadStringW", [](CSecStr& s) { s.LoadStringW(IDS_LONG); }, Left::sameOrEmpty},
    {"Mid", [](CSecStr& s) { s.Mid(2, 3); }},
    {"join texts", [](CSecStr& s) { L"text" + (s + L"text"); }},
    {"constructors",
     [](CSecStr&) {
       CSecStr character(L'x'), counted(L"text", 4), narrow(const_cast<char*>("text")), countedNarrow("text", 4);
     }},
    {"to narrow", [](CSecStr& s) { CSecStrA narrow(s); }}};

inline const Member<CSecStrA> kNarrowMembers[] = {
    {"assign object", [](CSecStrA& s) { s = CSecStrA("another text that may need more room"); }},
    {"assign wide", [](CSecStrA& s) { s = const_cast<wchar_t*>(L"another text that may need more room"); },
     Left::sameOrEmpty},
    {"grow", [](CSecStrA& s) { s.GetBuffer(headerOf(s.GetString()).nAllocLength + 1); }, Left::sameOrEmpty},
    {"Insert", [](CSecStrA& s) { s.Insert(3, " and a second text that needs room"); }},
    {"Append", [](CSecStrA& s) { s.Append(" and a second text that needs room", 20); }},
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): the copy is what is called
    {"constructors", [](CSecStrA& s) { CSecStrA copy(s), counted("text", 4); }}};

inline const Member<CSecStrList> kListMembers[] = {
    {"AddTail object", [](CSecStrList& l) { l.AddTail(CSecStr(L"text")); }},
    {"AddTail text", [](CSecStrList& l) { l.AddTail(L"text"); }},
    {"RemoveHead", [](CSecStrList& l) { l.RemoveHead(); }}};

}  // namespace securetext

#endif
