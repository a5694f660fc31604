// Every member with the n-th allocation of the strings' memory failing, for every n until it succeeds.
#include "fixture.h"
#include "members.h"

namespace securetext {
namespace {

constexpr std::uint64_t kMostAllocations = 50;

class Sweep : public SecureTextTest {
 protected:
  static bool isOutOfMemory(std::string_view outcome) { return outcome == kMemory || outcome == kBadAlloc; }

  /// Calls with the n-th allocation failing.
  template <class Call>
  std::string_view outcomeWithFailure(std::uint64_t n, Call&& call) {
    memory.fail(n);
    const std::string_view outcome = outcomeOf(call);
    failed_ = memory.failed();
    memory.fail(0);
    return outcome;
  }
  bool failed() const { return failed_; }

 private:
  bool failed_ = false;
};

TEST_F(Sweep, Members) {
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

TEST_F(Sweep, Lists) {
  // At 10 entries the next one needs a block of nodes.
  for (const int entries : {1, 10}) {
    for (const Member<CSecStrList>& member : kListMembers) {
      for (std::uint64_t n = 1;; ++n) {
        ASSERT_LT(n, kMostAllocations);
        CSecStrList list;
        for (int i = 0; i < entries; ++i) {
          list.AddTail(L"secret");
        }
        const std::string_view outcome = outcomeWithFailure(n, [&] { member.call(list); });
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
TEST_F(Sweep, RefusalsWithoutMemory) {
  CSecStr string(L"secret");
  for (std::uint64_t n = 1; n == 1 || failed(); ++n) {
    ASSERT_LT(n, kMostAllocations);
    const std::string_view outcome =
        outcomeWithFailure(n, [&] { string.SetString(static_cast<const wchar_t*>(nullptr), 3); });
    EXPECT_TRUE(failed() ? isOutOfMemory(outcome) : outcome == kInvalid) << outcome;
    EXPECT_EQ(textOf(string), L"secret");
  }
}

}  // namespace
}  // namespace securetext
