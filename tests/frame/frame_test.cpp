// What every exported function begins and ends with, and the types that hold what the platform hands out.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include <support/logcapture.h>
#include <support/machinetest.h>

#include "frame/callframe.h"
#include "frame/handle.h"
#include "frame/lasterror.h"
#include "frame/log.h"
#include "frame/width.h"

namespace {

using support::LogCapture;

// Texts join at compile time, and a joined text ends where its parts end.
template <class Width>
constexpr std::wstring_view kExit =
    vl::kText<vl::Text(L"vlFoo") + Width::suffix + vl::Text(L" : ") + Width::conversion + vl::Text(L" (%d)")>;
static_assert(kExit<vl::Narrow> == L"vlFooA : %S (%d)");
static_assert(kExit<vl::Wide> == L"vlFooW : %s (%d)");
static_assert((vl::Text(L"") + vl::Text(L"")).chars[0] == L'\0');
static_assert(sizeof((vl::Text(L"ab") + vl::Text(L"c")).chars) == 4 * sizeof(wchar_t));
static_assert(std::is_same_v<vl::Narrow::String, std::basic_string<vl::Narrow::Char>>);
static_assert(std::is_same_v<vl::Wide::String, std::basic_string<vl::Wide::Char>>);

class Frame : public support::MachineTest {};

TEST_F(Frame, ExitShowsTheResultAsItIsAtTheEnd) {
  LogCapture log;
  const auto function = [](int last) {
    int result = 7;
    const vl::CallFrame frame(vl::kTag, L"vlFoo(%p,%d)", vl::ExitWith(L"vlFoo : ret=(%d)", result),
                              static_cast<void*>(nullptr), 5);
    txlogLog(vl::kTag, TXLOG_TRACE, L"within");
    result = last;
    return result;
  };
  EXPECT_EQ(function(-4), -4);
  const auto records = log.take();
  ASSERT_EQ(records.size(), 3u);
  EXPECT_EQ(records[0].level, TXLOG_ENTRY);
  EXPECT_EQ(records[0].text.substr(0, 6), L"vlFoo(");
  EXPECT_EQ(records[0].text.substr(records[0].text.size() - 3), L",5)");
  EXPECT_EQ(records[1], (support::LogRecord{L"txhostkit", TXLOG_TRACE, L"within"}));
  EXPECT_EQ(records[2], (support::LogRecord{L"txhostkit", TXLOG_EXIT, L"vlFoo : ret=(-4)"}));
}

TEST_F(Frame, ExitsOfOtherHabits) {
  LogCapture log;
  { const vl::CallFrame frame(vl::kTag, L"vlBar", vl::ExitPlain(L"vlBar")); }
  EXPECT_TRUE(log.was({{L"txhostkit", TXLOG_ENTRY, L"vlBar"}, {L"txhostkit", TXLOG_EXIT, L"vlBar"}}));
  {
    const DWORD result = 0xFFFFFFFF;
    const vl::ExitFrame frame(L"VLHOSTKIT", vl::ExitWith(L"vlBaz 0x%x", result));
  }
  EXPECT_TRUE(log.was({{L"VLHOSTKIT", TXLOG_EXIT, L"vlBaz 0xffffffff"}}));
}

TEST_F(Frame, RecordsLeaveTheLastErrorValueWhateverTheSinkDoes) {
  int records = 0;
  const auto meddle = [](void* count, const txlogRecord*) {
    ++*static_cast<int*>(count);
    SetLastError(1);
  };
  ASSERT_EQ(txlogSetSink(meddle, &records, TXLOG_ALL_LEVELS), TXLOG_DONE);
  {
    const vl::CallFrame frame(vl::kTag, L"vlFoo", vl::ExitPlain(L"vlFoo"));
    EXPECT_EQ(GetLastError(), support::kUntouchedError);
    SetLastError(5678);
  }
  EXPECT_EQ(GetLastError(), 5678u);
  SetLastError(support::kUntouchedError);
  txlogLog(vl::kTag, TXLOG_ERROR, L"a failure that is looked into after its record");
  EXPECT_EQ(GetLastError(), support::kUntouchedError);
  txlogSetSink(nullptr, nullptr, 0);
  EXPECT_EQ(records, 3);
}

std::vector<int> released;
void release(int value) {
  released.push_back(value);
}
using Owner = vl::Handle<int, &release, -1>;
static_assert(!std::is_copy_constructible_v<Owner> && !std::is_copy_assignable_v<Owner>);
static_assert(std::is_nothrow_move_constructible_v<Owner> && std::is_nothrow_move_assignable_v<Owner>);

TEST_F(Frame, HandlesReleaseOnceWhatTheyOwn) {
  using Values = std::vector<int>;
  const auto take = [] { return std::exchange(released, {}); };
  {
    const Owner none, zero(0);  // a value like others where -1 is the one that owns nothing
    EXPECT_TRUE(!none && zero && none.get() == -1 && zero.get() == 0);
  }
  EXPECT_EQ(take(), Values{0});
  {
    Owner first(1);
    Owner second(std::move(first)), third(3);
    third = std::move(second);
    EXPECT_EQ(take(), Values{3});
    Owner& same = third;
    third = std::move(same);
    EXPECT_EQ(third.get(), 1);
    third.reset(2);
    EXPECT_EQ(take(), Values{1});
    int* const place = third.put();
    EXPECT_EQ(take(), Values{2});
    *place = 4;
  }
  EXPECT_EQ(take(), Values{4});
}

}  // namespace
