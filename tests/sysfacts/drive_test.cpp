// The fixed drives and the system's.
#include "forms.h"

namespace sysfacts {
namespace {

template <class Width>
class Drives : public MachineTest {};
TYPED_TEST_SUITE(Drives, Widths);

TYPED_TEST(Drives, AWalkMeetsEveryFixedDriveOnce) {
  using Char = typename TypeParam::Char;
  std::wstring expected;
  wchar_t list[512];
  ASSERT_NE(GetLogicalDriveStringsW(512, list), 0u);
  for (const wchar_t* root = list; *root != L'\0'; root += std::wcslen(root) + 1) {
    expected += std::wstring(root, GetDriveTypeW(root) == DRIVE_FIXED ? 2 : 0);
  }
  ASSERT_FALSE(expected.empty());
  const std::wstring name = std::wstring(L"vlSysGetFixedDrive") + TypeParam::letter;
  for (const DWORD capacity : {3U, 0x80000000U, 0xFFFFFFFFU}) {  // also more than there can be
    std::wstring seen;
    GuardedBuffer<Char> buffer(3);
    buffer.data()[0] = 0;
    DWORD chars = capacity;
    LogCapture log;
    while (seen.size() <= expected.size() && TypeParam::fixedDrive(buffer.data(), &chars) == 0) {
      const std::wstring drive = widened(std::basic_string<Char>(buffer.data()));
      EXPECT_TRUE(log.was({entered(name + L" (" + pointer(buffer.data()) + L"," + pointer(&chars) + L")"),
                           entered(std::wstring(L"GetFixedDrive") + TypeParam::ansi),
                           traced(L"GetFixedDrive Hard Drive " + drive + L" found"), left(L"GetFixedDrive (0)"),
                           left(name + L" (0)")}));
      seen += drive;
      EXPECT_EQ(std::exchange(chars, capacity), 3u);
    }
    const Log last = log.take();
    EXPECT_EQ((Log{last.begin() + 2, last.end()}),
              (Log{failed(L"GetFixedDrive Hard Drive not found"), left(L"GetFixedDrive (15)"), left(name + L" (15)")}));
    EXPECT_EQ(seen, expected);
    EXPECT_EQ(widened(std::basic_string<Char>(buffer.data())), expected.substr(expected.size() - 2));
    EXPECT_TRUE(buffer.guardsIntact());
  }
}

TYPED_TEST(Drives, SizeProtocol) {
  using Char = typename TypeParam::Char;
  SetEnvironmentVariableW(L"SystemDrive", L"Q:");
  for (const auto& [function, name] : {std::pair{TypeParam::fixedDrive, L"vlSysGetFixedDrive"},
                                       std::pair{TypeParam::systemDrive, L"vlSysGetSystemDrive"}}) {
    const std::wstring flat = std::wstring(name) + TypeParam::letter;
    LogCapture log;
    GuardedBuffer<Char> buffer(8);
    DWORD chars = 0;
    for (const auto& [data, result] : {std::pair(static_cast<Char*>(nullptr), 0), {buffer.data(), 122}}) {
      EXPECT_EQ(function(data, &chars), result);
      EXPECT_TRUE(log.was(
          {entered(flat + L" (" + pointer(data) + L"," + pointer(&chars) + L")"), left(flat + inParentheses(result))}));
      EXPECT_EQ(std::exchange(chars, 2), 3u);
    }
    EXPECT_EQ(function(buffer.data(), nullptr), 87);
    EXPECT_EQ(log.take()[1], failed(flat + L" Invalid parameter."));
    EXPECT_TRUE(buffer.untouched());
    // A text without terminator in the capacity: not read beyond it, and in no list of drives.
    chars = 4;
    EXPECT_EQ(function(buffer.data(), &chars), 0);
    EXPECT_EQ(chars, 3u);
    EXPECT_TRUE(buffer.untouched(3) && buffer.data()[1] == Char{':'} && buffer.data()[2] == Char{});
  }
}

TYPED_TEST(Drives, SystemDriveIsTheVariable) {
  using Char = typename TypeParam::Char;
  const std::wstring name = L"vlSysGetSystemDrive", flatName = name + TypeParam::letter;
  const LogRecord none = failed(name + L" Unable to get the SystemDrive environment variable (203)");
  const struct {
    const wchar_t* value;
    DWORD capacity;
    int overload, flat;
    std::string drive, buffer;
  } rows[] = {{L"Q:", 3, 0, 0, "Q:", "Q:"},
              {L"Q:\\folder", 10, 0, 0, "Q:\\folder", "Q:\\folder"},
              {L"Q:\\folder", 9, 0, 122, "Q:\\folder", "X:"},
              {nullptr, 10, 203, 203, "before", "X:"}};
  for (const auto& row : rows) {
    SetEnvironmentVariableW(L"SystemDrive", row.value);
    auto drive = as<Char>("before");
    LogCapture log;
    EXPECT_EQ(vlSysGetSystemDrive(drive), row.overload);
    EXPECT_EQ(drive, as<Char>(row.drive));
    EXPECT_TRUE(log.was({entered(name + TypeParam::ansi), row.overload == 0 ? left(name + L" (0)") : none}));

    GuardedBuffer<Char> buffer(row.capacity);
    *std::copy_n("X:", 2, buffer.data()) = Char{};
    DWORD chars = row.capacity;
    EXPECT_EQ(TypeParam::systemDrive(buffer.data(), &chars), row.flat);
    EXPECT_EQ(chars, 3u);
    EXPECT_EQ(buffer.data(), as<Char>(row.buffer));
    EXPECT_TRUE(buffer.untouched(row.buffer.size() + 1));
    EXPECT_EQ(log.take().back(), left(flatName + inParentheses(row.flat)));
  }
  SetEnvironmentVariableW(L"SystemDrive", L"C:");
}

}  // namespace
}  // namespace sysfacts
