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
      {"AssignOther", changing<String>([=](String& text) { text = String(other); })},
      {"AssignItself", keeping<String>([](String& text) { text = static_cast<const String&>(text); })},
      {"GetBufferGrows", keeping<String>([](String& text) { text.GetBuffer(500); })},
      {"RawAccess",
       [](const Stage& stage) {
         String text;
         stage.secret().reveal(text.GetBuffer(100));
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
    {"FromWide", keeping([](CSecStr& text) { CSecStrA{text}; })},
    {"AssignSecret",
     keeping<CSecStrA>([](CSecStrA& text, const Stage& stage) { text = Revealed<wchar_t>(stage.secret()).get(); })},
    {"AssignWide", changing<CSecStrA>([](CSecStrA& text) { text = std::wstring(L"other").data(); })},
};
INSTANTIATE_TEST_SUITE_P(NarrowOnly, WipeProof, testing::ValuesIn(kNarrowOnly), kNameOf);

}  // namespace
}  // namespace wipeproof
