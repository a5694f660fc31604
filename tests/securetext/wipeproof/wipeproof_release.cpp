// secstring, its allocator, and the release of automation buffers.
#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

#include <txlogu/txlogu.h>
#include <vlhostkit/securetext.h>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

Operation ofSecstring(const char* name, void (*run)(const Stage& stage)) {
  return {name, run, Operation::Blocks::all};
}

const Operation kSecstring[] = {
    ofSecstring("Grows",
                [](const Stage& stage) {
                  Revealed<wchar_t> secret(stage.secret());
                  secstring text(secret.get());
                  text += secret.get();
                  for (const wchar_t* c = secret.get(); *c != L'\0'; ++c) {
                    text.push_back(*c);
                  }
                  text.reserve(1000);
                  secret.end();
                  stage.expectAlive();
                }),
    ofSecstring("Shrinks",
                [](const Stage& stage) {
                  secstring text(Revealed<wchar_t>(stage.secret()).get());
                  stage.expectAlive();
                  text.resize(2);
                  text.shrink_to_fit();
                  stage.expectGone();
                }),
    ofSecstring("CopiesAndMoves",
                [](const Stage& stage) {
                  secstring text(Revealed<wchar_t>(stage.secret()).get());
                  secstring copy(text);
                  const secstring moved(std::move(text));
                  copy = moved + copy;
                  stage.expectAlive();
                }),
    ofSecstring("AllocatorOfAVector",
                [](const Stage& stage) {
                  Revealed<char> secret(stage.secret());
                  std::vector<char, VL::Framework::secallocator<char>> bytes;
                  bytes.assign(secret.get(), secret.get() + secret.length());
                  secret.end();
                  stage.expectAlive();
                }),
};
INSTANTIATE_TEST_SUITE_P(Secstring, WipeProof, testing::ValuesIn(kSecstring), kNameOf);

// An array of bytes, with room for the secret and more.
SAFEARRAY* arrayOfSecret(const Stage& stage, std::vector<SAFEARRAYBOUND> bounds) {
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, static_cast<UINT>(bounds.size()), bounds.data());
  std::memcpy(array->pvData, Revealed<wchar_t>(stage.secret()).get(), memoryscan::Secret::kLength * sizeof(wchar_t));
  return array;
}

BSTR stringOfSecret(const Stage& stage) {
  return SysAllocStringLen(Revealed<wchar_t>(stage.secret()).get(), memoryscan::Secret::kLength);
}

Operation ofPlatform(const char* name, void (*run)(const Stage& stage)) {
  return {name, run, Operation::Blocks::some, Operation::Memory::ofPlatform};
}

const Operation kAutomation[] = {
    ofPlatform("DestroyArray",
               [](const Stage& stage) {
                 SAFEARRAY* const array = arrayOfSecret(stage, {{4, 0}, {6, 1}, {7, -1}});
                 stage.expectAlive();
                 EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
               }),
    ofPlatform("WipeArray",
               [](const Stage& stage) {
                 SAFEARRAY* const array = arrayOfSecret(stage, {{15, 0}, {20, 0}});
                 EXPECT_EQ(vlSafeArrayDestroy(array, TRUE), S_OK);
                 stage.expectGone();
                 EXPECT_EQ(SafeArrayDestroy(array), S_OK);
               }),
    // The channel takes the records in the second round.
    ofPlatform("FreeString",
               [](const Stage& stage) {
                 int records = 0;
                 const auto count = [](void* context, const txlogRecord*) { ++*static_cast<int*>(context); };
                 for (const bool taken : {false, true}) {
                   const BSTR text = stringOfSecret(stage);
                   stage.expectAlive();
                   txlogSetSink(taken ? +count : nullptr, &records, TXLOG_ALL_LEVELS);
                   vlSysFreeString(text, FALSE);
                 }
                 txlogSetSink(nullptr, nullptr, 0);
                 EXPECT_EQ(records, 3);
               }),
    ofPlatform("WipeString",
               [](const Stage& stage) {
                 const BSTR text = stringOfSecret(stage);
                 vlSysFreeString(text, TRUE);
                 stage.expectGone();
                 SysFreeString(text);
               }),
};
INSTANTIATE_TEST_SUITE_P(Automation, WipeProof, testing::ValuesIn(kAutomation), kNameOf);

}  // namespace
}  // namespace wipeproof
