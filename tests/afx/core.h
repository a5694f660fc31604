/// What the tests of the string core share.
#ifndef TESTS_AFX_CORE_H
#define TESTS_AFX_CORE_H

#include <gtest/gtest.h>

#include <string>

#include <support/records.h>
#include <vlafx/exceptions.h>
#include <vlafx/string.h>

namespace afxtest {

using CharTypes = testing::Types<char, wchar_t>;
using support::as;

template <class Char>
std::basic_string<Char> text(const CSimpleStringT<Char>& core) {
  return {core.GetString(), static_cast<std::size_t>(core.GetLength())};
}

}  // namespace afxtest

#endif
