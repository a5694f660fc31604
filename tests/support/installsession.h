/// A session of the installer with nothing to install, on both targets.
#ifndef SUPPORT_INSTALLSESSION_H
#define SUPPORT_INSTALLSESSION_H

#include <gtest/gtest.h>

#include <string>

#include <vlhostkit/types.h>

#ifdef _WIN32
#include <msi.h>
#include <msidefs.h>
#include <msiquery.h>
#else
#include <vlplatform/machine.h>
#endif

namespace support {

/// Native: closed with the machine's reset. Windows: one at a time, with a package in the current folder; the program
/// links msi.
class InstallSession {
 public:
#ifdef _WIN32
  InstallSession() {
    MSIHANDLE database = 0, summary = 0;
    EXPECT_EQ(MsiOpenDatabaseW(kFile, MSIDBOPEN_CREATE, &database), 0u);
    EXPECT_EQ(MsiGetSummaryInformationW(database, nullptr, 4, &summary), 0u);
    MsiSummaryInfoSetPropertyW(summary, PID_TEMPLATE, VT_LPSTR, 0, nullptr, L"x64;1033");
    MsiSummaryInfoSetPropertyW(summary, PID_REVNUMBER, VT_LPSTR, 0, nullptr, L"{8F4F7A50-5B0C-4A0C-9D0A-6D2B8A1B7C11}");
    MsiSummaryInfoSetPropertyW(summary, PID_PAGECOUNT, VT_I4, 200, nullptr, nullptr);
    MsiSummaryInfoSetPropertyW(summary, PID_WORDCOUNT, VT_I4, 0, nullptr, nullptr);
    MsiSummaryInfoPersist(summary);
    MsiCloseHandle(summary);
    const std::wstring package = L"#" + std::to_wstring(database);
    EXPECT_EQ(MsiOpenPackageExW(package.c_str(), MSIOPENPACKAGEFLAGS_IGNOREMACHINESTATE, &handle), 0u);
    MsiCloseHandle(database);
  }
  ~InstallSession() {
    MsiCloseHandle(handle);
    DeleteFileW(kFile);
  }
  InstallSession(const InstallSession&) = delete;
  InstallSession& operator=(const InstallSession&) = delete;
#endif

  void set(const wchar_t* name, const std::wstring& value) const {
    MsiSetPropertyW(handle, name, value.c_str());
  }
  /// Up to 63 characters of it.
  std::wstring get(const wchar_t* name) const {
    wchar_t text[64] = L"";
    DWORD chars = 64;
    MsiGetPropertyW(handle, name, text, &chars);
    return text;
  }

#ifdef _WIN32
  static constexpr const wchar_t* kFile = L"vltest-installer.msi";
  MSIHANDLE handle = 0;
#else
  MSIHANDLE handle = vlplatform::machine().installer().open();
#endif
};

}  // namespace support

#endif
