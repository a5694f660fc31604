/// What the tests of the secure strings share.
#ifndef SECURETEXT_FIXTURE_H
#define SECURETEXT_FIXTURE_H

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

#include <support/machinetest.h>
#include <vlhostkit/securetext.h>

#include "outcome.h"
#include "watchedmanager.h"

namespace securetext {

template <class Char>
using Text = std::basic_string<Char>;

/// An ASCII text in either width.
template <class Char>
Text<Char> text(std::string_view ascii) {
  return {ascii.begin(), ascii.end()};
}

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

/// All strings of a test come from one watched memory: it ends with the assertion that each block was given back, and
/// zeroed before that.
class SecureTextTest : public support::MachineTest {
 protected:
  void TearDown() override {
    EXPECT_EQ(memory.open(), 0);
    EXPECT_EQ(memory.dirty(), 0);
    support::MachineTest::TearDown();
  }

  WatchedManager memory;
};

/// While one lives, takes the runtime's reports of invalid arguments.
class InvalidParameters {
 public:
  InvalidParameters() : former_(_set_invalid_parameter_handler(&take)) {
    reports_ = 0;
    errno = 0;
  }
  ~InvalidParameters() { _set_invalid_parameter_handler(former_); }
  InvalidParameters(const InvalidParameters&) = delete;
  InvalidParameters& operator=(const InvalidParameters&) = delete;

#ifdef _WIN32
  // mingw's runtime keeps a handler for each module: that of the program is not told of the library's reports.
  static constexpr bool kReachesLibrary = false;
#else
  static constexpr bool kReachesLibrary = true;
#endif

  int reports() const {
    return reports_;
  }
  bool allNull() const {
    return allNull_;
  }
  int errorAtReport() const {
    return error_;
  }

 private:
  static void take(const wchar_t* expression, const wchar_t* function, const wchar_t* file, unsigned line,
                   std::uintptr_t reserved) {
    ++reports_;
    error_ = errno;
    allNull_ = expression == nullptr && function == nullptr && file == nullptr && line == 0 && reserved == 0;
  }

  static inline int reports_ = 0;
  static inline bool allNull_ = false;
  static inline int error_ = 0;
  _invalid_parameter_handler former_;
};

}  // namespace securetext

#endif
