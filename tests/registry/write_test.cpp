#include "fixture.h"

namespace registry {
namespace {

class Write : public RegistryTest {
 protected:
  // The whole behaviour of a member, called with `data`: the arguments between the value's name and the section.
  template <class Plain, class Ex, class... Data>
  void check(const std::wstring& name, DWORD type, Plain plain, Ex ex, Data... data) {
    const std::wstring deep = path(L"a\\b");
    const auto expected = std::pair{type, Bytes{1, 2, 3, 0x7f}};  // nobody looks for a terminator
    expectSectionTestedFirst(name, [&](DWORD section) { return ex(kRoot, nullptr, nullptr, data..., section); });
    EXPECT_EQ(ex(kRoot, deep.c_str(), L"v", data..., 0x300), -3);
    log.take();
    EXPECT_EQ(plain(kRoot, nullptr, L"v", data...), -3);
    EXPECT_TRUE(tracedOnce(name, -3, L" : pszKey is NULL"));
    for (const DWORD view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
      EXPECT_FALSE(Key(path(), view));
      EXPECT_EQ(ex(kRoot, deep.c_str(), L"v", data..., view), 0);
      EXPECT_TRUE(tracedOnce(name, 0, L" : RegSetValueEx returns 0x0"));
      EXPECT_EQ(Key(deep, view).stored(L"v"), expected);
    }
    Key(deep).set(nullptr, REG_EXPAND_SZ, Bytes(9));
    EXPECT_EQ(plain(kRoot, deep.c_str(), nullptr, data...), 0);
    EXPECT_TRUE(tracedOnce(name, 0, L" : RegSetValueEx returns 0x0"));
    EXPECT_EQ(Key(deep).stored(nullptr), expected);
    Key::create(path(L"volatile"), 0, REG_OPTION_VOLATILE);  // whose subkeys must be volatile too
    EXPECT_EQ(plain(kRoot, path(L"volatile\\b").c_str(), L"v", data...), -1);
    EXPECT_TRUE(tracedOnce(name, -1, L" : RegCreateKeyEx failed 0x3fd"));
    const std::wstring tooLong(16384, L'v');
    EXPECT_EQ(plain(kRoot, path(L"new").c_str(), tooLong.c_str(), data...), -1);
    EXPECT_TRUE(tracedOnce(name, -1, L" : RegSetValueEx returns 0x57"));
    EXPECT_TRUE(Key(path(L"new")));
  }

  const void* bytes = "\x01\x02\x03\x7f\x7f\x7f\x7f\x7f";  // no zero behind them, see support::Key::set
};

TEST_F(Write, Dword) {
  check(L"vlRegWriteDWORDValueEx", REG_DWORD, vlRegWriteDWORDValue, vlRegWriteDWORDValueEx, 0x7f030201u);
}
TEST_F(Write, String) {
  check(L"vlRegWriteStringValueEx", REG_SZ, vlRegWriteStringValue, vlRegWriteStringValueEx, bytes, 4u);
  EXPECT_EQ(vlRegWriteStringValue(kRoot, path().c_str(), L"empty", bytes, 0), 0);
  EXPECT_EQ(Key(path()).stored(L"empty"), (std::pair{DWORD{REG_SZ}, Bytes()}));
}
TEST_F(Write, MultiString) {
  const auto plain = vlRegWriteMultiStringValue;
  check(L"vlRegWriteMultiStringValueEx", REG_MULTI_SZ, plain, vlRegWriteMultiStringValueEx, bytes, 4u);
}
TEST_F(Write, Binary) {
  check(L"vlRegWriteBinaryValueEx", REG_BINARY, vlRegWriteBinaryValue, vlRegWriteBinaryValueEx, bytes, 4u);
}

}  // namespace
}  // namespace registry
