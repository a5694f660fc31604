// CSecStr and its free operators.
#include <gtest/gtest.h>

#include <string>

#include "proof.h"

namespace wipeproof {
namespace {

using memoryscan::Revealed;

constexpr wchar_t kOther[] = L"other";
constexpr wchar_t kLong[] =
    L"a text that is not secret but longer than any buffer of the secret, so that there is no room for it "
    L"without a larger buffer";

// Runs `change` on a string of the secret, whose text is another one afterwards.
template <class Change>
void replaceSecret(const Stage& stage, Change change) {
  CSecStr text = wideSecret(stage);
  change(text);
  stage.expectGone();
}

// Runs `use` on a string that holds the secret, and goes on to.
template <class Use>
void useSecret(const Stage& stage, Use use) {
  CSecStr text = wideSecret(stage);
  use(text);
  stage.expectAlive();
}

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
    {"FromWide",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       const CSecStr text(secret.get());
       secret.end();
       stage.expectAlive();
     }},
    {"FromCountedWide",
     [](const Stage& stage) {
       Revealed<wchar_t> secret(stage.secret());
       const CSecStr text(secret.get(), secret.length());
       secret.end();
       stage.expectAlive();
     }},
    {"FromNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStr text(secret.get());
       secret.end();
       stage.expectAlive();
     }},
    {"FromCountedNarrow",
     [](const Stage& stage) {
       Revealed<char> secret(stage.secret());
       const CSecStr text(secret.get(), secret.length());
       secret.end();
       stage.expectAlive();
     }},
    {"Copy",
     [](const Stage& stage) {
       CSecStr text = wideSecret(stage);
       const CSecStr copy(text);
       text.Empty();
       stage.expectAlive();
     }},
    {"AssignWide",
     [](const Stage& stage) {
       CSecStr text;
       {
         Revealed<wchar_t> secret(stage.secret());
         text = static_cast<const wchar_t*>(secret.get());
       }
       stage.expectAlive();
       text = kOther;
       stage.expectGone();
     }},
    {"AssignNull",
     [](const Stage& stage) {
       replaceSecret(stage, [](CSecStr& text) { text = static_cast<const wchar_t*>(nullptr); });
     }},
    {"AssignLong", [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { text = kLong; }); }},
    {"AssignOwnText",
     [](const Stage& stage) {
       useSecret(stage, [](CSecStr& text) {
         text = text.GetString() + 1;
         text = text;
       });
     }},
    {"AssignString",
     [](const Stage& stage) {
       CSecStr text(kOther);
       text = wideSecret(stage);
       stage.expectAlive();
       text = CSecStr(kOther);
       stage.expectGone();
     }},
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

const Operation kBuffer[] = {
    {"ReadAccess",
     [](const Stage& stage) {
       useSecret(stage, [](const CSecStr& text) {
         EXPECT_EQ(static_cast<const wchar_t*>(text), text.GetString());
         EXPECT_EQ(text.GetBuffer(), text.GetString());
         EXPECT_EQ(text.GetLength(), Revealed<wchar_t>::length());
         EXPECT_FALSE(text.IsEmpty());
         EXPECT_GE(text.GetAllocLength(), text.GetLength());
       });
     }},
    {"GetBufferGrows", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.GetBuffer(500); }); }},
    {"GetBufferBehindANul",
     [](const Stage& stage) {
       replaceSecret(stage, [](CSecStr& text) {
         text.GetBuffer()[1] = L'\0';
         text.GetBuffer(500);
       });
     }},
    {"RawAccess",
     [](const Stage& stage) {
       CSecStr text;
       stage.secret().reveal(text.GetBuffer(100));
       text.GetBuffer()[memoryscan::Secret::kLength] = L'\0';
       text.ReleaseBuffer(-1);
       stage.expectAlive();
       text.GetBuffer(1)[3] = L'\0';
       text.ReleaseBuffer(-1);
       stage.expectGone();
     }},
    {"ReleaseBuffer", [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { text.ReleaseBuffer(2); }); }},
    {"Empty", [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { text.Empty(); }); }},
};
INSTANTIATE_TEST_SUITE_P(WideBuffer, WipeProof, testing::ValuesIn(kBuffer), kNameOf);

const Operation kForwarded[] = {
    {"Search",
     [](const Stage& stage) {
       useSecret(stage, [&](const CSecStr& text) {
         Revealed<wchar_t> secret(stage.secret());
         EXPECT_EQ(text.Find(secret.get() + 3, 0), 3);
         EXPECT_EQ(text.Find(secret.get()[5], 0), 5);
         EXPECT_EQ(text.ReverseFind(secret.get()[5]), 5);
       });
     }},
    {"Compare",
     [](const Stage& stage) {
       useSecret(stage, [&](const CSecStr& text) {
         Revealed<wchar_t> secret(stage.secret());
         EXPECT_EQ(text.Compare(secret.get()), 0);
         EXPECT_EQ(text.CompareNoCase(secret.get()), 0);
       });
     }},
    {"Operators",
     [](const Stage& stage) {
       useSecret(stage, [&](const CSecStr& text) {
         Revealed<wchar_t> secret(stage.secret());
         const CSecStr copy(text);
         EXPECT_TRUE(text == copy && text == secret.get() && secret.get() == text);
         EXPECT_FALSE(text != copy || text != secret.get() || secret.get() != text || text < copy);
       });
     }},
    {"Characters", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.SetAt(0, text.GetAt(0)); }); }},
    {"Remove",
     [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { EXPECT_EQ(text.Remove(text.GetAt(2)), 1); }); }},
    {"Case", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.MakeUpper().MakeLower(); }); }},
    {"Trim",
     [](const Stage& stage) {
       useSecret(stage, [](CSecStr& text) {
         text.Insert(0, L"  ");
         text.Append(L"  ");
         text.TrimLeft().TrimRight().TrimLeft(text.GetAt(0)).TrimRight(text.GetAt(text.GetLength() - 1));
       });
     }},
};
INSTANTIATE_TEST_SUITE_P(WideForwarded, WipeProof, testing::ValuesIn(kForwarded), kNameOf);

// Makes a string of the secret into another one.
template <class Derive>
void deriveFromSecret(const Stage& stage, Derive derive) {
  CSecStr text = wideSecret(stage);
  const CSecStr derived = derive(text);
  text.Empty();
  stage.expectAlive();
}

const Operation kDeriving[] = {
    {"Mid", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.Mid(2, 20); }); }},
    {"MidToTheEnd", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.Mid(2); }); }},
    {"Left", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.Left(20); }); }},
    {"Right", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.Right(20); }); }},
    {"Whole", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.Right(99); }); }},
    {"JoinStrings", [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text + text; }); }},
    {"JoinWithText",
     [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text + text.GetString(); }); }},
    {"JoinToText",
     [](const Stage& stage) { deriveFromSecret(stage, [](CSecStr& text) { return text.GetString() + text; }); }},
};
INSTANTIATE_TEST_SUITE_P(WideDeriving, WipeProof, testing::ValuesIn(kDeriving), kNameOf);

const Operation kRewriting[] = {
    {"ReplaceByLonger",
     [](const Stage& stage) {
       replaceSecret(stage, [&](CSecStr& text) { text.Replace(Revealed<wchar_t>(stage.secret()).get(), kLong); });
     }},
    {"ReplaceByShorter",
     [](const Stage& stage) {
       replaceSecret(stage, [&](CSecStr& text) { text.Replace(Revealed<wchar_t>(stage.secret()).get(), kOther); });
     }},
    {"ReplaceBySecret",
     [](const Stage& stage) {
       CSecStr text(L"x and x and x");
       text.Replace(L"x", Revealed<wchar_t>(stage.secret()).get());
       stage.expectAlive();
     }},
    {"AddString", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text += text; }); }},
    {"AddText", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text += text.GetString(); }); }},
    {"AddCharacters",
     [](const Stage& stage) {
       useSecret(stage, [](CSecStr& text) {
         for (int i = 0; i < 20; ++i) {
           text += L'x';
         }
       });
     }},
    {"InsertText",
     [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.Insert(4, text.GetString()); }); }},
    {"InsertCharacters",
     [](const Stage& stage) {
       useSecret(stage, [](CSecStr& text) {
         for (int i = 0; i < 20; ++i) {
           text.Insert(0, L'x');
         }
       });
     }},
    {"Append",
     [](const Stage& stage) {
       useSecret(stage, [&](CSecStr& text) { text.Append(Revealed<wchar_t>(stage.secret()).get()); });
     }},
    {"AppendCounted",
     [](const Stage& stage) {
       useSecret(stage, [&](CSecStr& text) { text.Append(Revealed<wchar_t>(stage.secret()).get(), 30); });
     }},
    {"SetString",
     [](const Stage& stage) {
       CSecStr text(kOther);
       text.SetString(Revealed<wchar_t>(stage.secret()).get(), 30);
       stage.expectAlive();
       text.SetString(kOther, 3);
       stage.expectGone();
     }},
    {"FormatArguments",
     [](const Stage& stage) {
       useSecret(stage, [&](CSecStr& text) {
         text.Format(L"<%s|%50s|%.30s|%d>", text.GetString(), text.GetString(), text.GetString(), 7);
       });
     }},
#ifndef _WIN32
    // The C runtime of Wine converts narrow text in a heap block of its own, which it does not wipe.
    {"FormatNarrowArgument",
     [](const Stage& stage) {
       useSecret(stage, [&](CSecStr& text) {
         Revealed<char> narrow(stage.secret());
         text.Format(L"<%S|%50S>", narrow.get(), narrow.get());
       });
     }},
#endif
    {"FormatText", [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.Format(text.GetString()); }); }},
    {"FormatOther", [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { text.Format(L"%d", 7); }); }},
    {"FormatResource",
     [](const Stage& stage) { useSecret(stage, [](CSecStr& text) { text.Format(kTextId, text.GetString()); }); }},
    {"FormatMissingResource",
     [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { text.Format(kMissingId); }); }},
    {"LoadString",
     [](const Stage& stage) { replaceSecret(stage, [](CSecStr& text) { EXPECT_NE(text.LoadStringW(kTextId), 0); }); }},
    {"LoadMissingString",
     [](const Stage& stage) {
       useSecret(stage, [](CSecStr& text) { EXPECT_EQ(text.LoadStringW(nullptr, kMissingId), 0); });
     }},
};
INSTANTIATE_TEST_SUITE_P(WideRewriting, WipeProof, testing::ValuesIn(kRewriting), kNameOf);

class WideGrowth : public support::MachineTest, public testing::WithParamInterface<Growth<CSecStr>> {};

TEST_P(WideGrowth, FindsZerosInTheBufferThatItLeaves) {
#ifndef _WIN32
  machine().strings().set(nullptr, kTextId, kLong);
#endif
  const memoryscan::Secret secret;
  HeapWatch watch(secret);
  CSecStr text = wideSecret(Stage(secret, Stage::Questions::notAsked));
  watch.follow(text.GetString(), sizeof(wchar_t));
  GetParam().run(text);
  ASSERT_TRUE(watch.moved());
  EXPECT_EQ(watch.zeroBeforeItMoved(), kWipes);
}

// The members that build the new text in the object's own buffer.
const Growth<CSecStr> kGrowth[] = {
    {"GetBuffer", [](CSecStr& text) { text.GetBuffer(500); }},
    {"AddCharacters",
     [](CSecStr& text) {
       for (int i = 0; i < 20; ++i) {
         text += L'x';
       }
     }},
    {"InsertText", [](CSecStr& text) { text.Insert(4, kLong); }},
    {"InsertCharacters",
     [](CSecStr& text) {
       for (int i = 0; i < 20; ++i) {
         text.Insert(4, L'x');
       }
     }},
    {"Append", [](CSecStr& text) { text.Append(kLong); }},
    {"AppendCounted", [](CSecStr& text) { text.Append(kLong, 60); }},
    {"LoadString", [](CSecStr& text) { EXPECT_NE(text.LoadStringW(nullptr, kTextId), 0); }},
};
INSTANTIATE_TEST_SUITE_P(, WideGrowth, testing::ValuesIn(kGrowth), kNameOf);

}  // namespace
}  // namespace wipeproof
