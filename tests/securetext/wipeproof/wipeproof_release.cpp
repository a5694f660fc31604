// secstring, its allocator, and the release of automation buffers.
#include <gtest/gtest.h>

#include <utility>

#include <txlogu/txlogu.h>
#include <vlhostkit/securetext.h>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

// The heap must find each block zeroed that one of these lets go of.
const Operation kSecstring[] = {
    {"GrowsIsCopiedAndMoved",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       secstring text(secret.get());
       text += secret.get();
       for (const wchar_t* c = secret.get(); *c != L'\0'; ++c) {
         text.push_back(*c);
       }
       text.reserve(1000);
       secstring copy(text);
       const secstring moved(std::move(text));
       copy = moved + copy;
       secret.end();
       stage.expectAlive();
     },
     Operation::Memory::ofBlocks},
    {"Shrinks",
     [](const Stage& stage) {
       secstring text(Revealed<wchar_t>(stage.secret()).get());
       text.resize(2);
       text.shrink_to_fit();
       stage.expectGone();
     },
     Operation::Memory::ofBlocks},
};
INSTANTIATE_TEST_SUITE_P(Secstring, WipeProof, testing::ValuesIn(kSecstring), kNameOf);

const Operation kAutomation[] = {
    {"Array",
     [](const Stage& stage) {
       for (const BOOL keep : {FALSE, TRUE}) {
         SAFEARRAYBOUND bounds[] = {{4, 0}, {6, 1}, {7, -1}};
         SAFEARRAY* const array = SafeArrayCreate(VT_UI1, 3, bounds);
         stage.secret().reveal(static_cast<wchar_t*>(array->pvData));
         stage.expectAlive();
         EXPECT_EQ(vlSafeArrayDestroy(array, keep), S_OK);
         if (keep) {
           stage.expectGone();
           EXPECT_EQ(SafeArrayDestroy(array), S_OK);
         }
       }
     },
     Operation::Memory::ofPlatform},
    // The channel takes the records in the second round.
    {"String",
     [](const Stage& stage) {
       int records = 0;
       const auto count = [](void* context, const txlogRecord*) { ++*static_cast<int*>(context); };
       for (const BOOL keep : {FALSE, TRUE}) {
         const BSTR text = SysAllocStringLen(Revealed<wchar_t>(stage.secret()).get(), memoryscan::Secret::kLength);
         stage.expectAlive();
         txlogSetSink(keep ? +count : nullptr, &records, TXLOG_ALL_LEVELS);
         vlSysFreeString(text, keep);
         if (keep) {
           stage.expectGone();
           SysFreeString(text);
         }
       }
       txlogSetSink(nullptr, nullptr, 0);
       EXPECT_EQ(records, 3);
     },
     Operation::Memory::ofPlatform},
};
INSTANTIATE_TEST_SUITE_P(Automation, WipeProof, testing::ValuesIn(kAutomation), kNameOf);

}  // namespace
}  // namespace wipeproof
