// Every member with its n-th allocation failing, for every n until it succeeds.
#include <functional>
#include <vector>

#include "fixture.h"

#ifndef _WIN32
#include <support/allocfault.h>
#endif

namespace securetext {
namespace {

constexpr std::uint64_t kMostAllocations = 50;

// Which memory fails.
enum class Source { strings, heap };

class Sweep : public SecureTextTest, public testing::WithParamInterface<Source> {
 protected:
  static bool isOutOfMemory(std::string_view outcome) { return outcome == kMemory || outcome == kBadAlloc; }

  /// Calls with the n-th allocation failing.
  template <class Call>
  std::string_view outcomeWithFailure(std::uint64_t n, Call&& call) {
#ifndef _WIN32
    if (GetParam() == Source::heap) {
      support::AllocFault fault(n);
      const std::string_view outcome = outcomeOf(call);
      failed_ = fault.end();
      return outcome;
    }
#endif
    memory.fail(n);
    const std::string_view outcome = outcomeOf(call);
    failed_ = memory.failed();
    memory.fail(0);
    return outcome;
  }
  bool failed() const {
    return failed_;
  }

 private:
  bool failed_ = false;
};

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

const Member<CSecStr> kWideMembers[] = {
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
    {"Format", [](CSecStr& s) { s.Format(L"%s and %S and %40d", s.GetString(), "narrow", 5); }},
    {"Format resource", [](CSecStr& s) { s.Format(UINT{4000}); }},
    {"LoadStringW", [](CSecStr& s) { s.LoadStringW(4000); }, Left::sameOrEmpty},
    {"Mid", [](CSecStr& s) { s.Mid(2, 3); }},
    {"join texts", [](CSecStr& s) { L"text" + (s + L"text"); }},
    {"constructors",
     [](CSecStr&) {
       CSecStr character(L'x'), counted(L"text", 4), narrow(const_cast<char*>("text")), countedNarrow("text", 4);
     }},
    {"to narrow", [](CSecStr& s) { CSecStrA narrow(s); }}};

const Member<CSecStrA> kNarrowMembers[] = {
    {"assign object", [](CSecStrA& s) { s = CSecStrA("another text that may need more room"); }},
    {"assign wide", [](CSecStrA& s) { s = const_cast<wchar_t*>(L"another text that may need more room"); },
     Left::sameOrEmpty},
    {"grow", [](CSecStrA& s) { s.GetBuffer(headerOf(s.GetString()).nAllocLength + 1); }, Left::sameOrEmpty},
    {"Insert", [](CSecStrA& s) { s.Insert(3, " and a second text that needs room"); }},
    {"Append", [](CSecStrA& s) { s.Append(" and a second text that needs room", 20); }},
    {"constructors", [](CSecStrA& s) { CSecStrA copy(s), counted("text", 4); }}};

TEST_P(Sweep, Members) {
  const auto sweep = [this]<class String, class Char>(const Member<String>& member, const Text<Char>& text, int room) {
    for (std::uint64_t n = 1;; ++n) {
      ASSERT_LT(n, kMostAllocations) << member.name;
      String string(text.c_str());
      string.GetBuffer(room);
      string.ReleaseBuffer(-1);
      const std::string_view outcome = outcomeWithFailure(n, [&] { member.call(string); });
      const Text<Char> left = textOf(string);
      EXPECT_TRUE(zeroFrom(string.GetString(), string.GetLength()) || outcome == kDone) << member.name << n;
      if (!failed()) {
        EXPECT_EQ(outcome, kDone) << member.name;
        break;
      }
      EXPECT_TRUE(isOutOfMemory(outcome)) << member.name << " " << n << " " << outcome;
      const bool mayBeLost = room == 0 || member.left == Left::sameOrEmpty;
      EXPECT_TRUE(left == text || (mayBeLost && left.empty()))
          << member.name << ", allocation " << n << ", leaves " << testing::PrintToString(left);
      // It is a string like others.
      string.Append(text.c_str(), 1);
      EXPECT_EQ(textOf(string), left + text[0]);
    }
  };
  for (const int room : {0, 400}) {
    for (const Member<CSecStr>& member : kWideMembers) {
      sweep(member, std::wstring(L"secret"), room);
    }
    for (const Member<CSecStrA>& member : kNarrowMembers) {
      sweep(member, std::string("secret"), room);
    }
  }
}

TEST_P(Sweep, Lists) {
  const CSecStr text(L"secret");
  const std::function<void(CSecStrList&)> calls[] = {[&](CSecStrList& list) { list.AddTail(text); },
                                                     [](CSecStrList& list) { list.AddTail(L"text"); },
                                                     [](CSecStrList& list) { list.RemoveHead(); }};
  // At 10 entries the next one needs a block of nodes.
  for (const int entries : {1, 10}) {
    for (const auto& call : calls) {
      for (std::uint64_t n = 1;; ++n) {
        ASSERT_LT(n, kMostAllocations);
        CSecStrList list;
        for (int i = 0; i < entries; ++i) {
          list.AddTail(text);
        }
        const std::string_view outcome = outcomeWithFailure(n, [&] { call(list); });
        if (!failed()) {
          EXPECT_EQ(outcome, kDone);
          break;
        }
        EXPECT_TRUE(isOutOfMemory(outcome)) << outcome;
        EXPECT_EQ(list.GetCount(), entries);
        for (__POSITION* position = list.GetHeadPosition(); position != nullptr;) {
          EXPECT_EQ(textOf(list.GetNext(position)), L"secret");
        }
      }
    }
  }
}

// An exception that is itself out of memory.
TEST_P(Sweep, RefusalsWithoutMemory) {
  CSecStr string(L"secret");
  for (std::uint64_t n = 1; n == 1 || failed(); ++n) {
    ASSERT_LT(n, kMostAllocations);
    const std::string_view outcome =
        outcomeWithFailure(n, [&] { string.SetString(static_cast<const wchar_t*>(nullptr), 3); });
    EXPECT_TRUE(failed() ? isOutOfMemory(outcome) : outcome == kInvalid) << outcome;
    EXPECT_EQ(textOf(string), L"secret");
  }
}

#ifdef _WIN32
const auto kSources = testing::Values(Source::strings);
#else
const auto kSources = testing::Values(Source::strings, Source::heap);
#endif
INSTANTIATE_TEST_SUITE_P(OutOfMemory, Sweep, kSources, [](const testing::TestParamInfo<Source>& tested) {
  return tested.param == Source::strings ? "Strings" : "Heap";
});

}  // namespace
}  // namespace securetext
