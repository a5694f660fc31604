#include <support/allocfault.h>

#include <gtest/gtest.h>

#include <atomic>
#include <new>
#include <thread>

#include <vlplatform/machine/allocations.h>

namespace support {
namespace {

// Out of the optimiser's sight: it may leave out a pair of new and delete.
template <class Pointer>
void keep(Pointer& pointer) {
  __asm__ __volatile__("" : : "r"(pointer) : "memory");
}

struct alignas(64) Aligned {
  char bytes[64];
};

template <class T>
bool allocationThrows() {
  try {
    T* pointer = new T;
    keep(pointer);
    delete pointer;
    return false;
  } catch (const std::bad_alloc&) {
    return true;
  }
}

template <class T>
bool nothrowAllocationFails() {
  T* pointer = new (std::nothrow) T[3];
  keep(pointer);
  const bool failed = pointer == nullptr;
  delete[] pointer;
  return failed;
}

TEST(AllocFaultTest, FailsTheNthAllocationInEveryForm) {
  for (bool (*const fails)() : {&allocationThrows<int>, &allocationThrows<Aligned>, &nothrowAllocationFails<int>,
                                &nothrowAllocationFails<Aligned>}) {
    AllocFault fault(2);
    const bool results[] = {fails(), fails(), fails()};
    EXPECT_TRUE(fault.end());
    EXPECT_EQ(fault.allocations(), 3u);
    EXPECT_FALSE(results[0]);
    EXPECT_TRUE(results[1]);
    EXPECT_FALSE(results[2]);
    EXPECT_FALSE(fails());
  }
}

TEST(AllocFaultTest, SparesOtherThreadsAndTheStandInsOwnAllocations) {
  std::atomic<bool> armed = false;
  bool other = true;
  bool own = true;
  bool failed = true;
  std::thread thread([&] {
    armed.wait(false);
    other = allocationThrows<int>();
  });
  {
    AllocFault fault(1, AllocFault::Span::forEver);
    armed = true;
    armed.notify_one();
    thread.join();
    const vlplatform::OwnAllocations scope;
    own = allocationThrows<int>();
    failed = fault.end();
  }
  EXPECT_FALSE(other);
  EXPECT_FALSE(own);
  EXPECT_FALSE(failed);
}

}  // namespace
}  // namespace support
