// The reads of one type, in both widths.
#include <functional>

#include "fixture.h"

namespace registry {
namespace {

// A member of the family, called with a buffer of bytes and wide names whatever it takes.
struct Reader {
  std::wstring name;
  DWORD type;
  std::wstring typeName;
  std::function<int(const wchar_t* path, const wchar_t* value, BYTE* data, DWORD* bytes, DWORD section)> call;
  Bytes stored, read;
  std::wstring shown{};  // of the value, in the record
  bool fixed = false;
  std::wstring letter{};  // behind the platform's calls in the records of failures
};
void PrintTo(const Reader& reader, std::ostream* out) {
  *out << testing::PrintToString(reader.name);
}

template <class Function>
auto wide(Function function) {
  return [=](auto path, auto value, auto... rest) { return function(kRoot, path, value, rest...); };
}
template <class Function>
auto narrow(Function function) {
  return [=](const wchar_t* path, const wchar_t* value, auto... rest) {
    const auto copy = [](const wchar_t* text) { return std::wstring_view(text == nullptr ? L"" : text); };
    const std::string narrowPath(copy(path).begin(), copy(path).end());
    const std::string narrowValue(copy(value).begin(), copy(value).end());
    return function(kRoot, path == nullptr ? nullptr : narrowPath.c_str(),
                    value == nullptr ? nullptr : narrowValue.c_str(), rest...);
  };
}
template <class Function>
auto dword(Function function) {
  return [=](HKEY root, auto path, auto value, BYTE* data, DWORD*, DWORD section) {
    return function(root, path, value, reinterpret_cast<DWORD*>(data), section);
  };
}

std::vector<Reader> readers() {
  const Bytes number = {0x67, 0x12, 0, 0};
  const Bytes text = bytesOf(L"abc\0"sv);
  const Bytes list = bytesOf(L"abc\0de\0\0"sv);
  return {{L"vlRegReadDWORDValueExW", REG_DWORD, L"DWORD", wide(dword(vlRegReadDWORDValueExW)), number, number,
           L" DWORD 4711", true},
          {L"vlRegReadDWORDValueExA", REG_DWORD, L"DWORD", narrow(dword(vlRegReadDWORDValueExA)), number, number,
           L" DWORD 4711", true},
          {L"vlRegReadStringValueExW", REG_SZ, L"REG_SZ", wide(vlRegReadStringValueExW), text, text, L" abc"},
          {L"vlRegReadStringValueExA", REG_SZ, L"REG_SZ", narrow(vlRegReadStringValueExA), text, bytesOf("abc\0"sv),
           L" abc"},
          {L"vlRegReadMultiStringValueExW", REG_MULTI_SZ, L"REG_MULTI_SZ", wide(vlRegReadMultiStringValueExW), list,
           list, L" abc"},
          {L"vlRegReadMultiStringValueExA", REG_MULTI_SZ, L"REG_MULTI_SZ", narrow(vlRegReadMultiStringValueExA), list,
           bytesOf("abc\0de\0\0"sv), L" abc", false, L"A"},
          {L"vlRegReadBinaryValueEx", REG_BINARY, L"REG_BINARY", wide(vlRegReadBinaryValueEx), {9, 8, 7}, {9, 8, 7}}};
}

class Read : public RegistryTest, public testing::WithParamInterface<Reader> {
 protected:
  // Reads the test's value and looks at result and log; `line` is all that is logged between entry and exit.
  void expectRead(int result, const std::wstring& line, BYTE* data, DWORD capacity, DWORD section = 0) {
    bytes = capacity;
    EXPECT_EQ(reader.call(key.c_str(), value, data, &bytes, section), result);
    EXPECT_TRUE(logged(framed(reader.name, result, {{TXLOG_TRACE, reader.name + line}}), reader.read));
  }
  Bytes got(std::size_t count, std::size_t offset = 0) const {
    return Bytes(buffer.data() + offset, buffer.data() + offset + count);
  }

  const Reader& reader = GetParam();
  const std::wstring returned = L" : RegQueryValueEx returns" + reader.shown;
  const DWORD size = static_cast<DWORD>(reader.read.size());
  std::wstring key = path();
  const wchar_t* value = L"v";
  support::GuardedBuffer<BYTE> buffer{64};
  DWORD bytes = 0;
};

TEST_P(Read, RefusesTheSectionBeforeAllElseAndThenNullPointers) {
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(reader.call(nullptr, nullptr, nullptr, nullptr, section), -3);
    EXPECT_TRUE(logged(framed(reader.name, -3, badSection(reader.name, section))));
  }
  const Lines null = framed(reader.name, -3, {{TXLOG_TRACE, reader.name + L" : pszKey or pdwValue is NULL"}});
  bytes = 64;
  EXPECT_EQ(reader.call(nullptr, L"v", buffer.data(), &bytes, KEY_WOW64_64KEY), -3);
  EXPECT_TRUE(logged(null));
  EXPECT_EQ(reader.call(kMissing, L"v", reader.fixed ? nullptr : buffer.data(), nullptr, 0), -3);
  EXPECT_TRUE(logged(null));
  EXPECT_TRUE(buffer.untouched());
  EXPECT_EQ(bytes, 64u);
}

TEST_P(Read, ReadsTheViewThatIsAskedForToAnyAddress) {
  Key::create(key, KEY_WOW64_64KEY).set(value, reader.type, reader.stored);
  const Key key32 = Key::create(key, KEY_WOW64_32KEY);
  for (const DWORD section : {DWORD{0}, DWORD{KEY_WOW64_64KEY}}) {
    for (const std::size_t offset : {std::size_t{0}, std::size_t{1}}) {
      buffer.refill();
      expectRead(0, returned, buffer.data() + offset, 40, section);
      EXPECT_EQ(bytes, reader.fixed ? 40 : size);
      EXPECT_EQ(got(size, offset), reader.read);
      EXPECT_TRUE(buffer.untouched(offset + size));
    }
  }
  expectRead(-1, L" : RegQueryValueEx" + reader.letter + L" fails 0x2", buffer.data(), 40, KEY_WOW64_32KEY);
  key32.set(nullptr, reader.type, reader.stored);
  value = nullptr;
  expectRead(0, returned, buffer.data(), size, KEY_WOW64_32KEY);
}

TEST_P(Read, FailsAndLeavesTheOutputs) {
  create(L"");
  value = L"none";
  expectRead(-1, L" : RegQueryValueEx" + reader.letter + L" fails 0x2", buffer.data(), 64);
  EXPECT_EQ(bytes, 64u);
  key = kMissing;
  expectRead(-1, L" : RegOpenKeyEx" + reader.letter + L" failed 0x2", buffer.data(), 64);
  EXPECT_EQ(bytes, 64u);
  EXPECT_TRUE(buffer.untouched());
}

TEST_P(Read, FailsOnABufferThatIsTooSmall) {
  Key::create(key).set(value, reader.type, reader.fixed ? Bytes(8) : reader.stored);
  expectRead(reader.fixed ? -1 : -2, L" : RegQueryValueEx" + reader.letter + L" fails 0xea", buffer.data(), size - 1);
  EXPECT_EQ(bytes, size - 1);
  EXPECT_TRUE(buffer.untouched(reader.fixed ? 4 : size - 1));
}

TEST_P(Read, RefusesOtherTypes) {
  const DWORD type = reader.type == REG_BINARY ? REG_DWORD : REG_BINARY;
  const std::wstring line =
      L" : RegQueryValueEx returns type " + std::to_wstring(type) + L" instead of " + reader.typeName;
  Key::create(key).set(value, type, {1, 2, 3, 4});
  expectRead(-4, line, buffer.data(), 64);
  EXPECT_EQ(bytes, reader.fixed ? 64u : 4u);
  EXPECT_EQ(got(4), (Bytes{1, 2, 3, 4}));
  if (!reader.fixed) {
    expectRead(-4, line, nullptr, 0);
    EXPECT_EQ(bytes, 4u);
  }
  Key(key).set(value, REG_EXPAND_SZ, {});
  expectRead(-4, L" : RegQueryValueEx returns type 2 instead of " + reader.typeName, buffer.data(), 64);
}

TEST_P(Read, TellsTheSizeInBytes) {
  if (!reader.fixed) {
    Key::create(key).set(value, reader.type, reader.stored);
    expectRead(0, L" : RegQueryValueEx returns length " + std::to_wstring(size), nullptr, 0xbdbdbdbd);
    EXPECT_EQ(bytes, size);
  }
}

INSTANTIATE_TEST_SUITE_P(Members, Read, testing::ValuesIn(readers()));

class RawText : public RegistryTest {};

// What lies behind the buffer is no zero: a record that went on there would show it.
TEST_F(RawText, ComesBackAsStoredAndIsLoggedWithinItsBounds) {
  const std::wstring longest(5000, L'x');
  Bytes odd = bytesOf(L"abc"sv);
  odd.push_back(0x21);
  const std::pair<Bytes, std::wstring> rows[] = {{bytesOf(L"abc"sv), L"abc"},
                                                 {odd, L"abc"},
                                                 {{}, L""},
                                                 {{0x41}, L""},
                                                 {bytesOf(L"\0"sv), L""},
                                                 {bytesOf(L"abc\0de\0"sv), L"abc"},
                                                 {bytesOf(std::wstring_view(longest)), longest}};
  const Key key = Key::create(path());
  for (const Reader& reader : readers()) {
    for (const auto& [stored, shown] : rows) {
      const bool narrow = reader.read.size() != reader.stored.size();
      if (reader.fixed || reader.type == REG_BINARY || (narrow && stored.size() % sizeof(wchar_t) != 0)) {
        continue;
      }
      key.set(L"v", reader.type, stored);
      const std::size_t size = narrow ? stored.size() / sizeof(wchar_t) : stored.size();
      support::GuardedBuffer<BYTE> buffer(size < 2 ? 8 : size);  // Wine writes a terminator even into no room at all
      DWORD bytes = static_cast<DWORD>(buffer.size());
      EXPECT_EQ(reader.call(path().c_str(), L"v", buffer.data(), &bytes, 0), 0);
      EXPECT_EQ(bytes, size);
      EXPECT_TRUE(narrow || Bytes(buffer.data(), buffer.data() + size) == stored);
      EXPECT_TRUE(buffer.guardsIntact());
      const std::wstring line = (reader.name + L" : RegQueryValueEx returns " + shown).substr(0, TXLOG_MAX_TEXT);
      EXPECT_TRUE(logged(framed(reader.name, 0, {{TXLOG_TRACE, line}})));
    }
  }
}

TEST_F(RawText, FormsWithoutSuffixAreTheWideFunction) {
  const Key key = Key::create(path());
  key.set(L"d", REG_DWORD, {1, 0, 0, 0});
  key.set(L"s", REG_SZ, bytesOf(L"s\0"sv));
  key.set(L"m", REG_MULTI_SZ, bytesOf(L"m\0\0"sv));
  key.set(L"b", REG_BINARY, {1});
  const std::wstring here = path();
  const auto expect = [&](const std::wstring& name, auto plain, auto ex, auto... arguments) {
    EXPECT_EQ(plain(kRoot, here.c_str(), arguments...), 0);
    const auto records = log.take();
    EXPECT_EQ(records.size(), 3u);
    EXPECT_EQ(records.front().text, name);
    EXPECT_EQ(ex(kRoot, here.c_str(), arguments..., DWORD{KEY_WOW64_64KEY}), 0);
    EXPECT_TRUE(log.was(records));
    EXPECT_EQ(ex(kRoot, here.c_str(), arguments..., DWORD{KEY_WOW64_32KEY}), -1);  // there is no such key
    log.take();
  };
  BYTE data[64];
  DWORD bytes = sizeof data;
  DWORD number = 0;
  expect(L"vlRegReadDWORDValueExW", vlRegReadDWORDValue, vlRegReadDWORDValueEx, L"d", &number);
  expect(L"vlRegReadStringValueExW", vlRegReadStringValue, vlRegReadStringValueEx, L"s", data, &bytes);
  bytes = sizeof data;
  expect(L"vlRegReadMultiStringValueExW", vlRegReadMultiStringValue, vlRegReadMultiStringValueEx, L"m", data, &bytes);
  expect(L"vlRegReadBinaryValueEx", vlRegReadBinaryValue, vlRegReadBinaryValueEx, L"b", data, &bytes);
}

}  // namespace
}  // namespace registry
