// CSecStrList.
#include <gtest/gtest.h>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

// Runs `use` on a list with the secret between two other texts.
template <class Use>
void useList(const Stage& stage, Use use) {
  CSecStrList list;
  list.AddTail(L"first");
  __POSITION* const position = list.AddTail(stringOf<CSecStr>(stage));
  list.AddTail(L"last");
  use(list, position);
}

const Operation kOperations[] = {
    {"End", [](const Stage& stage) { useList(stage, [&](CSecStrList&, __POSITION*) { stage.expectAlive(); }); }},
    {"AddManyStrings",
     [](const Stage& stage) {
       // More than one block of nodes.
       CSecStrList list;
       for (int i = 0; i < 6; ++i) {
         list.AddTail(stringOf<CSecStr>(stage));
         list.AddTail(Revealed<wchar_t>(stage.secret()).get());
       }
       EXPECT_EQ(list.Find(Revealed<wchar_t>(stage.secret()).get(), nullptr), list.GetHeadPosition());
       stage.expectAlive();
     }},
    {"ChangeEntry",
     [](const Stage& stage) {
       useList(stage, [&](CSecStrList& list, __POSITION* position) {
         list.GetAt(position) = L"other";
         stage.expectGone();
       });
     }},
    {"RemoveHead",
     [](const Stage& stage) {
       useList(stage, [&](CSecStrList& list, __POSITION*) {
         list.RemoveHead();
         {
           const CSecStr text = list.RemoveHead();
           stage.expectAlive();
         }
         stage.expectGone();
       });
     }},
    {"RemoveAll",
     [](const Stage& stage) {
       useList(stage, [&](CSecStrList& list, __POSITION*) {
         list.RemoveAll();
         stage.expectGone();
       });
     }},
};
INSTANTIATE_TEST_SUITE_P(List, WipeProof, testing::ValuesIn(kOperations), kNameOf);

}  // namespace
}  // namespace wipeproof
