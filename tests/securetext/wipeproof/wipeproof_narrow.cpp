// CSecStrA.
#include <gtest/gtest.h>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

template <class Use>
void useSecret(const Stage& stage, Use use) {
  CSecStrA text = narrowSecret(stage);
  use(text);
  stage.expectAlive();
}

template <class Change>
void replaceSecret(const Stage& stage, Change change) {
  CSecStrA text = narrowSecret(stage);
  change(text);
  stage.expectGone();
}

const Operation kOperations[] = {
    {"FromNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStrA text(secret.get());
       secret.end();
       stage.expectAlive();
     }},
    {"FromCountedNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStrA text(secret.get(), secret.length());
       secret.end();
       stage.expectAlive();
     }},
    {"FromWide",
     [](const Stage& stage) {
       CSecStr wide = wideSecret(stage);
       const CSecStrA text(wide);
       wide.Empty();
       stage.expectAlive();
     }},
    {"Copy",
     [](const Stage& stage) {
       CSecStrA text = narrowSecret(stage);
       const CSecStrA copy(text);
       text.Empty();
       stage.expectAlive();
     }},
    {"AssignString",
     [](const Stage& stage) {
       CSecStrA text("other");
       text = narrowSecret(stage);
       stage.expectAlive();
       text = CSecStrA("other");
       stage.expectGone();
     }},
    {"AssignItself", [](const Stage& stage) { useSecret(stage, [](CSecStrA& text) { text = text; }); }},
    {"AssignWide",
     [](const Stage& stage) {
       CSecStrA text("other");
       {
         Revealed<wchar_t> secret(stage.secret());
         text = secret.get();
       }
       stage.expectAlive();
       wchar_t other[] = L"other";
       text = other;
       stage.expectGone();
     }},
    {"ReadAccess",
     [](const Stage& stage) {
       useSecret(stage, [&](const CSecStrA& text) {
         EXPECT_EQ(static_cast<const char*>(text), text.GetString());
         EXPECT_EQ(text.GetBuffer(), text.GetString());
         EXPECT_EQ(text.GetLength(), Revealed<char>::length());
         EXPECT_EQ(text.Find(Revealed<char>(stage.secret()).get() + 3, 0), 3);
       });
     }},
    {"GetBufferGrows", [](const Stage& stage) { useSecret(stage, [](CSecStrA& text) { text.GetBuffer(500); }); }},
    {"RawAccess",
     [](const Stage& stage) {
       CSecStrA text;
       stage.secret().reveal(text.GetBuffer(100));
       text.GetBuffer()[memoryscan::Secret::kLength] = '\0';
       text.ReleaseBuffer(-1);
       stage.expectAlive();
       text.GetBuffer(1)[3] = '\0';
       text.ReleaseBuffer(-1);
       stage.expectGone();
     }},
    {"ReleaseBuffer", [](const Stage& stage) { replaceSecret(stage, [](CSecStrA& text) { text.ReleaseBuffer(2); }); }},
    {"Empty", [](const Stage& stage) { replaceSecret(stage, [](CSecStrA& text) { text.Empty(); }); }},
    {"Append",
     [](const Stage& stage) {
       useSecret(stage, [&](CSecStrA& text) { text.Append(Revealed<char>(stage.secret()).get(), 30); });
     }},
    {"Insert", [](const Stage& stage) { useSecret(stage, [](CSecStrA& text) { text.Insert(4, text.GetString()); }); }},
};
INSTANTIATE_TEST_SUITE_P(Narrow, WipeProof, testing::ValuesIn(kOperations), kNameOf);

class NarrowGrowth : public support::MachineTest, public testing::WithParamInterface<Growth<CSecStrA>> {};

TEST_P(NarrowGrowth, FindsZerosInTheBufferThatItLeaves) {
  const memoryscan::Secret secret;
  HeapWatch watch(secret);
  CSecStrA text = narrowSecret(Stage(secret, Stage::Questions::notAsked));
  watch.follow(text.GetString(), sizeof(char));
  GetParam().run(text);
  ASSERT_TRUE(watch.moved());
  EXPECT_EQ(watch.zeroBeforeItMoved(), kWipes);
}

constexpr char kLong[] = "a text that is not secret but longer than any buffer of the secret, so that it has to move";

const Growth<CSecStrA> kGrowth[] = {
    {"GetBuffer", [](CSecStrA& text) { text.GetBuffer(500); }},
    {"Append", [](CSecStrA& text) { text.Append(kLong, 60); }},
    {"Insert", [](CSecStrA& text) { text.Insert(4, kLong); }},
    {"AssignWide",
     [](CSecStrA& text) {
       CSecStr wide(kLong, 60);
       text = wide.GetBuffer();
     }},
};
INSTANTIATE_TEST_SUITE_P(, NarrowGrowth, testing::ValuesIn(kGrowth), kNameOf);

}  // namespace
}  // namespace wipeproof
