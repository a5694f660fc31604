// A folder of the test's own on C:, a session of the installer, and the list of what the restart is to remove.
#ifndef INSTALLER_FIXTURE_H
#define INSTALLER_FIXTURE_H

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <support/machinetest.h>
#include <support/registrykey.h>
#include <vlhostkit/vlhostkit.h>

#ifdef _WIN32
#include <msidefs.h>
#include <msiquery.h>
#else
#include <unistd.h>
#endif

namespace installer {

namespace fs = std::filesystem;
using namespace std::string_literals;
using namespace std::string_view_literals;
using support::Bytes;
using support::Key;
using Texts = std::vector<std::wstring>;

// A session with nothing to install.
class Session {
 public:
#ifdef _WIN32
  Session() {
    MSIHANDLE database = 0, summary = 0;
    MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    EXPECT_EQ(MsiOpenDatabaseW(L"vltest-installer.msi", MSIDBOPEN_CREATE, &database), 0u);
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
  ~Session() {
    MsiCloseHandle(handle);
    DeleteFileW(L"vltest-installer.msi");
  }
#endif
  void set(const wchar_t* name, const std::wstring& value) const {
    MsiSetPropertyW(handle, name, value.c_str());
  }
  std::wstring get(const wchar_t* name) const {
    wchar_t text[64] = L"";
    DWORD chars = 64;
    MsiGetPropertyW(handle, name, text, &chars);
    return text;
  }
#ifdef _WIN32
  MSIHANDLE handle = 0;
#else
  MSIHANDLE handle = vlplatform::machine().installer().open();
#endif
};

class InstallerTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
#ifndef _WIN32
    root = fs::temp_directory_path() / ("vltest-installer-" + std::to_string(getpid()));
    fs::create_directories(root);
    machine().files().setRoot(root);
#endif
    session.emplace();
    clear();
    SetEnvironmentVariableW(L"CommonProgramFiles", path(L"Common").c_str());
  }
  void TearDown() override {
#ifdef _WIN32
    std::for_each(held_.begin(), held_.end(), &CloseHandle);
#endif
    clear();
    session.reset();
    fs::remove_all(root);
    MachineTest::TearDown();
  }

  static std::wstring path(const std::wstring& below) {
    return L"C:\\VlTest\\" + below;
  }
  // Where that is for the test itself.
  fs::path real(std::wstring below) const {
    std::replace(below.begin(), below.end(), L'\\', L'/');
    return (root.empty() ? fs::path("C:/") : root) / "VlTest" / fs::path(below);
  }
  void makeFile(const std::wstring& below) const {
    fs::create_directories(real(below).parent_path());
    std::ofstream(real(below)) << "text";
  }
  // What the restart is to remove, without "\??\C:\VlTest\".
  static Texts marks() {
    const auto value = Key(kRestartKey).stored(kRestartValue);
    const auto* next = value ? reinterpret_cast<const wchar_t*>(value->second.data()) : L"";
    Texts texts;
    for (const std::wstring known = L"\\??\\" + path(L""); *next != L'\0'; next += std::wcslen(next) + 2) {
      texts.emplace_back(std::wstring_view(next).starts_with(known) ? next + known.size() : next);
    }
    return texts;
  }
  // Keeps a file open until the test ends.
  void hold(const std::wstring& below) {
#ifdef _WIN32
    held_.push_back(CreateFileW(path(below).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
#else
    machine().files().setInUse(path(below));
#endif
  }

  std::optional<Session> session;
  fs::path root;  // native: what stands for C:

 private:
  static constexpr const wchar_t* kRestartKey = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
  static constexpr const wchar_t* kRestartValue = L"PendingFileRenameOperations";
  void clear() const {
    RegDeleteValueW(Key(kRestartKey).get(), kRestartValue);
    fs::remove_all(real(L""));
  }
#ifdef _WIN32
  std::vector<HANDLE> held_;
#endif
};

inline const std::wstring kMerged = L"Product\\Resources\\Merged\\";
inline const std::wstring kShared = L"Common\\Velorin\\Resources\\Merged\\";

}  // namespace installer

#endif
