// What only CSecStr has, its free operators, and the list of such strings.
#include <gtest/gtest.h>

#include <string>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

constexpr wchar_t kOther[] = L"other";
const std::wstring kLong(200, L'x');

const Operation kLifetime[] = {
    {"FromNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStr text(secret.get()), counted(secret.get(), Revealed<char>::length());
       secret.end();
       stage.expectAlive();
     }},
    {"AssignNull", changing([](CSecStr& text) { text = static_cast<const wchar_t*>(nullptr); })},
    {"AssignText", changing([](CSecStr& text) { text = kOther; })},
    {"AssignLong", changing([](CSecStr& text) { text = kLong.c_str(); })},
    {"AssignOwnText", keeping([](CSecStr& text) { text = text.GetString() + 1; })},
    {"AssignNarrow", keeping([](CSecStr& text, const Stage& stage) { text = Revealed<char>(stage.secret()).get(); })},
    {"EditsInPlace", keeping([](CSecStr& text) {
       text.SetAt(0, text.GetAt(0));
       text.MakeUpper().MakeLower().TrimLeft(text.GetAt(0)).TrimRight(text.GetAt(text.GetLength() - 1));
       EXPECT_EQ(text.Remove(text.GetAt(2)), 1);
     })},
    {"Mid", deriving([](CSecStr& text) { return text.Mid(2, 20); })},
    {"Whole", deriving([](CSecStr& text) { return text.Right(99); })},
    {"JoinStrings", deriving([](CSecStr& text) { return text + text; })},
    {"JoinWithText", deriving([](CSecStr& text) { return text + text.GetString(); })},
    {"JoinToText", deriving([](CSecStr& text) { return text.GetString() + text; })},
};
INSTANTIATE_TEST_SUITE_P(WideLifetime, WipeProof, testing::ValuesIn(kLifetime), kNameOf);

const Operation kRewriting[] = {
    {"ReplaceByLonger", changing([](CSecStr& text, const Stage& stage) {
       text.Replace(Revealed<wchar_t>(stage.secret()).get(), kLong.c_str());
     })},
    {"ReplaceByShorter", changing([](CSecStr& text, const Stage& stage) {
       text.Replace(Revealed<wchar_t>(stage.secret()).get(), kOther);
     })},
    {"ReplaceBySecret", keeping([](CSecStr& text) { text.Replace(text.Mid(3, 1), text); })},
    {"AddString", keeping([](CSecStr& text) { text += text; })},
    {"AddText", keeping([](CSecStr& text) { text += text.GetString(); })},
    {"AddAndInsertCharacters", keeping([](CSecStr& text) {
       for (int i = 0; i < 20; ++i) {
         text += L'x';
         text.Insert(0, L'x');
       }
     })},
    {"SetSecret", keeping([](CSecStr& text) { text.SetString(text.GetString(), 30); })},
    {"SetString", changing([](CSecStr& text) { text.SetString(kOther, 3); })},
    {"FormatArguments", keeping([](CSecStr& text) {
       text.Format(L"<%s|%50s|%.30s|%d>", text.GetString(), text.GetString(), text.GetString(), 7);
     })},
#ifndef _WIN32
    // The C runtime of Wine converts narrow text in a heap block of its own, which it does not wipe.
    {"FormatNarrowArgument", keeping([](CSecStr& text, const Stage& stage) {
       Revealed<char> narrow(stage.secret());
       text.Format(L"<%S|%50S>", narrow.get(), narrow.get());
     })},
#endif
    {"FormatText", keeping([](CSecStr& text) { text.Format(text.GetString()); })},
    {"FormatOther", changing([](CSecStr& text) { text.Format(L"%d", 7); })},
    {"FormatResource", keeping([](CSecStr& text) { text.Format(kTextId, text.GetString()); })},
    {"FormatMissingResource", changing([](CSecStr& text) { text.Format(kMissingId); })},
    {"LoadString", changing([](CSecStr& text) { EXPECT_NE(text.LoadStringW(kTextId), 0); })},
    {"LoadMissingString", keeping([](CSecStr& text) { EXPECT_EQ(text.LoadStringW(nullptr, kMissingId), 0); })},
};
INSTANTIATE_TEST_SUITE_P(WideRewriting, WipeProof, testing::ValuesIn(kRewriting), kNameOf);

// That of one after whose `change` the head of the list is no longer the secret.
auto changingList(void (*change)(CSecStrList& list)) {
  return [change](const Stage& stage) {
    CSecStrList list;
    list.AddTail(stringOf<CSecStr>(stage));
    list.AddTail(L"last");
    change(list);
    stage.expectGone();
  };
}

const Operation kList[] = {
    {"AddManyStrings",
     [](const Stage& stage) {
       // More than one block of nodes.
       CSecStrList list;
       for (int i = 0; i < 6; ++i) {
         list.AddTail(stringOf<CSecStr>(stage));
         list.AddTail(Revealed<wchar_t>(stage.secret()).get());
       }
       stage.expectAlive();
     }},
    {"ChangeEntry", changingList([](CSecStrList& list) { list.GetAt(list.GetHeadPosition()) = L"other"; })},
    {"RemoveHead", changingList([](CSecStrList& list) { list.RemoveHead(); })},
    {"RemoveAll", changingList([](CSecStrList& list) { list.RemoveAll(); })},
};
INSTANTIATE_TEST_SUITE_P(List, WipeProof, testing::ValuesIn(kList), kNameOf);

}  // namespace
}  // namespace wipeproof
