#include <type_traits>
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

static_assert(!std::is_polymorphic_v<CSecStrList>);

class SecureList : public SecureTextTest {
 protected:
  static constexpr const wchar_t* kNull = nullptr;

  static std::vector<std::wstring> walk(const CSecStrList& list) {
    std::vector<std::wstring> texts;
    for (__POSITION* position = list.GetHeadPosition(); position != nullptr;) {
      texts.push_back(textOf(list.GetNext(position)));
    }
    EXPECT_EQ(static_cast<int>(texts.size()), list.GetCount());
    EXPECT_EQ(list.IsEmpty(), texts.empty() ? 1 : 0);
    return texts;
  }
};

using Texts = std::vector<std::wstring>;

TEST_F(SecureList, KeepsTheOrder) {
  CSecStrList list;
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  EXPECT_EQ(walk(list), Texts{});
  list.RemoveAll();
  // More than one block of nodes, and nodes that are used again.
  Texts expected;
  for (int i = 0; i < 35; ++i) {
    expected.push_back(std::to_wstring(i));
    EXPECT_EQ(textOf(list.GetAt(list.AddTail(expected.back().c_str()))), expected.back());
    if (i % 3 == 2) {
      EXPECT_EQ(textOf(list.GetHead()), expected.front());
      EXPECT_EQ(textOf(list.RemoveHead()), expected.front());
      expected.erase(expected.begin());
    }
    ASSERT_EQ(walk(list), expected);
  }
  list.RemoveAll();
  EXPECT_EQ(walk(list), Texts{});
  list.AddTail(L"again");
  EXPECT_EQ(walk(list), Texts{L"again"});
}

TEST_F(SecureList, EntriesAreCopies) {
  CSecStrList list;
  CSecStr mine(L"secret");
  __POSITION* const position = list.AddTail(mine);
  EXPECT_EQ(position, list.GetHeadPosition());
  EXPECT_NE(list.GetHead().GetString(), mine.GetString());
  mine = L"changed";
  EXPECT_EQ(walk(list), Texts{L"secret"});
  list.GetAt(position) += L"s";
  EXPECT_EQ(walk(list), Texts{L"secrets"});
  EXPECT_EQ(textOf(mine), L"changed");
  list.AddTail(kNull);
  list.AddTail(list.GetHead());
  EXPECT_EQ(walk(list), (Texts{L"secrets", L"", L"secrets"}));
}

TEST_F(SecureList, NullPositions) {
  CSecStrList list;
  list.AddTail(L"a");
  __POSITION* position = list.GetHeadPosition();
  list.GetNext(position);
  EXPECT_EQ(position, nullptr);
  EXPECT_EQ(outcomeOf([&] { list.GetNext(position); }), kArgument);
  EXPECT_EQ(outcomeOf([&] { list.GetAt(nullptr); }), kArgument);
}

TEST_F(SecureList, FindsBehindAPosition) {
  CSecStrList list;
  EXPECT_EQ(list.Find(L"a", nullptr), nullptr);
  __POSITION* const first = list.AddTail(L"a");
  __POSITION* const capital = list.AddTail(L"A");
  __POSITION* const second = list.AddTail(L"a");
  __POSITION* const last = list.AddTail(L"ab");
  EXPECT_EQ(list.Find(L"a", nullptr), first);
  EXPECT_EQ(list.Find(L"a", first), second);
  EXPECT_EQ(list.Find(L"a", second), nullptr);
  EXPECT_EQ(list.Find(L"A", nullptr), capital);
  EXPECT_EQ(list.Find(L"ab", nullptr), last);
  EXPECT_EQ(list.Find(L"ab", last), nullptr);
  EXPECT_EQ(list.Find(L"", nullptr), nullptr);
  EXPECT_EQ(list.GetCount(), 4);
}

}  // namespace
}  // namespace securetext
