#include <type_traits>
#include <vector>

#include "fixture.h"

namespace securetext {
namespace {

static_assert(!std::is_polymorphic_v<CSecStrList>);

using Texts = std::vector<std::wstring>;
using SecureList = SecureTextTest;

Texts walk(const CSecStrList& list) {
  Texts texts;
  for (__POSITION* position = list.GetHeadPosition(); position != nullptr;) {
    texts.push_back(textOf(list.GetNext(position)));
  }
  EXPECT_EQ(static_cast<int>(texts.size()), list.GetCount());
  EXPECT_EQ(list.IsEmpty(), texts.empty() ? 1 : 0);
  return texts;
}

TEST_F(SecureList, KeepsTheOrder) {
  CSecStrList list;
  list.RemoveAll();
  EXPECT_EQ(walk(list), Texts{});
  __POSITION* const first = list.AddTail(L"1");
  list.AddTail(L"2");
  list.AddTail(L"3");
  EXPECT_EQ(walk(list), (Texts{L"1", L"2", L"3"}));
  EXPECT_EQ(list.GetHeadPosition(), first);
  EXPECT_EQ(textOf(list.GetHead()), L"1");
  EXPECT_EQ(textOf(list.RemoveHead()), L"1");
  EXPECT_EQ(walk(list), (Texts{L"2", L"3"}));
  list.RemoveAll();
  EXPECT_EQ(walk(list), Texts{});
}

TEST_F(SecureList, EntriesAreCopies) {
  CSecStrList list;
  CSecStr mine(L"secret");
  __POSITION* position = list.AddTail(mine);
  mine = L"changed";
  EXPECT_EQ(walk(list), Texts{L"secret"});
  list.GetAt(position) += L"s";
  EXPECT_EQ(textOf(mine), L"changed");
  list.AddTail(kNull);
  list.AddTail(list.GetHead());
  EXPECT_EQ(walk(list), (Texts{L"secrets", L"", L"secrets"}));

  position = nullptr;
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
  const struct {
    const wchar_t* text;
    __POSITION *after, *found;
  } rows[] = {{L"a", nullptr, first}, {L"a", first, second},  {L"a", second, nullptr}, {L"A", nullptr, capital},
              {L"ab", nullptr, last}, {L"ab", last, nullptr}, {L"", nullptr, nullptr}};
  for (const auto& [text, after, found] : rows) {
    EXPECT_EQ(list.Find(text, after), found) << text;
  }
}

}  // namespace
}  // namespace securetext
