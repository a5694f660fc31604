// A folder of the test's own on C:, and a session of the installer.
#ifndef INSTALLER_FIXTURE_H
#define INSTALLER_FIXTURE_H

#include <algorithm>
#include <filesystem>
#include <fstream>
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
using Texts = std::vector<std::wstring>;

inline constexpr const wchar_t* kRestartKey = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
inline constexpr const wchar_t* kRestartValue = L"PendingFileRenameOperations";

#ifdef _WIN32
// A session without anything to install.
class Session {
 public:
  Session() {
    MsiSetInternalUI(INSTALLUILEVEL_NONE, nullptr);
    MSIHANDLE database = 0;
    MSIHANDLE summary = 0;
    EXPECT_EQ(MsiOpenDatabaseW(L"vltest-installer.msi", MSIDBOPEN_CREATE, &database), 0u);
    EXPECT_EQ(MsiGetSummaryInformationW(database, nullptr, 5, &summary), 0u);
    MsiSummaryInfoSetPropertyW(summary, PID_TEMPLATE, VT_LPSTR, 0, nullptr, L"x64;1033");
    MsiSummaryInfoSetPropertyW(summary, PID_REVNUMBER, VT_LPSTR, 0, nullptr, L"{8F4F7A50-5B0C-4A0C-9D0A-6D2B8A1B7C11}");
    MsiSummaryInfoSetPropertyW(summary, PID_PAGECOUNT, VT_I4, 200, nullptr, nullptr);
    MsiSummaryInfoSetPropertyW(summary, PID_WORDCOUNT, VT_I4, 0, nullptr, nullptr);
    MsiSummaryInfoPersist(summary);
    MsiCloseHandle(summary);
    const std::wstring package = L"#" + std::to_wstring(database);
    EXPECT_EQ(MsiOpenPackageExW(package.c_str(), MSIOPENPACKAGEFLAGS_IGNOREMACHINESTATE, &handle_), 0u);
    MsiCloseHandle(database);
  }
  ~Session() {
    MsiCloseHandle(handle_);
    DeleteFileW(L"vltest-installer.msi");
  }
  void set(const wchar_t* name, const std::wstring& value) { MsiSetPropertyW(handle_, name, value.c_str()); }
  std::wstring get(const wchar_t* name) const {
    wchar_t text[64] = L"";
    DWORD chars = 64;
    MsiGetPropertyW(handle_, name, text, &chars);
    return text;
  }
  MSIHANDLE handle() const { return handle_; }

 private:
  MSIHANDLE handle_ = 0;
};
#else
class Session {
 public:
  ~Session() { vlplatform::machine().installer().close(handle_); }
  void set(const wchar_t* name, const std::wstring& value) {
    vlplatform::machine().installer().setProperty(handle_, name, value);
  }
  std::wstring get(const wchar_t* name) const { return *vlplatform::machine().installer().property(handle_, name); }
  MSIHANDLE handle() const { return handle_; }

 private:
  MSIHANDLE handle_ = vlplatform::machine().installer().open();
};
#endif

class InstallerTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
#ifndef _WIN32
    root_ = fs::temp_directory_path() / ("vltest-installer-" + std::to_string(getpid()));
    fs::remove_all(root_);
    fs::create_directories(root_);
    machine().files().setRoot(root_);
#endif
    session.emplace();
    removeMarks();
    fs::remove_all(real(L""));
    SetEnvironmentVariableW(L"CommonProgramFiles", path(L"Common").c_str());
  }
  void TearDown() override {
    session.reset();
    release();
    removeMarks();
    fs::remove_all(real(L""));
#ifndef _WIN32
    fs::remove_all(root_);
#endif
    MachineTest::TearDown();
  }

  static std::wstring path(const std::wstring& below) {
    return L"C:\\VlTest\\" + below;
  }
  // Where that is for the test itself.
  fs::path real(const std::wstring& below) const {
#ifdef _WIN32
    return path(below);
#else
    std::wstring names = L"VlTest/" + below;
    std::replace(names.begin(), names.end(), L'\\', L'/');
    return root_ / fs::path(names);
#endif
  }
  void makeFile(const std::wstring& below) const {
    fs::create_directories(real(below).parent_path());
    std::ofstream(real(below)) << "text";
  }
  // What there is, folders with a backslash behind them.
  std::set<std::wstring> found() const {
    std::set<std::wstring> names;
    std::error_code none;
    for (fs::recursive_directory_iterator next(real(L""), none), end; next != end; ++next) {
      std::wstring name = fs::relative(next->path(), real(L"")).generic_wstring();
      std::replace(name.begin(), name.end(), L'/', L'\\');
      names.insert(next->is_directory() && !next->is_symlink() ? name + L'\\' : name);
    }
    return names;
  }
  // What is to be removed at the restart, without "\??\C:\VlTest\".
  static Texts marks() {
    const auto value = support::Key(kRestartKey).stored(kRestartValue);
    Texts texts;
    if (!value) {
      return texts;
    }
    const std::wstring list(reinterpret_cast<const wchar_t*>(value->second.data()),
                            value->second.size() / sizeof(wchar_t));
    for (std::size_t at = 0; at < list.size() && list[at] != L'\0'; at += texts.back().size() + 2) {
      texts.emplace_back(list.c_str() + at);
    }
    for (std::wstring& text : texts) {
      const std::wstring known = L"\\??\\" + path(L"");
      text = text.starts_with(known) ? text.substr(known.size()) : text;
    }
    return texts;
  }
  // Holds a file open until the test ends.
  void hold(const std::wstring& below) {
#ifdef _WIN32
    held_.push_back(CreateFileW(path(below).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_NE(held_.back(), INVALID_HANDLE_VALUE);
#else
    machine().files().setInUse(path(below));
#endif
  }
  void protect(const std::wstring& below) const {
    fs::permissions(real(below), fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write,
                    fs::perm_options::remove);
  }
  void unprotect(const std::wstring& below) const {
    fs::permissions(real(below), fs::perms::owner_write, fs::perm_options::add);
  }

  std::optional<Session> session;

 private:
  static void removeMarks() {
    RegDeleteValueW(support::Key(kRestartKey).get(), kRestartValue);
  }
  void release() {
#ifdef _WIN32
    for (const HANDLE file : held_) {
      CloseHandle(file);
    }
  }
  std::vector<HANDLE> held_;
#else
  }
  fs::path root_;
#endif
};

}  // namespace installer

#endif
