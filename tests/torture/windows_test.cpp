// A sample of what the native driver does: calls that the library makes by its import table fail, one after the other.
#include <gtest/gtest.h>

#include <functional>

#include <support/guardedbuffer.h>
#include <support/importpatch.h>
#include <vlhostkit/vlhostkit.h>

namespace torture {
namespace {

INT_PTR returns() {
  return 4321;
}
INT_PTR reports() {
  return SetLastError(4321), 0;
}

TEST(Torture, CallsThatFailEndTheFunction) {
  const auto root = HKEY_LOCAL_MACHINE;
  const wchar_t* const key = L"SOFTWARE\\VelorinTest\\Torture";
  support::GuardedBuffer<wchar_t> buffer(256), other(256);
  DWORD size = 0, otherSize = 0;
  const std::function<int()> read = [&] { return vlRegReadStringValueExW(root, key, L"s", nullptr, &size, 0); };
  const std::function<int()> write = [&] { return vlRegWriteDWORDValueEx(root, key, L"d", 1, 0); };
  const std::function<int()> user = [&] {
    return vlNetGetCurrentProcessUserAndDomainW(buffer.data(), &size, other.data(), &otherSize);
  };
  const std::function<int()> fixed = [&] { return *buffer.data() = 0, vlSysGetFixedDriveW(buffer.data(), &size); };
  const std::function<int()> system = [&] { return vlSysGetSystemDriveW(buffer.data(), &size); };
  ASSERT_EQ(vlRegWriteStringValueEx(root, key, L"s", L"x", 2 * sizeof(wchar_t), 0), 0);
  const struct {
    const char* function;
    INT_PTR (*fails)();
    const std::function<int()>& call;
    int result;
  } rows[] = {{"RegOpenKeyExW", &returns, read, -1},
              {"RegQueryValueExW", &returns, read, -1},
              {"RegCreateKeyExW", &returns, write, -1},
              {"RegSetValueExW", &returns, write, -1},
              {"OpenProcessToken", &reports, user, 4321},
              {"GetTokenInformation", &reports, user, 4321},
              {"GetLogicalDriveStringsW", &reports, fixed, 4321},
              {"GetDriveTypeW", &reports, fixed, 15},
              {"GetEnvironmentVariableW", &reports, system, 4321}};
  for (const auto& row : rows) {
    size = otherSize = 256;
    EXPECT_EQ(row.call(), 0) << row.function;
    size = otherSize = 256;
    buffer.refill();
    const support::ImportPatch patch(L"vlhostkitu.dll", row.function, reinterpret_cast<FARPROC>(row.fails));
    EXPECT_EQ(row.call(), row.result) << row.function;
    EXPECT_TRUE(buffer.untouched(1) && other.guardsIntact()) << row.function;
  }
  vlRegDeleteKey(root, L"SOFTWARE\\VelorinTest", true, 0);
}

}  // namespace
}  // namespace torture
