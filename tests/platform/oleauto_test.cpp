// Automation arrays and strings.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>

#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using vlplatform::FaultSpan;
using vlplatform::Resource;

class Automation : public support::MachineTest {
 protected:
  static std::int64_t arrays() { return machine().counters().open(Resource::safeArray); }
  static std::int64_t strings() { return machine().counters().open(Resource::automationString); }
};

TEST_F(Automation, ElementTypes) {
  const std::pair<VARTYPE, UINT> rows[] = {
      {VT_I1, 1},
      {VT_UI1, 1},
      {VT_I2, 2},
      {VT_UI2, 2},
      {VT_BOOL, 2},
      {VT_I4, 4},
      {VT_UI4, 4},
      {VT_INT, 4},
      {VT_UINT, 4},
      {VT_ERROR, 4},
      {VT_R4, 4},
      {VT_R8, 8},
      {VT_I8, 8},
      {VT_UI8, 8},
      {VT_CY, 8},
      {VT_DATE, 8},
      {VT_BSTR, sizeof(BSTR)},
      {VT_VARIANT, 24},
  };
  for (const auto& [type, size] : rows) {
    SAFEARRAYBOUND bound = {5, 0};
    SAFEARRAY* const array = SafeArrayCreate(type, 1, &bound);
    ASSERT_NE(array, nullptr) << type;
    EXPECT_EQ(SafeArrayGetElemsize(array), size) << type;
    void* data = nullptr;
    ASSERT_EQ(SafeArrayAccessData(array, &data), S_OK);
    const auto* const bytes = static_cast<const unsigned char*>(data);
    EXPECT_TRUE(std::all_of(bytes, bytes + 5 * size, [](unsigned char byte) { return byte == 0; })) << type;
    std::memset(data, type == VT_BSTR ? 0 : 0xbd, 5 * size);  // all of it is there
    EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  }
}

TEST_F(Automation, BoundsLieLastDimensionFirst) {
  SAFEARRAYBOUND bounds[] = {{2, -1}, {3, 10}, {4, 0}};
  SAFEARRAY* const array = SafeArrayCreate(VT_I4, 3, bounds);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(SafeArrayGetDim(array), 3u);
  const SAFEARRAYBOUND* const stored = &array->rgsabound[0];
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(stored[i].cElements, bounds[2 - i].cElements);
    EXPECT_EQ(stored[i].lLbound, bounds[2 - i].lLbound);
  }
  EXPECT_EQ(array->fFeatures, FADF_HAVEVARTYPE);
  EXPECT_EQ(arrays(), 1);
  std::memset(array->pvData, 1, 2 * 3 * 4 * 4);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(Automation, WhatCanNotBeCreatedIsNull) {
  SAFEARRAYBOUND one = {1, 0};
  SAFEARRAYBOUND tooMany[] = {{0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}, {0xFFFFFFFF, 0}};
  SAFEARRAYBOUND tooMuch[] = {{0xFFFFFFFF, 0}, {0x7FFFFFFF, 0}};
  EXPECT_EQ(SafeArrayCreate(VT_EMPTY, 1, &one), nullptr);
  EXPECT_EQ(SafeArrayCreate(9999, 1, &one), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 0, &one), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 1, nullptr), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 65536, &one), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 3, tooMany), nullptr);
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 2, tooMuch), nullptr);
  EXPECT_EQ(SafeArrayGetDim(nullptr), 0u);
  EXPECT_EQ(SafeArrayGetElemsize(nullptr), 0u);
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(nullptr), E_INVALIDARG);
  void* data = &one;
  EXPECT_EQ(SafeArrayAccessData(nullptr, &data), E_INVALIDARG);
  SAFEARRAYBOUND none = {0, 0};
  SAFEARRAY* const empty = SafeArrayCreate(VT_BSTR, 1, &none);
  ASSERT_NE(empty, nullptr);
  EXPECT_EQ(SafeArrayAccessData(empty, nullptr), E_INVALIDARG);
  EXPECT_EQ(SafeArrayDestroy(empty), S_OK);
}

TEST_F(Automation, LocksAreCounted) {
  SAFEARRAYBOUND bound = {1, 0};
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 1, &bound);
  void* data = nullptr;
  EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(SafeArrayAccessData(array, &data), S_OK);
  EXPECT_EQ(array->cLocks, 2u);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayDestroy(array), DISP_E_ARRAYISLOCKED);
  EXPECT_EQ(arrays(), 1);
  EXPECT_EQ(SafeArrayUnaccessData(array), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(array), E_UNEXPECTED);
  array->cLocks = 0xFFFF;
  EXPECT_EQ(SafeArrayAccessData(array, &data), E_UNEXPECTED);
  EXPECT_EQ(data, nullptr);
  EXPECT_EQ(array->cLocks, 0xFFFFu);
  array->cLocks = 0;
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
}

TEST_F(Automation, AnArrayOwnsItsStrings) {
  SAFEARRAYBOUND bound = {3, 0};
  SAFEARRAY* const array = SafeArrayCreate(VT_BSTR, 1, &bound);
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(array->fFeatures, FADF_HAVEVARTYPE | FADF_BSTR);
  auto* const elements = static_cast<BSTR*>(array->pvData);
  elements[0] = SysAllocString(L"a");
  elements[2] = SysAllocString(L"b");
  EXPECT_EQ(strings(), 2);
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);
  expectNothingOpen();
}

TEST_F(Automation, Strings) {
  const std::wstring inner(L"a\0b", 3);
  const struct {
    BSTR text;
    std::wstring expected;
  } rows[] = {
      {SysAllocString(L"abc"), L"abc"},
      {SysAllocString(L""), L""},
      {SysAllocStringLen(inner.data(), 3), inner},
      {SysAllocStringLen(L"abc", 2), L"ab"},
      {SysAllocStringLen(nullptr, 2), std::wstring(2, L'\0')},
      {SysAllocStringByteLen(reinterpret_cast<const char*>(L"xyz"), 3 * sizeof(wchar_t)), L"xyz"},
      {SysAllocStringByteLen(nullptr, 0), L""},
  };
  EXPECT_EQ(strings(), static_cast<std::int64_t>(std::size(rows)));
  for (const auto& row : rows) {
    ASSERT_NE(row.text, nullptr);
    EXPECT_EQ(std::wstring(row.text, row.expected.size() + 1), row.expected + L'\0');
    EXPECT_EQ(SysStringLen(row.text), row.expected.size());
    UINT ahead = 0;
    std::memcpy(&ahead, reinterpret_cast<const char*>(row.text) - sizeof ahead, sizeof ahead);
    EXPECT_EQ(ahead, row.expected.size() * sizeof(wchar_t));
    EXPECT_EQ(SysStringByteLen(row.text), ahead);
    SysFreeString(row.text);
  }
  // Bytes that are no whole number of characters: a whole terminator behind the last one that was begun.
  const BSTR odd = SysAllocStringByteLen("\1\1\1\1\1", 5);
  ASSERT_NE(odd, nullptr);
  EXPECT_EQ(SysStringByteLen(odd), 5u);
  EXPECT_EQ(SysStringLen(odd), 1u);
  EXPECT_EQ(std::wstring(odd), (std::wstring{0x01010101, 0x01}));
  SysFreeString(odd);

  SysFreeString(nullptr);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringLen(nullptr), 0u);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFF), nullptr);
  EXPECT_EQ(SysAllocStringByteLen(nullptr, 0xFFFFFFFF), nullptr);
}

TEST_F(Automation, PlannedFaults) {
  SAFEARRAYBOUND bound = {1, 0};
  faults().fail("SafeArrayCreate");
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 1, &bound), nullptr);
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 1, &bound);
  void* const untouched = &bound;
  void* data = untouched;
  const struct {
    const char* name;
    DWORD code;
    HRESULT result;
  } rows[] = {
      {"SafeArrayAccessData", static_cast<DWORD>(E_OUTOFMEMORY), E_OUTOFMEMORY},
      {"SafeArrayAccessData", 5, E_FAIL},
      {"SafeArrayUnaccessData", static_cast<DWORD>(E_UNEXPECTED), E_UNEXPECTED},
      {"SafeArrayUnaccessData", 5, E_FAIL},
      {"SafeArrayDestroy", static_cast<DWORD>(DISP_E_ARRAYISLOCKED), DISP_E_ARRAYISLOCKED},
      {"SafeArrayDestroy", 5, E_FAIL},
  };
  for (const auto& row : rows) {
    array->cLocks = row.name == std::string("SafeArrayDestroy") ? 0 : 1;
    const ULONG locksBefore = array->cLocks;
    faults().fail(row.name, 1, FaultSpan::once, row.code);
    const HRESULT result = row.name == std::string("SafeArrayAccessData")     ? SafeArrayAccessData(array, &data)
                           : row.name == std::string("SafeArrayUnaccessData") ? SafeArrayUnaccessData(array)
                                                                              : SafeArrayDestroy(array);
    EXPECT_EQ(result, row.result) << row.name;
    EXPECT_EQ(data, untouched) << row.name;
    EXPECT_EQ(arrays(), 1) << row.name;
    EXPECT_EQ(array->cLocks, locksBefore) << row.name;
  }
  EXPECT_EQ(SafeArrayDestroy(array), S_OK);

  faults().fail("SysAllocString");
  EXPECT_EQ(SysAllocString(L"a"), nullptr);
  faults().fail("SysAllocStringLen");
  EXPECT_EQ(SysAllocStringLen(L"a", 1), nullptr);
  faults().fail("SysAllocStringByteLen");
  EXPECT_EQ(SysAllocStringByteLen("a", 1), nullptr);
  // What can't fail does its work.
  const BSTR text = SysAllocString(L"ab");
  for (const char* const name : {"SysStringLen", "SysStringByteLen", "SysFreeString"}) {
    faults().fail(name);
  }
  EXPECT_EQ(SysStringLen(text), 2u);
  EXPECT_EQ(SysStringByteLen(text), 2 * sizeof(wchar_t));
  SysFreeString(text);
  expectNothingOpen();
}

}  // namespace
