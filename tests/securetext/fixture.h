/// What the tests of the secure strings share.
#ifndef SECURETEXT_FIXTURE_H
#define SECURETEXT_FIXTURE_H

#include <gtest/gtest.h>

#include <string>

#include <support/machinetest.h>
#include <vlhostkit/securetext.h>

#include "outcome.h"
#include "watchedmanager.h"

namespace securetext {

/// The object's whole text, and that it is one: terminated, within its buffer, the length in accord with the header.
template <class String>
auto textOf(const String& string) {
  const auto* const chars = string.GetString();
  EXPECT_EQ(string.GetLength(), headerOf(chars).nDataLength);
  EXPECT_LE(string.GetLength(), headerOf(chars).nAllocLength);
  EXPECT_EQ(chars[string.GetLength()], 0);
  EXPECT_EQ(string.GetBuffer(), chars);
  return std::basic_string(chars, chars + string.GetLength());
}

/// Whether nothing is left in the buffer behind the text.
template <class String>
bool cleanBehind(const String& string) {
  return zeroFrom(string.GetString(), string.GetLength());
}

/// All strings of a test come from one watched memory: it ends with the assertion that each block was given back, and
/// zeroed before that.
class SecureTextTest : public support::MachineTest {
 protected:
  void TearDown() override {
    EXPECT_TRUE(memory.clean());
    support::MachineTest::TearDown();
  }

  static constexpr const wchar_t* kNull = nullptr;
  WatchedManager memory;
};

}  // namespace securetext

#endif
