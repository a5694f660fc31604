/// The base of fixtures whose tests work in the registry.
#ifndef SUPPORT_REGISTRYTEST_H
#define SUPPORT_REGISTRYTEST_H

#include <chrono>
#include <string>

#include <support/logcapture.h>
#include <support/machinetest.h>
#include <support/registrykey.h>

namespace support {

/// Gives each test a key of its own below HKEY_LOCAL_MACHINE, in both views, which does not exist at first and is
/// deleted at the end; and captures the log.
class RegistryTest : public MachineTest {
 protected:
  /// The path of the test's key, or of one below it.
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

  LogCapture log;
};

}  // namespace support

#endif
