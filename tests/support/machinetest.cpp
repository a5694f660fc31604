#include <support/machinetest.h>

namespace support {

#ifdef _WIN32

void MachineTest::SetUp() {
  SetLastError(kUntouchedError);
}

void MachineTest::TearDown() {}

#else

void MachineTest::SetUp() {
  for (std::size_t i = 0; i < openAtStart_.size(); ++i) {
    openAtStart_[i] = machine().counters().open(static_cast<vlplatform::Resource>(i));
  }
  machine().reset();
  faults().watch();
  SetLastError(kUntouchedError);
}

void MachineTest::TearDown() {
  expectNothingOpen();
  machine().reset();
}

void MachineTest::expectNothingOpen() const {
  for (std::size_t i = 0; i < openAtStart_.size(); ++i) {
    const auto resource = static_cast<vlplatform::Resource>(i);
    EXPECT_EQ(machine().counters().open(resource) - openAtStart_[i], 0)
        << "still open (or closed once too often): " << vlplatform::Counters::name(resource);
  }
}

#endif

}  // namespace support
