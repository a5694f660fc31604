#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <ostream>
#include <string>

#include <vlafx/exceptions.h>

#include "proof.h"

#ifndef _WIN32
#include <vlplatform/machine.h>
#endif

namespace wipeproof {

using memoryscan::Revealed;
using memoryscan::ScanResult;
using memoryscan::Secret;

void PrintTo(const Operation& operation, std::ostream* out) {
  *out << operation.name;
}

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
  GetParam().run(Stage(secret, Stage::Questions::asked));
  if (!kWipes && kPlatformWipes && GetParam().memory == Operation::Memory::ofPlatform) {
    GTEST_SKIP() << "the platform has zeroed what it released";
  }
  RecordProperty("copiesOnDeadStackBeforeScrubbing", static_cast<int>(memoryscan::scanDeadStack(secret).count));
  expectNoCopy(secret);
}

TEST_P(WipeProof, GivesZerosBackToTheHeap) {
  const Secret secret;
  HeapWatch watch(secret);
  GetParam().run(Stage(secret, Stage::Questions::notAsked));
  const std::size_t freed = watch.buffersFreed() + watch.blocksFreed();
  if (GetParam().memory == Operation::Memory::ofPlatform) {
    GTEST_SKIP() << "the platform's memory is not watched";
  }
  EXPECT_GT(freed, 0u);
  if (kWipes) {
    EXPECT_EQ(watch.blocksWithSecret(), 0u);
    EXPECT_EQ(watch.buffersNotZero(), 0u);
    if (GetParam().zeroed == Operation::Blocks::all) {
      EXPECT_EQ(watch.blocksNotZero(), 0u);
    }
  } else {
    EXPECT_GT(watch.blocksWithSecret(), 0u);
    EXPECT_GT(watch.buffersNotZero() + watch.blocksNotZero(), 0u);
  }
}

#ifndef WIPEPROOF_CONTROL  // whose control is that of the other proofs
TEST_P(WipeProof, LeavesNoCopyWhereAnAllocationFails) {
  const Secret secret;
  std::uint64_t n = 0;
  for (bool failed = true; failed;) {
    ++n;
    SCOPED_TRACE("failing allocation " + std::to_string(n));
    {
      HeapWatch watch(secret, n);
      try {
        GetParam().run(Stage(secret, Stage::Questions::notAsked));
      } catch (CException* exception) {
        exception->Delete();
      } catch (const std::bad_alloc&) {
      }
      failed = watch.failed();
      EXPECT_EQ(watch.blocksWithSecret(), 0u);
      EXPECT_EQ(watch.buffersNotZero(), 0u);
    }
    memoryscan::scrubDeadStack();  // here: the frames of the check lie over what the exception has left
    expectNoCopy(secret);
    if (HasFailure()) {
      return;
    }
  }
  RecordProperty("allocations", static_cast<int>(n - 1));
  if (GetParam().memory == Operation::Memory::ofHeap) {
    EXPECT_GT(n, 1u) << "no allocation was made to fail";
  }
}
#endif

// What the proof looks for does stay where nobody wipes.
TEST(WipeProofControl, FindsWhatAStandardStringLeaves) {
  const Secret secret;
  std::wstring another(Secret::kLength, L' ');
  {
    HeapWatch watch(secret);
    watch.keepFreed();
    {
      Revealed<wchar_t> text(secret);
      auto string = std::make_unique<std::wstring>(text.get());
      text.end();
      EXPECT_GT(memoryscan::scanMemory(secret).count, 0u);
    }
    EXPECT_EQ(watch.blocksWithSecret(), 1u);
    EXPECT_EQ(watch.blocksNotZero(), 2u);
    memoryscan::scrubDeadStack();
    EXPECT_GT(memoryscan::scanMemory(secret).count, 0u);
  }
}

}  // namespace wipeproof
