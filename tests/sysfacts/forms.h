// The functions by width.
#ifndef SYSFACTS_FORMS_H
#define SYSFACTS_FORMS_H

#include <cstdint>
#include <cstdio>
#include <string>

#include <support/guardedbuffer.h>
#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/vlhostkit.h>

namespace sysfacts {

using support::GuardedBuffer;
using support::kUntouchedError;
using support::LogRecord;
using Lines = std::vector<std::pair<int, std::wstring>>;

struct Narrow {
  using Char = char;
  static constexpr wchar_t letter = L'A';
  static constexpr const wchar_t* ansi = L" (ANSI)";
  static constexpr auto convertSid = &vlSysConvertSIDA;
  static constexpr auto obtainSid = &vlSysObtainSIDA;
  static constexpr auto userSid = &vlSysGetUserSIDA;
  static constexpr auto fixedDrive = &vlSysGetFixedDriveA;
  static constexpr auto systemDrive = &vlSysGetSystemDriveA;
};
struct Wide {
  using Char = wchar_t;
  static constexpr wchar_t letter = L'W';
  static constexpr const wchar_t* ansi = L"";
  static constexpr auto convertSid = &vlSysConvertSIDW;
  static constexpr auto obtainSid = &vlSysObtainSIDW;
  static constexpr auto userSid = &vlSysGetUserSIDW;
  static constexpr auto fixedDrive = &vlSysGetFixedDriveW;
  static constexpr auto systemDrive = &vlSysGetSystemDriveW;
};
using Widths = testing::Types<Narrow, Wide>;

template <class Char>
std::basic_string<Char> as(std::wstring_view ascii) {
  return {ascii.begin(), ascii.end()};
}
inline std::wstring pointer(const void* value) {
  wchar_t digits[24];
  std::swprintf(digits, 24, L"%016llX", static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(value)));
  return digits;
}
inline std::vector<LogRecord> records(const Lines& lines) {
  std::vector<LogRecord> result;
  for (const auto& [level, text] : lines) {
    result.push_back({L"txhostkit", level, text});
  }
  return result;
}

}  // namespace sysfacts

#endif
