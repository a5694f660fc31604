// A key of its own for each test, and what its log must be.
#ifndef REGISTRY_FIXTURE_H
#define REGISTRY_FIXTURE_H

#include <chrono>
#include <sstream>

#include <support/failingcall.h>
#include <support/guardedbuffer.h>
#include <support/logcapture.h>
#include <support/machinetest.h>
#include <support/registrykey.h>
#include <vlhostkit/vlhostkit.h>

namespace registry {

using namespace std::string_view_literals;
using support::Bytes;
using support::bytesOf;
using support::FailingCall;
using support::Key;
using support::LogRecord;
using Lines = std::vector<std::pair<int, std::wstring>>;

inline const HKEY kRoot = HKEY_LOCAL_MACHINE;
inline constexpr const wchar_t* kMissing = L"SOFTWARE\\VelorinTest\\Missing";
inline constexpr DWORD kSections[] = {0, KEY_WOW64_64KEY, KEY_WOW64_32KEY};
inline constexpr DWORD kBadSections[] = {1, 0x300, 0x80000000, 0xFFFFFFFF};

inline std::wstring hex(DWORD number) {
  std::wostringstream out;
  out << L"0x" << std::hex << number;
  return out.str();
}
inline Lines badSection(const std::wstring& function, DWORD section) {
  return {{TXLOG_ERROR, function + L" : Desired registry section incorrect (" + hex(section) + L")"}};
}
// The lines of a function with an entry and an exit, and what lies between.
inline Lines framed(const std::wstring& function, int result, const Lines& inner) {
  Lines lines{{TXLOG_ENTRY, function}};
  lines.insert(lines.end(), inner.begin(), inner.end());
  lines.emplace_back(TXLOG_EXIT, function + L" : ret=(" + std::to_wstring(result) + L")");
  return lines;
}

class RegistryTest : public support::MachineTest {
 protected:
  // The path of the test's key, or of one below it.
  static std::wstring path(const std::wstring& below = {}) {
    static const auto unique = std::chrono::steady_clock::now().time_since_epoch().count();
    return L"SOFTWARE\\VelorinTest\\" + std::to_wstring(unique) + (below.empty() ? L"" : L"\\") + below;
  }
  static void create(const std::wstring& below) { Key::create(path(below)); }

  void TearDown() override {
    for (const DWORD view : {KEY_WOW64_64KEY, KEY_WOW64_32KEY}) {
      const Key software(L"SOFTWARE", view);
      RegDeleteTreeW(software.get(), L"VelorinTest");
      RegDeleteKeyW(software.get(), L"VelorinTest");
    }
    MachineTest::TearDown();
  }

  // Takes the log, which must be these lines of the family; `data` is that of the one binary record, if any.
  testing::AssertionResult logged(const Lines& lines, const Bytes& data = {}) {
    std::vector<LogRecord> expected;
    for (const auto& [level, text] : lines) {
      const bool binary = text == L"vlRegReadBinaryValueEx : RegQueryValueEx returns";
      expected.push_back({L"VLHOSTKIT", level, text, binary ? data : Bytes()});
    }
    return log.was(expected);
  }

  support::LogCapture log;
};

}  // namespace registry

#endif
