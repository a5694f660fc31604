// The release of automation arrays and strings.
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <string>
#include <utility>
#include <vector>

#include <support/logcapture.h>
#include <support/machinetest.h>
#include <vlhostkit/securetext.h>

namespace securetext {
namespace {

class Release : public support::MachineTest {
 protected:
  static SAFEARRAY* filled(VARTYPE type, std::vector<SAFEARRAYBOUND> bounds, std::size_t bytes) {
    SAFEARRAY* const array = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    std::memset(array->pvData, 0xbd, bytes);
    return array;
  }
  static bool allAre(unsigned char value, const void* data, std::size_t bytes) {
    const auto* const first = static_cast<const unsigned char*>(data);
    return std::all_of(first, first + bytes, [=](unsigned char byte) { return byte == value; });
  }

  // Whether the log was these records: notes, and those that tell of a failure, errors.
  testing::AssertionResult logged(const std::vector<std::wstring>& texts) {
    std::vector<support::LogRecord> expected;
    for (const std::wstring& text : texts) {
      const bool fails = text.find(L" failed ") != std::wstring::npos;
      expected.push_back({L"txhostkit", fails ? TXLOG_ERROR : TXLOG_NOTE, text});
    }
    return log.was(expected);
  }
  // Releases an array of which there are `elements`, if they are told, with `failing` in the log.
  void expectRelease(SAFEARRAY* array, BOOL keep, HRESULT result, int size, std::size_t elements,
                     const std::wstring& failing = {}) {
    std::vector<std::wstring> texts = {
        L"psa = " + hex(reinterpret_cast<std::uintptr_t>(array)),
        L"sizeElem = " + std::to_wstring(size) + L", nDim = " + std::to_wstring(SafeArrayGetDim(array)),
        L"nbElem = " + std::to_wstring(elements), failing + L" failed hr = " + hex(result), L"hr = " + hex(result)};
    if (failing.empty()) {
      texts.erase(texts.begin() + 3);
    }
    if (failing == L"SafeArrayAccessData") {
      texts.erase(texts.begin() + 2);
    }
    for (std::wstring& text : texts) {
      text.insert(0, L"vlSafeArrayDestroy ");
    }
    EXPECT_EQ(vlSafeArrayDestroy(array, keep), result);
    EXPECT_TRUE(logged(texts));
  }
  static std::wstring hex(auto number) {
    wchar_t digits[16];
    std::swprintf(digits, std::size(digits), L"%x", static_cast<std::uint32_t>(number));
    return digits;
  }

  support::LogCapture log;
};

TEST_F(Release, NullArray) {
  EXPECT_EQ(vlSafeArrayDestroy(nullptr, FALSE), S_OK);
  EXPECT_TRUE(logged({L"vlSafeArrayDestroy psa = 0", L"vlSafeArrayDestroy hr = 0"}));
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
    SAFEARRAY* const array = filled(type, bounds, bytes);
    expectRelease(array, -5, S_OK, element, count);  // another number than 1 keeps it too
    EXPECT_EQ(array->cLocks, 0u);
    EXPECT_EQ(SafeArrayGetDim(array), bounds.size());
    EXPECT_EQ(array->rgsabound[0].cElements, bounds.back().cElements);
    EXPECT_EQ(array->rgsabound[0].lLbound, bounds.back().lLbound);
    EXPECT_TRUE(allAre(0, array->pvData, bytes));
    expectRelease(array, FALSE, S_OK, element, count);
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

TEST_F(Release, ArraysThatAreLockedOrWithoutDataStay) {
  constexpr const wchar_t* kAccess = L"SafeArrayAccessData";
  const struct {
    ULONG locks;
    bool hasData;
    HRESULT result;
    const wchar_t* failing;
    ULONG locksAfter;
  } rows[] = {{1, true, DISP_E_ARRAYISLOCKED, L"", 1},
              {0xFFFF, true, E_UNEXPECTED, kAccess, 0xFFFF},  // one more is refused
              {0, false, S_OK, kAccess, 1}};
  for (const auto& [locks, hasData, result, failing, locksAfter] : rows) {
    SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
    void* const data = array->pvData;
    array->cLocks = locks;
    array->pvData = hasData ? data : nullptr;
    expectRelease(array, FALSE, result, 1, 16, failing);
    EXPECT_TRUE(allAre(*failing == 0 ? 0 : 0xbd, data, 16));
    EXPECT_EQ(array->cLocks, locksAfter);
    array->pvData = data;
    array->cLocks = 0;
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
#ifndef _WIN32
  SAFEARRAY* const array = filled(VT_UI1, {{16, 0}}, 16);
  faults().fail("SafeArrayUnaccessData", 1, vlplatform::FaultSpan::once, static_cast<DWORD>(E_UNEXPECTED));
  expectRelease(array, FALSE, E_UNEXPECTED, 1, 16, L"SafeArrayUnaccessData");
  EXPECT_TRUE(allAre(0, array->pvData, 16));
  array->cLocks = 0;
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
#endif
}

TEST_F(Release, Strings) {
  const auto expectStringRelease = [this](BSTR text, BOOL keep, const std::wstring& before, const std::wstring& after) {
    vlSysFreeString(text, keep);
    const std::wstring shown = L"vlSysFreeString bstr = ";
    EXPECT_TRUE(logged({shown + before, shown + after, L"vlSysFreeString"}));
  };
  for (const BOOL keep : {FALSE, TRUE}) {
    expectStringRelease(nullptr, keep, L"(null)", L"(null)");
  }
  // The byte length counts, not that in characters.
  const std::pair<BSTR, std::wstring> rows[] = {{SysAllocString(L"secret"), L"secret"},
                                                {SysAllocString(L""), L""},
                                                {SysAllocStringLen(L"sec\0ret", 7), L"sec"},
                                                {SysAllocStringByteLen("\0\0\0\0\x01", 5), L""}};
  for (const auto& [text, shown] : rows) {
    const UINT bytes = SysStringByteLen(text);
    expectStringRelease(text, 2, shown, L"");
    EXPECT_EQ(SysStringByteLen(text), bytes);
    EXPECT_TRUE(allAre(0, text, bytes));
    expectStringRelease(text, FALSE, L"", L"");
  }
}

}  // namespace
}  // namespace securetext
