// The functions by width.
#ifndef SYSFACTS_FORMS_H
#define SYSFACTS_FORMS_H

#include <support/guardedbuffer.h>
#include <support/machinetest.h>
#include <support/records.h>
#include <vlhostkit/vlhostkit.h>

namespace sysfacts {

using namespace support;

struct Narrow {
  using Char = char;
  static constexpr const wchar_t *letter = L"A", *ansi = L" (ANSI)";
  static constexpr auto convertSid = &vlSysConvertSIDA;
  static constexpr auto obtainSid = &vlSysObtainSIDA;
  static constexpr auto userSid = &vlSysGetUserSIDA;
  static constexpr auto fixedDrive = &vlSysGetFixedDriveA;
  static constexpr auto systemDrive = &vlSysGetSystemDriveA;
};
struct Wide {
  using Char = wchar_t;
  static constexpr const wchar_t *letter = L"W", *ansi = L"";
  static constexpr auto convertSid = &vlSysConvertSIDW;
  static constexpr auto obtainSid = &vlSysObtainSIDW;
  static constexpr auto userSid = &vlSysGetUserSIDW;
  static constexpr auto fixedDrive = &vlSysGetFixedDriveW;
  static constexpr auto systemDrive = &vlSysGetSystemDriveW;
};
using Widths = testing::Types<Narrow, Wide>;

}  // namespace sysfacts

#endif
