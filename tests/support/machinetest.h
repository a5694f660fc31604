/// The base of fixtures whose tests call the library.
#ifndef SUPPORT_MACHINETEST_H
#define SUPPORT_MACHINETEST_H

#include <gtest/gtest.h>

#include <vlhostkit/types.h>

#ifndef _WIN32
#include <vlplatform/machine.h>

#include <array>
#include <cstddef>
#include <cstdint>
#endif

namespace support {

/// The last-error value that every test begins with. No function sets this one.
inline constexpr DWORD kUntouchedError = 0xdeadbeef;

/// Native: each test begins with the machine as it is at start and a watched fault gate, and ends with the assertion
/// that everything opened since was closed. What the fixture itself holds must be released in its TearDown, before
/// that of this class. Windows: presets the last-error value only; what is open is the system's affair.
class MachineTest : public testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

#ifndef _WIN32
  static vlplatform::Machine& machine() {
    return vlplatform::machine();
  }
  static vlplatform::Faults& faults() {
    return vlplatform::machine().faults();
  }

  /// Asserts that no more is open than at the start of the test, for tests that check it also on their way.
  void expectNothingOpen() const;

 private:
  std::array<std::int64_t, static_cast<std::size_t>(vlplatform::Resource::count_)> openAtStart_{};
#endif
};

}  // namespace support

#endif
