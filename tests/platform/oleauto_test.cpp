// Automation arrays and strings; what the release of secrets does with them is among the tests of secure text.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include <support/machinetest.h>

#include <vlplatform/windows.h>

namespace {

using Automation = support::MachineTest;

TEST_F(Automation, ArraysLieAsThePlatformHasThem) {
  SAFEARRAYBOUND bounds[] = {{2, -1}, {3, 10}, {4, 0}};
  for (const auto& [type, size] : {std::pair<VARTYPE, std::size_t>{VT_UI1, 1},
                                   {VT_BOOL, 2},
                                   {VT_ERROR, 4},
                                   {VT_DATE, 8},
                                   {VT_BSTR, sizeof(BSTR)},
                                   {VT_VARIANT, 24}}) {
    SAFEARRAY* const array = SafeArrayCreate(type, 3, bounds);
    ASSERT_NE(array, nullptr) << type;
    EXPECT_EQ(SafeArrayGetElemsize(array), size) << type;
    const SAFEARRAYBOUND reversed[] = {bounds[2], bounds[1], bounds[0]};
    EXPECT_EQ(std::memcmp(array->rgsabound, reversed, sizeof reversed), 0);
    EXPECT_EQ(std::string(static_cast<char*>(array->pvData), 24 * size), std::string(24 * size, '\0')) << type;
    if (type == VT_BSTR) {
      static_cast<BSTR*>(array->pvData)[23] = SysAllocString(L"the array's own");
    }
    EXPECT_EQ(SafeArrayDestroy(array), S_OK);
    expectNothingOpen();
  }
}

TEST_F(Automation, WhatCanNotBeCreatedIsNull) {
  SAFEARRAYBOUND huge[] = {{0xFFFFFFFF, 0}, {0x7FFFFFFF, 0}, {0xFFFFFFFF, 0}};
  for (const auto& [type, dimensions] :
       {std::pair<VARTYPE, UINT>{VT_EMPTY, 1}, {9999, 1}, {VT_UI1, 0}, {VT_UI1, 65536}, {VT_UI1, 2}, {VT_UI1, 3}}) {
    EXPECT_EQ(SafeArrayCreate(type, dimensions, huge), nullptr) << type << " " << dimensions;
  }
  EXPECT_EQ(SafeArrayCreate(VT_UI1, 1, nullptr), nullptr);
  EXPECT_EQ(SafeArrayDestroy(nullptr), S_OK);
  EXPECT_EQ(SafeArrayUnaccessData(nullptr), E_INVALIDARG);
  EXPECT_EQ(SysAllocString(nullptr), nullptr);
  EXPECT_EQ(SysStringByteLen(nullptr), 0u);
  EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFF), nullptr);
}

TEST_F(Automation, Strings) {
  const std::wstring inner(L"a\0b", 3);
  const std::pair<BSTR, std::wstring> rows[] = {
      {SysAllocString(L"abc"), L"abc"},
      {SysAllocStringLen(inner.data(), 3), inner},
      {SysAllocStringLen(nullptr, 2), std::wstring(2, L'\0')},
      {SysAllocStringByteLen(reinterpret_cast<const char*>(L"xyz"), 3 * sizeof(wchar_t)), L"xyz"},
  };
  for (const auto& [text, expected] : rows) {
    EXPECT_EQ(std::wstring(text, expected.size() + 1), expected + L'\0');
    EXPECT_EQ(SysStringByteLen(text), expected.size() * sizeof(wchar_t));
    UINT ahead = 0;
    std::memcpy(&ahead, reinterpret_cast<const char*>(text) - sizeof ahead, sizeof ahead);
    EXPECT_EQ(ahead, expected.size() * sizeof(wchar_t));
    SysFreeString(text);
  }
  // Bytes that are no whole number of characters: a whole terminator behind the last one that was begun.
  const BSTR odd = SysAllocStringByteLen("\1\1\1\1\1", 5);
  EXPECT_EQ(SysStringByteLen(odd), 5u);
  EXPECT_EQ(std::wstring(odd), (std::wstring{0x01010101, 0x01}));
  SysFreeString(odd);
}

}  // namespace
