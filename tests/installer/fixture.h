// A folder of the test's own on C:, a session of the installer, and the list of what the restart is to remove.
#ifndef INSTALLER_FIXTURE_H
#define INSTALLER_FIXTURE_H

#include <filesystem>
#include <fstream>
#include <functional>
#include <map>
#include <random>

#include <support/installsession.h>
#include <support/machinetest.h>
#include <support/registrykey.h>
#include <vlhostkit/vlhostkit.h>

namespace installer {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using support::Bytes;
using support::bytesOf;
using support::InstallSession;
using support::Key;
using Texts = std::vector<std::wstring>;

inline const std::wstring kProduct = L"C:\\VlTest\\Product\\";
inline const std::wstring kMerged = L"Product\\Resources\\Merged\\";
inline const std::wstring kShared = L"Common\\Velorin\\Resources\\Merged\\";

class InstallerTest : public support::MachineTest {
 protected:
  void SetUp() override {
    MachineTest::SetUp();
#ifndef _WIN32
    root = fs::temp_directory_path() / ("vltest-installer-" + std::to_string(std::random_device()()));
    fs::create_directories(root);
    machine().files().setRoot(root);
#endif
    session.emplace();
    clear();
    SetEnvironmentVariableW(L"CommonProgramFiles", path(L"Common").c_str());
  }
  void TearDown() override {
    CloseHandle(held);
    clear();
    session.reset();
    fs::remove_all(root);
    MachineTest::TearDown();
  }
  void clear() const {
    RegDeleteValueW(Key(kRestartKey).get(), kRestartValue);
    fs::remove_all(real(L""));
  }
  static std::wstring path(const std::wstring& below) {
    return L"C:\\VlTest\\" + below;
  }
  fs::path real(std::wstring below) const {
    std::replace(below.begin(), below.end(), L'\\', L'/');
    return (root.empty() ? fs::path("C:/") : root) / "VlTest" / fs::path(below);
  }
  bool there(const std::wstring& below) const {
    return fs::exists(real(below));
  }
  void makeFile(const std::wstring& below) const {
    fs::create_directories(real(below).parent_path());
    std::ofstream(real(below)) << "text";
  }
  DWORD run(DWORD(WINAPI* action)(MSIHANDLE), const std::wstring& property = kProduct) const {
    session->set(L"CustomActionData", property);
    return action(session->handle);
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

  static constexpr const wchar_t* kRestartKey = L"SYSTEM\\CurrentControlSet\\Control\\Session Manager";
  static constexpr const wchar_t* kRestartValue = L"PendingFileRenameOperations";
  std::optional<InstallSession> session;
  fs::path root;  // native: what stands for C:
  HANDLE held = nullptr;
};

}  // namespace installer

#endif
