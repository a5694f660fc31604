// What CSecStr and CSecStrA have in common, and what only CSecStrA has.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

template <class String, class Char>
std::vector<Operation> bothWidths(const Char* other) {
  using Text = const Char*;
  return {
      {"FromText",
       [](const Stage& stage) {
         Revealed<Char> secret(stage.secret());
         const String text(static_cast<Text>(secret.get())), counted(static_cast<Text>(secret.get()), secret.length());
         secret.end();
         stage.expectAlive();
       }},
      {"Copy", deriving<String>([](String& text) { return String(text); })},
      {"AssignString",
       [=](const Stage& stage) {
         String text(other);
         text = stringOf<String>(stage);
         stage.expectAlive();
         text = String(other);
         stage.expectGone();
       }},
      {"AssignItself", keeping<String>([](String& text) { text = static_cast<const String&>(text); })},
      {"ReadAccess", keeping<String>([](String& text, const Stage& stage) {
         EXPECT_EQ(static_cast<Text>(text), text.GetString());
         EXPECT_EQ(text.GetBuffer(), text.GetString());
         EXPECT_EQ(text.GetLength(), Revealed<Char>::length());
         EXPECT_EQ(text.Find(Revealed<Char>(stage.secret()).get() + 3, 0), 3);
       })},
      {"GetBufferGrows", keeping<String>([](String& text) { text.GetBuffer(500); })},
      {"RawAccess",
       [](const Stage& stage) {
         String text;
         stage.secret().reveal(text.GetBuffer(100));
         text.GetBuffer()[memoryscan::Secret::kLength] = Char{};
         text.ReleaseBuffer(-1);
         stage.expectAlive();
         text.GetBuffer(1)[3] = Char{};
         text.ReleaseBuffer(-1);
         stage.expectGone();
       }},
      {"GetBufferBehindANul", changing<String>([](String& text) {
         text.GetBuffer()[1] = Char{};
         text.GetBuffer(500);
       })},
      {"ReleaseBuffer", changing<String>([](String& text) { text.ReleaseBuffer(2); })},
      {"Empty", changing<String>([](String& text) { text.Empty(); })},
      {"Append", keeping<String>(
                     [](String& text, const Stage& stage) { text.Append(Revealed<Char>(stage.secret()).get(), 30); })},
      {"Insert", keeping<String>([](String& text) { text.Insert(4, text.GetString()); })},
  };
}
INSTANTIATE_TEST_SUITE_P(Wide, WipeProof, testing::ValuesIn(bothWidths<CSecStr>(L"other")), kNameOf);
INSTANTIATE_TEST_SUITE_P(Narrow, WipeProof, testing::ValuesIn(bothWidths<CSecStrA>("other")), kNameOf);

const Operation kNarrowOnly[] = {
    {"FromWide",
     [](const Stage& stage) {
       CSecStr wide = stringOf<CSecStr>(stage);
       const CSecStrA text(wide);
       wide.Empty();
       stage.expectAlive();
     }},
    {"AssignWide",
     [](const Stage& stage) {
       CSecStrA text("other");
       text = Revealed<wchar_t>(stage.secret()).get();
       stage.expectAlive();
       text = std::wstring(L"other").data();
       stage.expectGone();
     }},
};
INSTANTIATE_TEST_SUITE_P(NarrowOnly, WipeProof, testing::ValuesIn(kNarrowOnly), kNameOf);

constexpr wchar_t kLong[] =
    L"a text that is not secret but longer than any buffer of the secret, so that there is no room for it "
    L"without a larger buffer";

// A move to a larger buffer finds zeros in the one that it leaves. For the members that build the new text in the
// object's own buffer; the others hand a buffer over.
template <class String>
void expectZerosBehind(const char* name, void (*move)(String& text)) {
  const memoryscan::Secret secret;
  HeapWatch watch(secret);
  String text = stringOf<String>(Stage(secret, Stage::Questions::notAsked));
  watch.follow(text.GetString(), sizeof *text.GetString());
  move(text);
  EXPECT_TRUE(watch.moved()) << name;
  EXPECT_EQ(watch.zeroBeforeItMoved(), kWipes) << name;
}

class GrowthProof : public support::MachineTest {};

TEST_F(GrowthProof, LeavesZeros) {
#ifndef _WIN32
  machine().strings().set(nullptr, kTextId, kLong);
#endif
  const std::pair<const char*, void (*)(CSecStr&)> wide[] = {
      {"GetBuffer", [](CSecStr& text) { text.GetBuffer(500); }},
      {"add characters",
       [](CSecStr& text) {
         while (text.GetLength() < 60) {
           text += L'x';
         }
       }},
      {"Insert", [](CSecStr& text) { text.Insert(4, kLong); }},
      {"Append", [](CSecStr& text) { text.Append(kLong); }},
      {"Append counted", [](CSecStr& text) { text.Append(kLong, 60); }},
      {"LoadString", [](CSecStr& text) { EXPECT_NE(text.LoadStringW(nullptr, kTextId), 0); }},
  };
  for (const auto& [name, move] : wide) {
    expectZerosBehind<CSecStr>(name, move);
  }
  const std::pair<const char*, void (*)(CSecStrA&)> narrow[] = {
      {"GetBuffer", [](CSecStrA& text) { text.GetBuffer(500); }},
      {"Append", [](CSecStrA& text) { text.Append(std::string(60, 'x').c_str(), 60); }},
      {"Insert", [](CSecStrA& text) { text.Insert(4, std::string(60, 'x').c_str()); }},
      {"assign wide", [](CSecStrA& text) { text = std::wstring(100, L'x').data(); }},
  };
  for (const auto& [name, move] : narrow) {
    expectZerosBehind<CSecStrA>(name, move);
  }
}

}  // namespace
}  // namespace wipeproof
