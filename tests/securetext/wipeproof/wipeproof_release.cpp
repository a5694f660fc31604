// secstring, its allocator, and the release of automation buffers.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <utility>
#include <vector>

#include <txlogu/txlogu.h>
#include <vlhostkit/securetext.h>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

const Operation kSecstring[] = {
    {"End",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       const secstring text(secret.get());
       secret.end();
       stage.expectAlive();
     },
     Operation::Blocks::all},
    {"Grows",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       secstring text(secret.get());
       for (int i = 0; i < 5; ++i) {
         text += secret.get();
       }
       text.reserve(1000);
       secret.end();
       stage.expectAlive();
     },
     Operation::Blocks::all},
    {"GrowsCharacterByCharacter",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       secstring text;
       for (const wchar_t* c = secret.get(); *c != L'\0'; ++c) {
         text.push_back(*c);
       }
       secret.end();
       stage.expectAlive();
     },
     Operation::Blocks::all},
    {"Shrinks",
     [](const Stage& stage) {
       secstring text(Revealed<wchar_t>(stage.secret()).get());
       stage.expectAlive();
       text.resize(2);
       text.shrink_to_fit();
       stage.expectGone();
     },
     Operation::Blocks::all},
    {"CopiesAndMoves",
     [](const Stage& stage) {
       secstring text(Revealed<wchar_t>(stage.secret()).get());
       secstring copy(text);
       const secstring moved(std::move(text));
       copy = moved + copy;
       stage.expectAlive();
     },
     Operation::Blocks::all},
    {"AllocatorOfAVector",
     [](const Stage& stage) {
       std::vector<char, VL::Framework::secallocator<char>> bytes;
       {
         Revealed<char> secret(stage.secret());
         for (const char* c = secret.get(); *c != '\0'; ++c) {
           bytes.push_back(*c);
         }
       }
       stage.expectAlive();
     },
     Operation::Blocks::all},
};
INSTANTIATE_TEST_SUITE_P(Secstring, WipeProof, testing::ValuesIn(kSecstring), kNameOf);

// An array of bytes with as many wide characters of the secret as it has room for.
SAFEARRAY* arrayOfSecret(const Stage& stage, UINT dimensions, SAFEARRAYBOUND* bounds) {
  SAFEARRAY* const array = SafeArrayCreate(VT_UI1, dimensions, bounds);
  void* data = nullptr;
  if (array == nullptr || FAILED(SafeArrayAccessData(array, &data))) {
    ADD_FAILURE() << "no array";
    return nullptr;
  }
  std::size_t bytes = 1;
  for (UINT i = 0; i < dimensions; ++i) {
    bytes *= bounds[i].cElements;
  }
  Revealed<wchar_t> secret(stage.secret());
  std::memcpy(data, secret.get(), std::min(bytes, memoryscan::Secret::kLength * sizeof(wchar_t)));
  SafeArrayUnaccessData(array);
  return array;
}

BSTR stringOfSecret(const Stage& stage) {
  return SysAllocStringLen(Revealed<wchar_t>(stage.secret()).get(), memoryscan::Secret::kLength);
}

constexpr auto kPlatforms = Operation::Memory::ofPlatform;

const Operation kAutomation[] = {
    {"DestroyArray",
     [](const Stage& stage) {
       SAFEARRAYBOUND bounds{300, 0};
       SAFEARRAY* const array = arrayOfSecret(stage, 1, &bounds);
       stage.expectAlive();
       EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
     },
     Operation::Blocks::some, kPlatforms},
    {"DestroyArrayOfThreeDimensions",
     [](const Stage& stage) {
       SAFEARRAYBOUND bounds[] = {{4, 0}, {6, 1}, {6, -1}};
       SAFEARRAY* const array = arrayOfSecret(stage, 3, bounds);
       stage.expectAlive();
       EXPECT_EQ(vlSafeArrayDestroy(array, FALSE), S_OK);
     },
     Operation::Blocks::some, kPlatforms},
    {"WipeArray",
     [](const Stage& stage) {
       SAFEARRAYBOUND bounds[] = {{15, 0}, {20, 0}};
       SAFEARRAY* const array = arrayOfSecret(stage, 2, bounds);
       EXPECT_EQ(vlSafeArrayDestroy(array, TRUE), S_OK);
       stage.expectGone();
       EXPECT_EQ(SafeArrayDestroy(array), S_OK);
     },
     Operation::Blocks::some, kPlatforms},
    {"FreeString",
     [](const Stage& stage) {
       const BSTR text = stringOfSecret(stage);
       stage.expectAlive();
       vlSysFreeString(text, FALSE);
     },
     Operation::Blocks::some, kPlatforms},
    {"FreeStringWhoseRecordsAreTaken",
     [](const Stage& stage) {
       const BSTR text = stringOfSecret(stage);
       int records = 0;
       const auto count = [](void* context, const txlogRecord*) { ++*static_cast<int*>(context); };
       txlogSetSink(count, &records, TXLOG_ALL_LEVELS);
       vlSysFreeString(text, FALSE);
       txlogSetSink(nullptr, nullptr, 0);
       EXPECT_EQ(records, 3);
     },
     Operation::Blocks::some, kPlatforms},
    {"WipeString",
     [](const Stage& stage) {
       const BSTR text = stringOfSecret(stage);
       vlSysFreeString(text, TRUE);
       stage.expectGone();
       SysFreeString(text);
     },
     Operation::Blocks::some, kPlatforms},
};
INSTANTIATE_TEST_SUITE_P(Automation, WipeProof, testing::ValuesIn(kAutomation), kNameOf);

}  // namespace
}  // namespace wipeproof
