// The reads: of one type in both widths, with the one that is not exported, and of any type.
#include "registry/read.h"
#include "fixture.h"

namespace registry {
namespace {

// A member of the family, called with wide names and a buffer of bytes whatever it takes.
struct Reader {
  std::wstring name;
  DWORD type;
  std::wstring typeName;
  std::function<int(const wchar_t* path, const wchar_t* value, BYTE* data, DWORD* bytes, DWORD section)> call;
  Bytes stored, read;
  std::wstring shown{};  // of the value, in the record

  bool narrow() const { return name.back() == L'A'; }
  bool fixed() const { return type == REG_DWORD || type == REG_QWORD; }
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
    const std::wstring_view pathView(path == nullptr ? L"" : path), valueView(value == nullptr ? L"" : value);
    const std::string paths(pathView.begin(), pathView.end()), values(valueView.begin(), valueView.end());
    return function(kRoot, path ? paths.c_str() : nullptr, value ? values.c_str() : nullptr, rest...);
  };
}
template <class Value, class Function>
auto fixed(Function function) {
  return [=](HKEY root, auto path, auto value, BYTE* data, DWORD*, DWORD section) {
    return function(root, path, value, reinterpret_cast<Value*>(data), section);
  };
}

std::vector<Reader> readers() {
  const Bytes number = {0x67, 0x12, 0, 0}, large = {0x67, 0x12, 0, 0, 1, 0, 0, 0}, binary = {9, 8, 7};
  const Bytes text = bytesOf(L"abc\0"sv), list = bytesOf(L"abc\0de\0\0"sv);
  const auto dwordW = wide(fixed<DWORD>(vlRegReadDWORDValueExW));
  const auto dwordA = narrow(fixed<DWORD>(vlRegReadDWORDValueExA));
  const auto qword = wide(fixed<ULONGLONG>(vlRegReadQWORDValueExW));
  const auto listW = wide(vlRegReadMultiStringValueExW);
  const auto listA = narrow(vlRegReadMultiStringValueExA);
  return {
      {L"vlRegReadDWORDValueExW", REG_DWORD, L"DWORD", dwordW, number, number, L" DWORD 4711"},
      {L"vlRegReadDWORDValueExA", REG_DWORD, L"DWORD", dwordA, number, number, L" DWORD 4711"},
      {L"vlRegReadQWORDValueExW", REG_QWORD, L"QWORD", qword, large, large, L" QWORD 4711"},
      {L"vlRegReadStringValueExW", REG_SZ, L"REG_SZ", wide(vlRegReadStringValueExW), text, text, L" abc"},
      {L"vlRegReadStringValueExA", REG_SZ, L"REG_SZ", narrow(vlRegReadStringValueExA), text, bytesOf("abc\0"sv),
       L" abc"},
      {L"vlRegReadMultiStringValueExW", REG_MULTI_SZ, L"REG_MULTI_SZ", listW, list, list, L" abc"},
      {L"vlRegReadMultiStringValueExA", REG_MULTI_SZ, L"REG_MULTI_SZ", listA, list, bytesOf("abc\0de\0\0"sv), L" abc"},
      {L"vlRegReadBinaryValueEx", REG_BINARY, L"REG_BINARY", wide(vlRegReadBinaryValueEx), binary, binary},
  };
}

class Read : public RegistryTest, public testing::WithParamInterface<Reader> {
 protected:
  // Reads the test's value, also by way of the read of any type, and looks at result, log and count; `line` is all that
  // is logged between entry and exit.
  void expectRead(int result, const std::wstring& line, BYTE* data, DWORD before, DWORD after, DWORD section = 0) {
    const Lines lines = framed(reader.name, result, {{TXLOG_TRACE, reader.name + line}});
    DWORD bytes = before;
    EXPECT_EQ(reader.call(key.c_str(), value, data, &bytes, section), result);
    EXPECT_TRUE(logged(lines, reader.read));
    EXPECT_EQ(bytes, reader.fixed() ? before : after);
    if (data != nullptr && !reader.narrow()) {
      DWORD type = reader.type;
      bytes = before;
      EXPECT_EQ(vlRegReadValueEx(kRoot, key.c_str(), value, &type, data, &bytes, section), result);
      EXPECT_TRUE(logged(framed(L"vlRegReadValueEx", result, lines), reader.read));
      EXPECT_EQ(bytes, reader.fixed() ? before : after);
    }
  }
  Bytes got(std::size_t count, std::size_t offset = 0) const {
    return {buffer.data() + offset, buffer.data() + offset + count};
  }

  const Reader& reader = GetParam();
  const std::wstring letter = reader.name == L"vlRegReadMultiStringValueExA" ? L"A" : L"";
  const std::wstring returned = L" : RegQueryValueEx returns" + reader.shown;
  const std::wstring queryFailed = L" : RegQueryValueEx" + letter + L" fails 0x";
  const DWORD size = static_cast<DWORD>(reader.read.size());
  std::wstring key = path();
  const wchar_t* value = L"v";
  support::GuardedBuffer<BYTE> buffer{64};
};

TEST_P(Read, RefusesArguments) {
  expectSectionTestedFirst(reader.name,
                           [&](DWORD section) { return reader.call(nullptr, nullptr, nullptr, nullptr, section); });
  const std::wstring line =
      reader.type == REG_QWORD ? L" : pszKey or pullValue is NULL" : L" : pszKey or pdwValue is NULL";
  DWORD bytes = 64;
  EXPECT_EQ(reader.call(nullptr, L"v", buffer.data(), &bytes, KEY_WOW64_64KEY), -3);
  EXPECT_TRUE(tracedOnce(reader.name, -3, line));
  EXPECT_EQ(reader.call(kMissing, L"v", reader.fixed() ? nullptr : buffer.data(), nullptr, 0), -3);
  EXPECT_TRUE(tracedOnce(reader.name, -3, line));
  EXPECT_TRUE(buffer.untouched());
  EXPECT_EQ(bytes, 64u);
}

TEST_P(Read, ReadsTheViewThatIsAskedForToAnyAddress) {
  Key::create(key, support::kOwnView).set(value, reader.type, reader.stored);
  const Key other = Key::create(key, support::kOtherView);
  for (const DWORD section : {DWORD{0}, support::kOwnView}) {
    for (const std::size_t offset : {std::size_t{0}, std::size_t{1}}) {
      buffer.refill();
      expectRead(0, returned, buffer.data() + offset, 40, size, section);
      EXPECT_EQ(got(size, offset), reader.read);
      EXPECT_TRUE(buffer.untouched(offset + size));
    }
  }
  expectRead(-1, queryFailed + L"2", buffer.data(), 40, 40, support::kOtherView);
  other.set(nullptr, reader.type, reader.stored);
  value = nullptr;
  expectRead(0, returned, buffer.data(), size, size, support::kOtherView);
}

TEST_P(Read, TellsTheSizeInBytesAndFailsOnABufferThatIsTooSmall) {
  Key::create(key).set(value, reader.type, reader.fixed() ? Bytes(size + 1) : reader.stored);
  if (!reader.fixed()) {
    expectRead(0, L" : RegQueryValueEx returns length " + std::to_wstring(size), nullptr, 0xbdbdbdbd, size);
  }
  expectRead(reader.fixed() ? -1 : -2, queryFailed + L"ea", buffer.data(), size - 1, size - 1);
  EXPECT_TRUE(buffer.untouched(reader.fixed() ? size : size - 1));
  buffer.refill();
  key = kMissing;
  expectRead(-1, L" : RegOpenKeyEx" + letter + L" failed 0x2", buffer.data(), 64, 64);
  EXPECT_TRUE(buffer.untouched());
}

TEST_P(Read, RefusesOtherTypes) {
  const DWORD other = reader.type == REG_BINARY ? REG_DWORD : REG_BINARY;
  for (const auto& [type, data] : {std::pair{other, Bytes{1, 2, 3, 4}}, {REG_EXPAND_SZ, Bytes()}}) {
    const std::wstring line = L" : RegQueryValueEx returns type " + std::to_wstring(type) + L" instead of ";
    const auto bytes = static_cast<DWORD>(data.size());
    Key::create(key).set(value, type, data);
    expectRead(-4, line + reader.typeName, buffer.data(), 64, bytes);
    EXPECT_EQ(got(bytes), data);
    if (!reader.fixed()) {
      expectRead(-4, line + reader.typeName, nullptr, 0, bytes);
    }
  }
}

// What lies behind the buffer is no zero: a record that went on there would show it.
TEST_P(Read, TextComesBackAsStoredAndIsLoggedWithinItsBounds) {
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
  for (const auto& [stored, shown] : rows) {
    const bool text = reader.type == REG_SZ || reader.type == REG_MULTI_SZ;
    if (text && (!reader.narrow() || stored.size() % sizeof(wchar_t) == 0)) {
      Key::create(key).set(value, reader.type, stored);
      const std::size_t length = reader.narrow() ? stored.size() / sizeof(wchar_t) : stored.size();
      support::GuardedBuffer<BYTE> exact(length < 2 ? 8 : length);  // Wine writes a terminator even into no room at all
      const std::wstring line = (reader.name + L" : RegQueryValueEx returns " + shown).substr(0, TXLOG_MAX_TEXT);
      expectRead(0, line.substr(reader.name.size()), exact.data(), static_cast<DWORD>(exact.size()),
                 static_cast<DWORD>(length));
      EXPECT_TRUE(reader.narrow() || Bytes(exact.data(), exact.data() + length) == stored);
      EXPECT_TRUE(exact.guardsIntact());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Members, Read, testing::ValuesIn(readers()));

class ReadForms : public RegistryTest {};

TEST_F(ReadForms, WithoutSuffixAreTheWideFunction) {
  BYTE data[64];
  DWORD number = 0, bytes = sizeof data;
  const auto expect = [&](const std::wstring& name, auto plain, auto ex, auto... arguments) {
    EXPECT_EQ(plain(kRoot, kMissing, L"v", arguments...), -1);
    EXPECT_TRUE(tracedOnce(name, -1, L" : RegOpenKeyEx failed 0x2"));
    EXPECT_EQ(ex(kRoot, kMissing, L"v", arguments..., 0x300), -3);
    EXPECT_EQ(log.take().front().text, name);
  };
  expect(L"vlRegReadDWORDValueExW", vlRegReadDWORDValue, vlRegReadDWORDValueEx, &number);
  expect(L"vlRegReadStringValueExW", vlRegReadStringValue, vlRegReadStringValueEx, data, &bytes);
  expect(L"vlRegReadMultiStringValueExW", vlRegReadMultiStringValue, vlRegReadMultiStringValueEx, data, &bytes);
  expect(L"vlRegReadBinaryValueEx", vlRegReadBinaryValue, vlRegReadBinaryValueEx, data, &bytes);
}

class ReadValue : public RegistryTest {
 protected:
  const std::wstring name = L"vlRegReadValueEx";
  DWORD type = REG_DWORD;
  DWORD bytes = 32;
};

TEST_F(ReadValue, RefusesArguments) {
  const auto call = [](DWORD section) { return vlRegReadValueEx(kRoot, {}, {}, {}, {}, {}, section); };
  expectSectionTestedFirst(name, call);
  support::GuardedBuffer<BYTE> buffer(8);
  for (BYTE* const data : {buffer.data(), static_cast<BYTE*>(nullptr)}) {
    EXPECT_EQ(vlRegReadValue(kRoot, nullptr, L"v", &type, data, &bytes), -3);
    EXPECT_TRUE(tracedOnce(name, -3, L" : pszKey or pdwValue is NULL"));
    EXPECT_EQ(vlRegReadValue(kRoot, kMissing, L"v", nullptr, data, &bytes), -3);
    EXPECT_EQ(vlRegReadValue(kRoot, kMissing, L"v", &type, data, nullptr), -3);
    log.take();
  }
  for (const DWORD noReader : {0u, 2u, 5u, 12u, 0xFFFFFFFFu}) {
    type = noReader;
    EXPECT_EQ(vlRegReadValueEx(kRoot, kMissing, L"v", &type, buffer.data(), &bytes, 0), -4);
    EXPECT_TRUE(logged(framed(name, -4, {})));
    EXPECT_EQ(type, noReader);
  }
  EXPECT_TRUE(buffer.untouched());
  EXPECT_EQ(bytes, 32u);
}

TEST_F(ReadValue, ProbesEveryType) {
  const auto probe = [&] { return vlRegReadValueEx(kRoot, path().c_str(), L"v", &type, {}, &bytes, KEY_WOW64_32KEY); };
  EXPECT_EQ(probe(), -1);
  EXPECT_TRUE(tracedOnce(name, -1, L" : RegOpenKeyEx failed 0x2"));
  const Key key = Key::create(path(), KEY_WOW64_32KEY);
  EXPECT_EQ(probe(), -1);
  EXPECT_TRUE(tracedOnce(name, -1, L" : RegQueryValueEx fails 0x2"));
  EXPECT_EQ(bytes, 32u);
  for (const DWORD stored : {0u, 1u, 2u, 3u, 4u, 7u, 11u, 99u}) {
    key.set(L"v", stored, Bytes(stored));
    EXPECT_EQ(probe(), 0);
    EXPECT_EQ(type, stored);
    EXPECT_EQ(bytes, stored);
    const std::wstring returns = name + L" : RegQueryValueEx returns ", number = std::to_wstring(stored);
    EXPECT_TRUE(logged(
        framed(name, 0, {{TXLOG_TRACE, returns + L"type " + number}, {TXLOG_TRACE, returns + L"length " + number}})));
  }
}

}  // namespace
}  // namespace registry
