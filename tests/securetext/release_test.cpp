// The release of automation arrays and strings.
#include <algorithm>
#include <cstdint>
#include <cstring>
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
  static std::wstring hex(std::uint32_t number) {
    constexpr const wchar_t* kDigits = L"0123456789abcdef";
    std::wstring digits;
    do {
      digits.insert(digits.begin(), kDigits[number % 16]);
      number /= 16;
    } while (number != 0);
    return digits;
  }
  static support::LogRecord entry(const SAFEARRAY* array) {
    return note(L"vlSafeArrayDestroy psa = " +
                hex(static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(array))));
  }
  static support::LogRecord sizes(int element, int dimensions) {
    return note(L"vlSafeArrayDestroy sizeElem = " + std::to_wstring(element) + L", nDim = " +
                std::to_wstring(dimensions));
  }
  static support::LogRecord elements(std::size_t count) {
    return note(L"vlSafeArrayDestroy nbElem = " + std::to_wstring(count));
  }
  static support::LogRecord exit(HRESULT result) {
    return note(L"vlSafeArrayDestroy hr = " + hex(static_cast<std::uint32_t>(result)));
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
                {VT_I4, 4, {{3, -7}}, 3},
                {VT_I2, 2, {{0, 0}}, 0},
                {VT_I2, 2, {{4, 0}, {3, 1}}, 12},
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

TEST_F(Release, ArrayThatTheCallerHasLockedIsWipedAndStays) {
  SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
  void* data = nullptr;
  ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), DISP_E_ARRAYISLOCKED);
  EXPECT_TRUE(log.was({entry(array), sizes(1, 1), elements(16), exit(DISP_E_ARRAYISLOCKED)}));
  EXPECT_TRUE(allAre(0, data, 16));
  EXPECT_EQ(array->cLocks, 1u);
  SafeArrayUnaccessData(array);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
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

TEST_F(Release, ArrayThatCannotBeAccessed) {
  SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
  array->cLocks = 0xFFFF;  // one more is refused
  EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), E_UNEXPECTED);
  EXPECT_TRUE(log.was({entry(array), sizes(1, 1), error(L"vlSafeArrayDestroy SafeArrayAccessData failed hr = 8000ffff"),
                       exit(E_UNEXPECTED)}));
  EXPECT_TRUE(allAre(0xbd, array->pvData, 16));
  array->cLocks = 0;
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

#ifndef _WIN32
TEST_F(Release, StopsAtTheFirstFailure) {
  constexpr auto kFailure = static_cast<HRESULT>(0x8000ffffu);
  const struct {
    const char* function;
    bool wiped;
    std::vector<const char*> notCalled;
  } rows[] = {{"SafeArrayAccessData", false, {"SafeArrayUnaccessData", "SafeArrayDestroy"}},
              {"SafeArrayUnaccessData", true, {"SafeArrayDestroy"}},
              {"SafeArrayDestroy", true, {}}};
  for (const auto& [function, wiped, notCalled] : rows) {
    SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
    faults().watch();
    faults().fail(function, 1, vlplatform::FaultSpan::once, static_cast<DWORD>(kFailure));
    EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), kFailure) << function;
    Records expected = {entry(array), sizes(1, 1)};
    if (wiped) {
      expected.push_back(elements(16));
    }
    if (!notCalled.empty()) {
      const std::string name(function);
      expected.push_back(
          error(L"vlSafeArrayDestroy " + std::wstring(name.begin(), name.end()) + L" failed hr = 8000ffff"));
    }
    expected.push_back(exit(kFailure));
    EXPECT_TRUE(log.was(expected));
    for (const char* const call : notCalled) {
      EXPECT_EQ(faults().calls(call), 0u) << call;
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
