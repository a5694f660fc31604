// The release of automation arrays and strings.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>
#include <vector>

#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/securetext.h>

namespace securetext {
namespace {

using Records = std::vector<support::LogRecord>;

class Release : public support::MachineTest {
 protected:
  static support::LogRecord note(const std::wstring& text) { return {L"txhostkit", TXLOG_NOTE, text}; }
  static support::LogRecord error(const std::wstring& text) { return {L"txhostkit", TXLOG_ERROR, text}; }
  static support::LogRecord entry(const SAFEARRAY* array) {
    return formatted(L"vlSafeArrayDestroy psa = %x",
                     static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(array)));
  }
  static support::LogRecord sizes(int element, std::size_t dimensions) {
    return formatted(L"vlSafeArrayDestroy sizeElem = %d, nDim = %d", element, static_cast<int>(dimensions));
  }
  static support::LogRecord elements(std::size_t count) {
    return formatted(L"vlSafeArrayDestroy nbElem = %d", static_cast<int>(count));
  }
  static support::LogRecord exit(HRESULT result) { return formatted(L"vlSafeArrayDestroy hr = %x", result); }
  static support::LogRecord formatted(const wchar_t* format, auto... values) {
    wchar_t text[80];
    std::swprintf(text, std::size(text), format, values...);
    return note(text);
  }

  static SAFEARRAY* filled(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds, std::size_t bytes) {
    SAFEARRAY* const array = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    std::memset(array->pvData, 0xbd, bytes);
    return array;
  }
  static bool allAre(unsigned char value, const void* data, std::size_t bytes) {
    const auto* const first = static_cast<const unsigned char*>(data);
    return std::all_of(first, first + bytes, [=](unsigned char byte) { return byte == value; });
  }

  support::LogCapture log;
};

TEST_F(Release, NullArray) {
  for (const BOOL keep : {FALSE, TRUE}) {
    EXPECT_EQ(vlSafeArrayDestroy(nullptr, keep), S_OK);
    EXPECT_TRUE(log.was({note(L"vlSafeArrayDestroy psa = 0"), note(L"vlSafeArrayDestroy hr = 0")}));
  }
}

TEST_F(Release, ArraysOfAllShapes) {
  const struct {
    VARTYPE type;
    int element;
    std::vector<SAFEARRAYBOUND> bounds;
    std::size_t count;
  } shapes[] = {{VT_UI1, 1, {{5, 0}}, 5},
                {VT_I2, 2, {{0, 0}}, 0},
                {VT_R8, 8, {{2, 0}, {3, 1}, {4, -1}}, 24},
                {VT_R8, 8, {{2, 0}, {0, 1}, {4, -1}}, 0}};
  for (const auto& [type, element, bounds, count] : shapes) {
    const std::size_t bytes = count * static_cast<std::size_t>(element);
    const auto dimensions = static_cast<int>(bounds.size());
    SAFEARRAY* const array = filled(type, bounds, bytes);
    const Records expected = {entry(array), sizes(element, dimensions), elements(count), exit(S_OK)};

    // Another number than 1 keeps it too.
    EXPECT_EQ(vlSafeArrayDestroy(array, -5), S_OK);
    EXPECT_TRUE(log.was(expected));
    EXPECT_EQ(array->cLocks, 0u);
    EXPECT_EQ(SafeArrayGetDim(array), bounds.size());
    for (std::size_t i = 0; i < bounds.size(); ++i) {
      const SAFEARRAYBOUND& kept = array->rgsabound[bounds.size() - 1 - i];
      EXPECT_EQ(kept.cElements, bounds[i].cElements);
      EXPECT_EQ(kept.lLbound, bounds[i].lLbound);
    }
    EXPECT_TRUE(allAre(0, array->pvData, bytes));

    EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
    EXPECT_TRUE(log.was(expected));
  }
}

TEST_F(Release, ElementsAreZeroedNotReleased) {
  SAFEARRAY* const array = filled(VT_BSTR, {{2, 0}}, 0);
  BSTR const text = SysAllocString(L"secret");
  static_cast<BSTR*>(array->pvData)[1] = text;
  EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
  EXPECT_STREQ(text, L"secret");
  SysFreeString(text);
}

TEST_F(Release, ArraysThatAreLockedStay) {
  const struct {
    ULONG locks;
    HRESULT result;
    bool wiped;
  } rows[] = {{1, DISP_E_ARRAYISLOCKED, true}, {0xFFFF, E_UNEXPECTED, false}};  // one more is refused
  for (const auto& [locks, result, wiped] : rows) {
    SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
    array->cLocks = locks;
    EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), result);
    EXPECT_TRUE(log.was({entry(array), sizes(1, 1),
                         wiped ? elements(16) : error(L"vlSafeArrayDestroy SafeArrayAccessData failed hr = 8000ffff"),
                         exit(result)}));
    EXPECT_TRUE(allAre(wiped ? 0 : 0xbd, array->pvData, 16));
    EXPECT_EQ(array->cLocks, locks);
    array->cLocks = 0;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
}

TEST_F(Release, ArrayWithoutDataStaysLocked) {
  SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
  void* const data = std::exchange(array->pvData, nullptr);
  EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
  EXPECT_TRUE(
      log.was({entry(array), sizes(1, 1), error(L"vlSafeArrayDestroy SafeArrayAccessData failed hr = 0"), exit(S_OK)}));
  EXPECT_EQ(array->cLocks, 1u);
  array->pvData = data;
  EXPECT_TRUE(allAre(0xbd, data, 16));
  SafeArrayUnaccessData(array);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

#ifndef _WIN32
TEST_F(Release, StopsAtTheFirstFailure) {
  constexpr auto kFailure = static_cast<HRESULT>(0x8000ffffu);
  const std::vector<std::string> calls = {"SafeArrayAccessData", "SafeArrayUnaccessData", "SafeArrayDestroy"};
  for (std::size_t failing = 0; failing < calls.size(); ++failing) {
    const std::string& function = calls[failing];
    const bool wiped = failing != 0;
    SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
    faults().watch();
    faults().fail(function.c_str(), 1, vlplatform::FaultSpan::once, static_cast<DWORD>(kFailure));
    EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), kFailure) << function;
    Records expected = {entry(array), sizes(1, 1)};
    if (wiped) {
      expected.push_back(elements(16));
    }
    if (failing != 2) {
      expected.push_back(
          error(L"vlSafeArrayDestroy " + std::wstring(function.begin(), function.end()) + L" failed hr = 8000ffff"));
    }
    expected.push_back(exit(kFailure));
    EXPECT_TRUE(log.was(expected));
    for (std::size_t after = failing + 1; after < calls.size(); ++after) {
      EXPECT_EQ(faults().calls(calls[after].c_str()), 0u) << calls[after];
    }
    EXPECT_TRUE(allAre(wiped ? 0 : 0xbd, array->pvData, 16));
    array->cLocks = 0;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
}
#endif

TEST_F(Release, Strings) {
  const auto textNote = [](const std::wstring& text) { return note(L"vlSysFreeString bstr = " + text); };
  for (const BOOL keep : {FALSE, TRUE}) {
    vlSysFreeString(nullptr, keep);
    EXPECT_TRUE(log.was({textNote(L"(null)"), textNote(L"(null)"), note(L"vlSysFreeString")}));
  }
  const struct {
    BSTR text;
    std::wstring shown;
  } rows[] = {
      {SysAllocString(L"secret"), L"secret"}, {SysAllocString(L""), L""}, {SysAllocStringLen(L"sec\0ret", 7), L"sec"}};
  for (const auto& [text, shown] : rows) {
    const UINT bytes = SysStringByteLen(text);
    vlSysFreeString(text, 2);
    EXPECT_TRUE(log.was({textNote(shown), textNote(L""), note(L"vlSysFreeString")}));
    EXPECT_EQ(SysStringByteLen(text), bytes);
    EXPECT_TRUE(allAre(0, text, bytes));
    vlSysFreeString(text, FALSE);
    EXPECT_TRUE(log.was({textNote(L""), textNote(L""), note(L"vlSysFreeString")}));
  }
  // The byte length counts, not that in characters.
  BSTR const bytes = SysAllocStringByteLen("\x01\x01\x01\x01\x01", 5);
  vlSysFreeString(bytes, TRUE);
  EXPECT_TRUE(allAre(0, bytes, 5));
  EXPECT_EQ(SysStringByteLen(bytes), 5u);
  SysFreeString(bytes);
}

}  // namespace
}  // namespace securetext
