// The fixed drives and the system's.
#include "forms.h"

namespace sysfacts {
namespace {

template <class Width>
class Drives : public support::MachineTest {};
TYPED_TEST_SUITE(Drives, Widths);

TYPED_TEST(Drives, AWalkMeetsEveryFixedDriveOnce) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  std::wstring expected;
  wchar_t list[512];
  ASSERT_NE(GetLogicalDriveStringsW(512, list), 0u);
  for (const wchar_t* root = list; *root != L'\0'; root += std::wcslen(root) + 1) {
    if (GetDriveTypeW(root) == DRIVE_FIXED) {
      expected += std::wstring(root, 2);
    }
  }
  ASSERT_FALSE(expected.empty());
  String seen;
  GuardedBuffer<Char> buffer(3);
  buffer.data()[0] = 0;
  DWORD chars = 3;
  int result = 0;
  while (seen.size() <= expected.size() && (result = TypeParam::fixedDrive(buffer.data(), &chars)) == 0) {
    seen += buffer.data();
    EXPECT_EQ(chars, 3u);
  }
  EXPECT_EQ(result, 15);
  EXPECT_EQ(seen, as<Char>(expected));
  EXPECT_EQ(buffer.data(), as<Char>(expected.substr(expected.size() - 2)));
  EXPECT_TRUE(buffer.guardsIntact());
}

TYPED_TEST(Drives, SizeProtocol) {
  using Char = typename TypeParam::Char;
  SetEnvironmentVariableW(L"SystemDrive", L"Q:");
  for (const auto& [function, name] : {std::pair{TypeParam::fixedDrive, L"vlSysGetFixedDrive"},
                                       std::pair{TypeParam::systemDrive, L"vlSysGetSystemDrive"}}) {
    const std::wstring flat = std::wstring(name) + TypeParam::letter;
    support::LogCapture log;
    GuardedBuffer<Char> buffer(8);
    DWORD chars = 0;
    EXPECT_EQ(function(nullptr, &chars), 0);
    EXPECT_EQ(chars, 3u);
    EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, flat + L" (" + pointer(nullptr) + L"," + pointer(&chars) + L")"},
                                 {TXLOG_EXIT, flat + L" (0)"}})));
    chars = 2;
    EXPECT_EQ(function(buffer.data(), &chars), 122);
    EXPECT_EQ(chars, 3u);
    EXPECT_EQ(log.take().size(), 2u);
    EXPECT_TRUE(buffer.untouched());
    EXPECT_EQ(function(buffer.data(), nullptr), 87);
    EXPECT_EQ(log.take()[1], records({{TXLOG_ERROR, flat + L" Invalid parameter."}})[0]);
    // A text without terminator in the capacity: not read beyond it, and in no list of drives.
    chars = 4;
    EXPECT_EQ(function(buffer.data(), &chars), 0);
    EXPECT_EQ(chars, 3u);
    EXPECT_TRUE(buffer.untouched(3));
    EXPECT_EQ(buffer.data()[1], Char{':'});
    EXPECT_EQ(buffer.data()[2], Char{});
  }
}

TYPED_TEST(Drives, RecordsOfWrapperAndOverload) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  String first;
  ASSERT_EQ(vlSysGetFixedDrive(first), 0);
  const std::wstring drive(first.begin(), first.end());
  support::LogCapture log;
  Char buffer[8] = {};
  DWORD chars = 8;
  EXPECT_EQ(TypeParam::fixedDrive(buffer, &chars), 0);
  const std::wstring name = std::wstring(L"vlSysGetFixedDrive") + TypeParam::letter;
  EXPECT_TRUE(log.was(records({{TXLOG_ENTRY, name + L" (" + pointer(buffer) + L"," + pointer(&chars) + L")"},
                               {TXLOG_ENTRY, std::wstring(L"GetFixedDrive") + TypeParam::ansi},
                               {TXLOG_TRACE, L"GetFixedDrive Hard Drive " + drive + L" found"},
                               {TXLOG_EXIT, L"GetFixedDrive (0)"},
                               {TXLOG_EXIT, name + L" (0)"}})));
}

TYPED_TEST(Drives, SystemDriveIsTheVariable) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  const std::wstring flat = std::wstring(L"vlSysGetSystemDrive") + TypeParam::letter;
  const std::wstring entry = std::wstring(L"vlSysGetSystemDrive") + TypeParam::ansi;
  const struct {
    const wchar_t* value;
    DWORD capacity;
    int overload;
    int flat;
  } rows[] = {{L"Q:", 3, 0, 0}, {L"Q:\\folder", 10, 0, 0}, {L"Q:\\folder", 9, 0, 122}, {nullptr, 10, 203, 203}};
  for (const auto& row : rows) {
    SetEnvironmentVariableW(L"SystemDrive", row.value);
    String drive = as<Char>(L"before");
    support::LogCapture log;
    EXPECT_EQ(vlSysGetSystemDrive(drive), row.overload);
    EXPECT_EQ(drive, as<Char>(row.value != nullptr ? row.value : L"before"));
    const Lines lines = {
        {TXLOG_ENTRY, entry},
        row.overload == 0
            ? Lines::value_type{TXLOG_EXIT, L"vlSysGetSystemDrive (0)"}
            : Lines::value_type{TXLOG_ERROR,
                                L"vlSysGetSystemDrive Unable to get the SystemDrive environment variable (203)"}};
    EXPECT_TRUE(log.was(records(lines)));

    GuardedBuffer<Char> buffer(row.capacity);
    DWORD chars = row.capacity;
    EXPECT_EQ(TypeParam::systemDrive(buffer.data(), &chars), row.flat);
    EXPECT_EQ(chars, 3u);
    if (row.flat == 0) {
      EXPECT_EQ(buffer.data(), as<Char>(row.value));
      EXPECT_TRUE(buffer.guardsIntact());
    } else {
      EXPECT_TRUE(buffer.untouched());
    }
    const auto seen = log.take();
    ASSERT_EQ(seen.size(), 4u);
    EXPECT_EQ(seen[3], records({{TXLOG_EXIT, flat + L" (" + std::to_wstring(row.flat) + L")"}})[0]);
  }
  SetEnvironmentVariableW(L"SystemDrive", L"C:");
}

}  // namespace
}  // namespace sysfacts
