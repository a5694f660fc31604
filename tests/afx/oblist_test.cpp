#include <vlafx/oblist.h>

#include <gtest/gtest.h>

#include <deque>
#include <vector>

#ifndef _WIN32
#include <support/allocfault.h>
#endif

namespace afxtest {
namespace {

class Item : public CObject {};

std::vector<CObject*> walk(const CObList& list) {
  std::vector<CObject*> objects;
  for (POSITION position = list.GetHeadPosition(); position != nullptr;) {
    objects.push_back(list.GetNext(position));
  }
  return objects;
}

class ObListTest : public testing::TestWithParam<int> {};

// The same steps on a list and on a model, so that nodes are taken again across and within blocks.
TEST_P(ObListTest, BehavesAsAQueue) {
  std::deque<Item> items(40);
  std::deque<CObject*> model;
  CObList list(GetParam());
  unsigned random = 1;
  for (int step = 0; step < 2000; ++step) {
    random = random * 1664525u + 1013904223u;
    const bool add = model.empty() || (model.size() < items.size() && (random >> 16) % 2 == 0);
    if (add) {
      CObject* const object = &items[static_cast<std::size_t>(step) % items.size()];
      const POSITION position = list.AddTail(object);
      model.push_back(object);
      ASSERT_EQ(list.GetAt(position), object);
      ASSERT_EQ(list.GetTailPosition(), position);
    } else {
      ASSERT_EQ(list.RemoveHead(), model.front());
      model.pop_front();
    }
    ASSERT_EQ(list.GetCount(), static_cast<int>(model.size()));
    ASSERT_EQ(list.IsEmpty(), model.empty());
    ASSERT_EQ(walk(list), std::vector<CObject*>(model.begin(), model.end()));
  }
  list.RemoveAll();
  EXPECT_TRUE(list.IsEmpty());
  EXPECT_EQ(list.GetHeadPosition(), nullptr);
  EXPECT_EQ(list.GetTailPosition(), nullptr);
  list.AddTail(nullptr);
  EXPECT_EQ(walk(list), std::vector<CObject*>{nullptr});
}
INSTANTIATE_TEST_SUITE_P(BlockSizes, ObListTest, testing::Values(1, 2, 10, 1000, 0, -5));

#ifndef _WIN32

TEST(ObListMemoryTest, TakesBlocksAndNodesAgain) {
  Item item;
  CObList list(2);
  support::AllocFault fault(0);
  for (int i = 0; i < 4; ++i) {
    list.AddTail(&item);
  }
  list.AddTail(list.RemoveHead());
  const std::uint64_t allocations = fault.allocations();
  fault.end();
  EXPECT_EQ(allocations, 2u);
}

#endif

}  // namespace
}  // namespace afxtest
