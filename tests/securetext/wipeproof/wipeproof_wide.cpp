// What only CSecStr has, and its free operators.
#include <gtest/gtest.h>

#include <string>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

constexpr wchar_t kOther[] = L"other";
const std::wstring kLong(200, L'x');

const Operation kLifetime[] = {
    {"FromCharacters",
     [](const Stage& stage) {
       CSecStr text;
       {
         Revealed<wchar_t> secret(stage.secret());
         for (const wchar_t* c = secret.get(); *c != L'\0'; ++c) {
           text += CSecStr(*c);
         }
       }
       stage.expectAlive();
     }},
    {"FromNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStr text(secret.get()), counted(secret.get(), secret.length());
       secret.end();
       stage.expectAlive();
     }},
    {"AssignWide",
     [](const Stage& stage) {
       CSecStr text;
       text = static_cast<const wchar_t*>(Revealed<wchar_t>(stage.secret()).get());
       stage.expectAlive();
       text = kOther;
       stage.expectGone();
     }},
    {"AssignNull", changing([](CSecStr& text) { text = static_cast<const wchar_t*>(nullptr); })},
    {"AssignLong", changing([](CSecStr& text) { text = kLong.c_str(); })},
    {"AssignOwnText", keeping([](CSecStr& text) { text = text.GetString() + 1; })},
    {"AssignNarrow",
     [](const Stage& stage) {
       CSecStr text(kOther);
       {
         Revealed<char> secret(stage.secret());
         text = secret.get();
         text = static_cast<const char*>(secret.get());
       }
       stage.expectAlive();
       text = "other";
       stage.expectGone();
     }},
};
INSTANTIATE_TEST_SUITE_P(WideLifetime, WipeProof, testing::ValuesIn(kLifetime), kNameOf);

const Operation kForwarded[] = {
    {"SearchAndCompare", keeping([](CSecStr& text, const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       const CSecStr copy(text);
       EXPECT_EQ(text.ReverseFind(secret.get()[5]), 5);
       EXPECT_EQ(text.Compare(secret.get()), 0);
       EXPECT_EQ(text.CompareNoCase(secret.get()), 0);
       EXPECT_TRUE(text == copy && text == secret.get() && secret.get() == text);
       EXPECT_FALSE(text != copy || text != secret.get() || secret.get() != text || text < copy);
     })},
    {"Characters", keeping([](CSecStr& text) { text.SetAt(0, text.GetAt(0)); })},
    {"Remove", keeping([](CSecStr& text) { EXPECT_EQ(text.Remove(text.GetAt(2)), 1); })},
    {"Case", keeping([](CSecStr& text) { text.MakeUpper().MakeLower(); })},
    {"Trim", keeping([](CSecStr& text) {
       text.Insert(0, L"  ");
       text.Append(L"  ");
       text.TrimLeft().TrimRight().TrimLeft(text.GetAt(0)).TrimRight(text.GetAt(text.GetLength() - 1));
     })},
    {"Mid", deriving([](CSecStr& text) { return text.Mid(2, 20); })},
    {"MidToTheEnd", deriving([](CSecStr& text) { return text.Mid(2); })},
    {"Left", deriving([](CSecStr& text) { return text.Left(20); })},
    {"Right", deriving([](CSecStr& text) { return text.Right(20); })},
    {"Whole", deriving([](CSecStr& text) { return text.Right(99); })},
    {"JoinStrings", deriving([](CSecStr& text) { return text + text; })},
    {"JoinWithText", deriving([](CSecStr& text) { return text + text.GetString(); })},
    {"JoinToText", deriving([](CSecStr& text) { return text.GetString() + text; })},
};
INSTANTIATE_TEST_SUITE_P(WideForwarded, WipeProof, testing::ValuesIn(kForwarded), kNameOf);

const Operation kRewriting[] = {
    {"ReplaceByLonger", changing([](CSecStr& text, const Stage& stage) {
       text.Replace(Revealed<wchar_t>(stage.secret()).get(), kLong.c_str());
     })},
    {"ReplaceByShorter", changing([](CSecStr& text, const Stage& stage) {
       text.Replace(Revealed<wchar_t>(stage.secret()).get(), kOther);
     })},
    {"ReplaceBySecret",
     [](const Stage& stage) {
       CSecStr text(L"x and x and x");
       text.Replace(L"x", Revealed<wchar_t>(stage.secret()).get());
       stage.expectAlive();
     }},
    {"AddString", keeping([](CSecStr& text) { text += text; })},
    {"AddText", keeping([](CSecStr& text) { text += text.GetString(); })},
    {"AddAndInsertCharacters", keeping([](CSecStr& text) {
       for (int i = 0; i < 20; ++i) {
         text += L'x';
         text.Insert(0, L'x');
       }
     })},
    {"AppendAll",
     keeping([](CSecStr& text, const Stage& stage) { text.Append(Revealed<wchar_t>(stage.secret()).get()); })},
    {"SetString",
     [](const Stage& stage) {
       CSecStr text(kOther);
       text.SetString(Revealed<wchar_t>(stage.secret()).get(), 30);
       stage.expectAlive();
       text.SetString(kOther, 3);
       stage.expectGone();
     }},
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

}  // namespace
}  // namespace wipeproof
