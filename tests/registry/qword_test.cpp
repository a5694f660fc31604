// The read that is not exported, where the generic read can't bring it.
#include "registry/read.h"

#include "fixture.h"

namespace registry {
namespace {

class ReadQword : public RegistryTest {};

TEST_F(ReadQword, HasRecordsOfItsOwn) {
  const std::wstring name = L"vlRegReadQWORDValueExW";
  ULONGLONG value = 77;
  EXPECT_EQ(vlRegReadQWORDValueExW(kRoot, nullptr, L"v", nullptr, 0x300), -3);
  EXPECT_TRUE(logged(framed(name, -3, badSection(name, 0x300))));
  for (const bool nullKey : {true, false}) {
    EXPECT_EQ(vlRegReadQWORDValueExW(kRoot, nullKey ? nullptr : kMissing, L"v", nullKey ? &value : nullptr, 0), -3);
    EXPECT_TRUE(logged(framed(name, -3, {{TXLOG_TRACE, name + L" : pszKey or pullValue is NULL"}})));
  }
  EXPECT_EQ(vlRegReadQWORDValueExW(kRoot, kMissing, L"v", &value, 0), -1);
  EXPECT_TRUE(logged(framed(name, -1, {{TXLOG_TRACE, name + L" : RegOpenKeyEx failed 0x2"}})));
  EXPECT_EQ(value, 77u);
  Key::create(path()).set(L"v", REG_DWORD, {1, 2, 3, 4});
  EXPECT_EQ(vlRegReadQWORDValueExW(kRoot, path().c_str(), L"v", &value, 0), -4);
  EXPECT_TRUE(logged(framed(name, -4, {{TXLOG_TRACE, name + L" : RegQueryValueEx returns type 4 instead of QWORD"}})));
}

}  // namespace
}  // namespace registry
