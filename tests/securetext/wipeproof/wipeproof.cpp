#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>

#include <vlafx/exceptions.h>

#include "proof.h"

#ifndef _WIN32
#include <vlplatform/machine.h>
#endif

namespace wipeproof {

using memoryscan::ScanResult;
using memoryscan::Secret;

void expectNoCopy(const Secret& secret) {
  memoryscan::scrubDeadStack();
  const ScanResult result = memoryscan::scanMemory(secret);
  if (kWipes) {
    EXPECT_EQ(result.count, 0u) << testing::PrintToString(result);
  } else {
    EXPECT_GT(result.count, 0u) << "nothing is found although nothing is wiped";
  }
}

void Stage::expectAlive() const {
  if (asked_) {
    memoryscan::scrubDeadStack();
    EXPECT_GT(memoryscan::scanMemory(secret_).count, 0u) << "the secret is not found while an object holds it";
  }
}

void Stage::expectGone() const {
  if (asked_) {
    expectNoCopy(secret_);
  }
}

void WipeProof::SetUp() {
  MachineTest::SetUp();
#ifndef _WIN32
  machine().strings().set(nullptr, kTextId, L"a text that is not secret, of some length, before %s and behind it");
#endif
}

TEST_P(WipeProof, LeavesNoCopy) {
  const Secret secret;
  const auto heap = std::make_unique<HeapWatch>(secret);
  heap->keepFreed();
  GetParam().run(Stage(secret, /*asked=*/true));
  if (!kWipes && kPlatformWipes && GetParam().memory == Operation::Memory::ofPlatform) {
    GTEST_SKIP() << "the platform has zeroed what it released";
  }
  expectNoCopy(secret);
}

// Also where an allocation fails, the n-th, for n = 1, 2, ... until a run has no n-th.
TEST_P(WipeProof, GivesZerosBackToTheHeap) {
  const Secret secret;
  const Operation::Memory memory = GetParam().memory;
  std::uint64_t n = 0;
  for (bool failed = true; failed && !HasFailure();) {
    SCOPED_TRACE("failing allocation " + std::to_string(++n));
    {
      HeapWatch watch(secret, n);
      try {
        GetParam().run(Stage(secret, /*asked=*/false));
      } catch (CException* exception) {
        exception->Delete();
      } catch (const std::bad_alloc&) {
      }
      failed = watch.failed();
      if (kWipes) {
        EXPECT_EQ(watch.blocksWithSecret(), 0u);
        EXPECT_EQ(watch.buffersNotZero(), 0u);
        EXPECT_TRUE(watch.blocksNotZero() == 0 || memory != Operation::Memory::ofBlocks);
      } else if (!failed && memory != Operation::Memory::ofPlatform) {
        EXPECT_GT(watch.blocksWithSecret(), 0u);
        EXPECT_GT(watch.buffersNotZero() + watch.blocksNotZero(), 0u);
      }
    }
    if (kWipes) {
      memoryscan::scrubDeadStack();  // here: the frames of the check lie over what the exception has left
      expectNoCopy(secret);
    }
  }
  EXPECT_TRUE(n > 1 || memory == Operation::Memory::ofPlatform) << "no allocation was made to fail";
}

}  // namespace wipeproof
