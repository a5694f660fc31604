// The read of any type: the probe, and the readers it goes on to.
#include "fixture.h"

namespace registry {
namespace {

const std::wstring kName = L"vlRegReadValueEx";

class ReadValue : public RegistryTest {
 protected:
  support::GuardedBuffer<BYTE> buffer{32};
  DWORD type = REG_DWORD;
  DWORD bytes = 32;
};

TEST_F(ReadValue, RefusesArguments) {
  for (const DWORD section : kBadSections) {
    EXPECT_EQ(vlRegReadValueEx(kRoot, nullptr, nullptr, nullptr, nullptr, nullptr, section), -3);
    EXPECT_TRUE(logged(framed(kName, -3, badSection(kName, section))));
  }
  for (const int null : {0, 1, 2}) {
    for (BYTE* const data : {buffer.data(), static_cast<BYTE*>(nullptr)}) {
      EXPECT_EQ(vlRegReadValue(kRoot, null == 0 ? nullptr : kMissing, L"v", null == 1 ? nullptr : &type, data,
                               null == 2 ? nullptr : &bytes),
                -3);
      EXPECT_TRUE(logged(framed(kName, -3, {{TXLOG_TRACE, kName + L" : pszKey or pdwValue is NULL"}})));
    }
  }
  EXPECT_EQ(type, DWORD{REG_DWORD});
  for (const DWORD noReader : {0u, 2u, 5u, 12u, 0xFFFFFFFFu}) {
    type = noReader;
    EXPECT_EQ(vlRegReadValueEx(kRoot, kMissing, L"v", &type, buffer.data(), &bytes, 0), -4);
    EXPECT_TRUE(logged(framed(kName, -4, {})));
    EXPECT_EQ(type, noReader);
  }
  EXPECT_TRUE(buffer.untouched());
  EXPECT_EQ(bytes, 32u);
}

TEST_F(ReadValue, ProbesThenReads) {
  const struct {
    DWORD type;
    Bytes data;
    std::wstring reader;
    std::wstring shown;
  } rows[] = {{REG_SZ, bytesOf(L"abc\0"sv), L"vlRegReadStringValueExW", L" abc"},
              {REG_EXPAND_SZ, bytesOf(L"%abc%\0"sv), L"", L""},
              {REG_BINARY, {1, 2, 3}, L"vlRegReadBinaryValueEx", L""},
              {REG_DWORD, {0xff, 0xff, 0xff, 0xff}, L"vlRegReadDWORDValueExW", L" DWORD -1"},
              {REG_MULTI_SZ, bytesOf(L"a\0b\0\0"sv), L"vlRegReadMultiStringValueExW", L" a"},
              {REG_QWORD, {5, 0, 0, 0, 1, 0, 0, 0}, L"vlRegReadQWORDValueExW", L" QWORD 5"},
              {REG_NONE, {}, L"", L""}};
  const Key key = Key::create(path(), KEY_WOW64_32KEY);
  for (const auto& row : rows) {
    key.set(L"v", row.type, row.data);
    EXPECT_EQ(vlRegReadValueEx(kRoot, path().c_str(), L"v", &type, nullptr, &bytes, KEY_WOW64_32KEY), 0);
    EXPECT_EQ(type, row.type);
    EXPECT_EQ(bytes, row.data.size());
    EXPECT_TRUE(
        logged(framed(kName, 0,
                      {{TXLOG_TRACE, kName + L" : RegQueryValueEx returns type " + std::to_wstring(type)},
                       {TXLOG_TRACE, kName + L" : RegQueryValueEx returns length " + std::to_wstring(bytes)}})));

    // Of a type of fixed size the count is neither read nor set.
    const bool fixed = type == REG_DWORD || type == REG_QWORD;
    const std::size_t filled = row.reader.empty() ? 0 : row.data.size();
    const int result = row.reader.empty() ? -4 : 0;
    buffer.refill();
    bytes = fixed ? 1 : 32;
    EXPECT_EQ(vlRegReadValueEx(kRoot, path().c_str(), L"v", &type, buffer.data(), &bytes, KEY_WOW64_32KEY), result);
    EXPECT_EQ(bytes, fixed ? 1 : row.reader.empty() ? 32 : filled);
    EXPECT_TRUE(filled == 0 || Bytes(buffer.data(), buffer.data() + filled) == row.data);
    EXPECT_TRUE(buffer.untouched(filled));
    const Lines inner{{TXLOG_TRACE, row.reader + L" : RegQueryValueEx returns" + row.shown}};
    EXPECT_TRUE(logged(framed(kName, result, row.reader.empty() ? Lines() : framed(row.reader, 0, inner)), row.data));
  }
}

TEST_F(ReadValue, HandsOnTheReadersFailure) {
  const Key key = Key::create(path());
  key.set(L"8", REG_QWORD, Bytes(8));
  key.set(L"9", REG_QWORD, Bytes(9));
  const struct {
    const wchar_t* value;
    DWORD type, bytes;
    int result;
  } rows[] = {{L"8", REG_SZ, 8, -4},
              {L"8", REG_SZ, 7, -2},
              {L"8", REG_DWORD, 8, -1},
              {L"9", REG_QWORD, 32, -1},
              {L"none", REG_BINARY, 8, -1}};
  for (const auto& row : rows) {
    type = row.type;
    bytes = row.bytes;
    EXPECT_EQ(vlRegReadValue(kRoot, path().c_str(), row.value, &type, buffer.data(), &bytes), row.result);
    EXPECT_EQ(bytes, row.bytes);
  }
}

TEST_F(ReadValue, AProbeThatFailsLeavesTheSize) {
  EXPECT_EQ(vlRegReadValue(kRoot, kMissing, L"v", &type, nullptr, &bytes), -1);
  EXPECT_TRUE(logged(framed(kName, -1, {{TXLOG_TRACE, kName + L" : RegOpenKeyEx failed 0x2"}})));
  create(L"");
  EXPECT_EQ(vlRegReadValue(kRoot, path().c_str(), L"v", &type, nullptr, &bytes), -1);
  EXPECT_TRUE(logged(framed(kName, -1, {{TXLOG_TRACE, kName + L" : RegQueryValueEx fails 0x2"}})));
  EXPECT_EQ(bytes, 32u);
}

}  // namespace
}  // namespace registry
