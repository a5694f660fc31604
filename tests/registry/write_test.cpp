#include <functional>

#include "fixture.h"

namespace registry {
namespace {

// A member of the family: both forms, called with bytes.
struct Writer {
  std::wstring name;
  DWORD type;
  std::function<int(const wchar_t* path, const wchar_t* value, const Bytes& data)> plain;
  std::function<int(const wchar_t* path, const wchar_t* value, const Bytes& data, DWORD section)> ex;
  Bytes data{1, 2, 3};  // no terminator, no whole character: nobody looks
};
void PrintTo(const Writer& writer, std::ostream* out) {
  *out << testing::PrintToString(writer.name);
}

std::vector<Writer> writers() {
  const auto sized = [](auto function) {
    return [=](auto path, auto value, const Bytes& data, auto... section) {
      Bytes padded = data;
      padded.push_back(0x7f);  // as in support::Key::set
      padded.push_back(0x7f);
      return function(kRoot, path, value, padded.data(), static_cast<DWORD>(data.size()), section...);
    };
  };
  const auto dword = [](auto function) {
    return [=](auto path, auto value, const Bytes&, auto... section) {
      return function(kRoot, path, value, DWORD{0x04030201}, section...);
    };
  };
  return {
      {L"vlRegWriteDWORDValueEx", REG_DWORD, dword(vlRegWriteDWORDValue), dword(vlRegWriteDWORDValueEx), {1, 2, 3, 4}},
      {L"vlRegWriteStringValueEx", REG_SZ, sized(vlRegWriteStringValue), sized(vlRegWriteStringValueEx)},
      {L"vlRegWriteMultiStringValueEx", REG_MULTI_SZ, sized(vlRegWriteMultiStringValue),
       sized(vlRegWriteMultiStringValueEx)},
      {L"vlRegWriteBinaryValueEx", REG_BINARY, sized(vlRegWriteBinaryValue), sized(vlRegWriteBinaryValueEx)}};
}

class Write : public RegistryTest, public testing::WithParamInterface<Writer> {
 protected:
  void expectLine(int result, const std::wstring& line) {
    EXPECT_TRUE(logged(framed(writer.name, result, {{TXLOG_TRACE, writer.name + line}})));
  }
  const Writer& writer = GetParam();
  const std::wstring deep = path(L"a\\b");
};

TEST_P(Write, RefusesArgumentsAndTouchesNothing) {
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(writer.ex(section == 1 ? nullptr : deep.c_str(), L"v", writer.data, section), -3);
    EXPECT_TRUE(logged(framed(writer.name, -3, badSection(writer.name, section))));
  }
  EXPECT_EQ(writer.plain(nullptr, L"v", writer.data), -3);
  expectLine(-3, L" : pszKey is NULL");
  EXPECT_FALSE(Key(path()));
}

TEST_P(Write, StoresInTheViewWithAllKeysOfThePathWhateverWasThere) {
  const auto expected = std::pair{writer.type, writer.data};
  for (const DWORD view : {KEY_WOW64_32KEY, KEY_WOW64_64KEY}) {
    EXPECT_FALSE(Key(path(), view));
    EXPECT_EQ(writer.ex(deep.c_str(), L"v", writer.data, static_cast<DWORD>(view)), 0);
    expectLine(0, L" : RegSetValueEx returns 0x0");
    EXPECT_EQ(Key(deep, view).stored(L"v"), expected);
  }
  const Key key(deep);
  key.set(nullptr, REG_EXPAND_SZ, Bytes(9));
  EXPECT_EQ(writer.plain(deep.c_str(), nullptr, writer.data), 0);
  expectLine(0, L" : RegSetValueEx returns 0x0");
  EXPECT_EQ(key.stored(nullptr), expected);
  if (writer.type != REG_DWORD) {
    EXPECT_EQ(writer.plain(deep.c_str(), L"empty", {}), 0);
    EXPECT_EQ(key.stored(L"empty"), (std::pair{writer.type, Bytes()}));
  }
}

TEST_P(Write, FailsWithThePlatform) {
  create(L"");
  Key::create(path(L"a"), 0, REG_OPTION_VOLATILE);
  EXPECT_EQ(writer.plain(deep.c_str(), L"v", writer.data), -1);
  expectLine(-1, L" : RegCreateKeyEx failed 0x3fd");  // the child of a volatile key must be volatile
  EXPECT_FALSE(Key(deep));
  {
    const FailingCall fault("RegSetValueExW", ERROR_ACCESS_DENIED);
    EXPECT_EQ(writer.plain(path(L"new").c_str(), L"v", writer.data), -1);
  }
  expectLine(-1, L" : RegSetValueEx returns 0x5");
  EXPECT_TRUE(Key(path(L"new")));
  EXPECT_FALSE(Key(path(L"new")).stored(L"v"));
}

INSTANTIATE_TEST_SUITE_P(Members, Write, testing::ValuesIn(writers()));

}  // namespace
}  // namespace registry
