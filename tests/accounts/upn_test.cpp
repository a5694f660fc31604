// Principal names by the live translation and by the two caches.
#include "fixture.h"

namespace accounts {
namespace {

template <class Width>
class Upn : public Accounts {
 protected:
  static std::wstring ownLookup() { return std::wstring(L"vlNetGetNETBIOSDomainNameFromUPNVista") + Width::letter; }
};
using Widths = testing::Types<Narrow, Wide>;
TYPED_TEST_SUITE(Upn, Widths);

const auto kAlice = "alice@corp.example";

TYPED_TEST(Upn, LiveAnswersAreRemembered) {
  using Char = typename TypeParam::Char;
  const auto upn = as<Char>("alice@corp@example");
  GuardedBuffer<Char> name(32);
  support::LogCapture log;
  for (const bool keyIsThere : {false, true}) {
    if (keyIsThere) {
      put(kOwnCache, L"corp@example", L"OLDER");
    }
    const Translation<TypeParam> translation{std::string("CORP\\alice")};
    DWORD size = 32;
    EXPECT_TRUE(TypeParam::decompose(upn.c_str(), name.data(), &size));
    EXPECT_EQ(name.data(), as<Char>("CORP\\alice"));
    EXPECT_TRUE(name.untouched(11));
    EXPECT_EQ(size, 11u);
    const auto seen = log.take();
    EXPECT_EQ(seen.size(), keyIsThere ? 0u : 1u);
    if (!keyIsThere) {
      ASSERT_FALSE(seen.empty());
      EXPECT_EQ(seen[0].level, TXLOG_ERROR);
    }
  }
  EXPECT_EQ(Key(kOwnCache).stored(L"corp@example"), (std::pair{DWORD{REG_SZ}, bytesOf(L"CORP\0"sv)}));
}

TYPED_TEST(Upn, TooSmallForTheLiveAnswer) {
  using Char = typename TypeParam::Char;
  put(kOwnCache, L"corp.example", L"X");
  const Translation<TypeParam> translation{std::string("CORP\\alice")};
  GuardedBuffer<Char> name(16);
  DWORD size = 10;
  EXPECT_TRUE(TypeParam::decompose(as<Char>(kAlice).c_str(), name.data(), &size));
  EXPECT_EQ(GetLastError(), 0u);
  EXPECT_EQ(size, 11u);
  EXPECT_TRUE(name.untouched());
  EXPECT_EQ(Key(kOwnCache).stored(L"corp.example"), (std::pair{DWORD{REG_SZ}, bytesOf(L"X\0"sv)}));
}

TYPED_TEST(Upn, CachesAnswerWhenTheTranslationDoesNot) {
  using Char = typename TypeParam::Char;
  constexpr DWORD kNone = 99;  // no buffer
  const std::string longUser(244, 'u');
  const struct {
    std::string upn;
    const wchar_t* inSystem;  // the domain's name there
    const wchar_t* inOwn;
    DWORD capacity;
    DWORD lastError;  // 0: success
    DWORD size;
    std::string text;  // empty: untouched
  } rows[] = {
      {kAlice, L"CORP", L"OTHER", 11, 0, 11, "CORP\\alice"},
      {kAlice, nullptr, L"OWN", 10, 0, 10, "OWN\\alice"},
      {kAlice, L"CORP", nullptr, kNone, 0, 11, ""},
      {kAlice, nullptr, L"OWN", kNone, 122, 0, ""},
      {kAlice, L"CORP", nullptr, 10, 122, 11, "CORP"},
      {kAlice, L"CORP", nullptr, 4, 122, 11, "CORP"},
      {kAlice, nullptr, L"OWN", 3, 234, 0, ""},
      {kAlice, nullptr, nullptr, 30, 2, 0, ""},
      {"@corp.example", L"CORP", nullptr, 6, 0, 6, "CORP\\"},
      {"a@CORP.EXAMPLE", L"CORP", L"OWN", 30, 0, 6, "OWN\\a"},
      // The system cache's name is too long for the caller, and the own cache is read with its length as capacity.
      {kAlice, L"LONGDOMAIN", L"OWN", 3, 122, 10, ""},
      {kAlice, L"LONGDOMAIN", L"ABCDEFGHI", 3, 122, 16, ""},
      {"@corp.example", L"LONG", L"A", 3, 0, 3, "A\\"},
      // 254 characters, and one more.
      {longUser + "@corp.example", L"DOMAIN789", nullptr, 300, 0, 255, "DOMAIN789\\" + longUser},
      {longUser + "@corp.example", L"DOMAIN7890", nullptr, 300, 122, 256, "DOMAIN7890"},
      {"alice", L"CORP", L"OWN", 30, 87, 30, ""},
  };
  for (const auto& row : rows) {
    for (const DWORD failure : {DWORD{ERROR_NO_SUCH_DOMAIN}, DWORD{0}}) {
      TestFixture::removeCaches();
      Key::create(kSystemCache);
      Key::create(kOwnCache);
      if (row.inSystem != nullptr) {
        put(kSystemCache, L"AFIRST", L"first.example");
        put(kSystemCache, row.inSystem, L"corp.example");
      }
      if (row.inOwn != nullptr) {
        put(kOwnCache, L"corp.example", row.inOwn);
      }
      const Translation<TypeParam> translation(failure);
      GuardedBuffer<Char> name(row.capacity + 1);
      DWORD size = row.capacity;
      // What the translation leaves alone must not be taken for its own.
      SetLastError(ERROR_INSUFFICIENT_BUFFER);
      const BOOL result =
          TypeParam::decompose(as<Char>(row.upn).c_str(), row.capacity == kNone ? nullptr : name.data(), &size);
      EXPECT_EQ(Translation<TypeParam>::calls, 1);
      EXPECT_EQ(result != 0, row.lastError == 0) << row.upn << " " << row.capacity;
      if (row.lastError != 0) {
        EXPECT_EQ(GetLastError(), row.lastError) << row.upn << " " << row.capacity;
      }
      if (row.size != 0) {
        EXPECT_EQ(size, row.size) << row.upn << " " << row.capacity;
      }
      EXPECT_TRUE(name.untouched(row.text.empty() ? 0 : row.text.size() + 1)) << row.upn << " " << row.capacity;
      if (!row.text.empty()) {
        EXPECT_EQ(name.data(), as<Char>(row.text));
      }
    }
  }
}

TYPED_TEST(Upn, WithoutTranslationNoCacheIsAsked) {
  using Char = typename TypeParam::Char;
  put(kOwnCache, L"corp.example", L"OWN");
  DWORD size = 30;
  GuardedBuffer<Char> name(31);
  const EntryPoints none(L"secur32.dll", {{TypeParam::translateName, nullptr}});
  EXPECT_FALSE(TypeParam::decompose(as<Char>(kAlice).c_str(), name.data(), &size));
  EXPECT_EQ(GetLastError(), 2u);
  EXPECT_EQ(size, 30u);
  EXPECT_TRUE(name.untouched());
  EXPECT_FALSE(TypeParam::decompose(as<Char>(kAlice).c_str(), name.data(), nullptr));
  EXPECT_EQ(GetLastError(), 87u);
}

TYPED_TEST(Upn, RecordsAndBoundsOfTheOwnCache) {
  using Char = typename TypeParam::Char;
  const std::wstring name = TestFixture::ownLookup();
  const struct {
    const wchar_t* state;
    std::wstring_view data;  // as stored
    std::size_t extraBytes;
    DWORD lastError;
    const char* text;
    std::wstring error;
  } rows[] = {
      {L"no key", L"", 0, 2, "", L" Can't open registry key SOFTWARE\\Velorin\\System\\DomainCache"},
      {L"no value", L"", 0, 2, "", L" Can't get value of registry key corp.example"},
      {L"terminated", L"OWN\0"sv, 0, 0, "OWN\\alice", L""},
      {L"terminated twice", L"OWN\0\0"sv, 0, 0, "OWN\\alice", L""},
      {L"more behind", L"OWN\0MORE\0"sv, 0, 0, "OWN\\alice", L""},
      {L"no terminator", L"OWN"sv, 0, 0, "OWN\\alice", L""},
      {L"odd", L"OWN"sv, 1, 0, "OWN\\alice", L""},
      {L"nothing", L""sv, 0, 0, "\\alice", L""},
  };
  support::LogCapture log;
  const Translation<TypeParam> translation(DWORD{ERROR_NO_SUCH_DOMAIN});
  for (const auto& row : rows) {
    TestFixture::removeCaches();
    if (row.state != L"no key"sv) {
      const Key key = Key::create(kOwnCache);
      if (row.state != L"no value"sv) {
        Bytes data = bytesOf<wchar_t>(row.data);
        data.resize(data.size() + row.extraBytes, 0x41);
        key.set(L"corp.example", REG_SZ, data);
      }
    }
    GuardedBuffer<Char> sam(41);
    DWORD size = 40;
    EXPECT_EQ(TypeParam::decompose(as<Char>(kAlice).c_str(), sam.data(), &size) != 0, row.lastError == 0) << row.state;
    Lines lines = {{TXLOG_ENTRY, name}};
    if (row.lastError == 0) {
      EXPECT_EQ(sam.data(), as<Char>(row.text)) << testing::PrintToString(row.state);
      EXPECT_EQ(size, std::string_view(row.text).size() + 1);
    } else {
      EXPECT_EQ(GetLastError(), row.lastError);
      lines.push_back({TXLOG_ERROR, name + row.error});
    }
    lines.push_back({TXLOG_EXIT, name + L" (" + std::to_wstring(row.lastError) + L")"});
    EXPECT_TRUE(log.was(records(lines))) << testing::PrintToString(row.state);
  }
}

TYPED_TEST(Upn, SystemCache) {
  using Char = typename TypeParam::Char;
  const auto ask = [](const char* suffix, Char* name, DWORD* size) {
    SetLastError(kUntouchedError);
    return TypeParam::systemCache(as<Char>(suffix).c_str(), name, size) != 0 ? 0 : GetLastError();
  };
  support::LogCapture log;
  DWORD size = 20;
  GuardedBuffer<Char> name(21);
  EXPECT_EQ(ask("corp.example", name.data(), &size), 2u);
  put(kSystemCache, L"AAAA", L"corp.example");
  put(kSystemCache, L"BBB", L"corp.example");
  EXPECT_EQ(ask("Corp.example", name.data(), &size), 259u);
  EXPECT_EQ(ask("corp.exampl", name.data(), &size), 259u);
  EXPECT_EQ(size, 20u);
  EXPECT_TRUE(name.untouched());
  EXPECT_EQ(ask("corp.example", nullptr, &size), 0u);
  EXPECT_EQ(size, 4u);
  EXPECT_EQ(ask("corp.example", name.data(), &size), 0u);
  EXPECT_EQ(name.data(), as<Char>("AAAA"));
  EXPECT_TRUE(name.untouched(5));
  name.refill();
  size = 3;
  EXPECT_EQ(ask("corp.example", name.data(), &size), 122u);
  EXPECT_EQ(size, 4u);
  EXPECT_TRUE(name.untouched());

  // 126 wide or 254 narrow characters of data, 254 of a name; one more ends the search.
  const std::size_t most = sizeof(Char) == 1 ? 254 : 126;
  const std::string longSuffix(most, 's');
  const auto wideSuffix = as<wchar_t>(longSuffix);
  put(kSystemCache, L"CC", wideSuffix);
  put(kSystemCache, (L"D" + std::wstring(253, L'd')).c_str(), L"long.example");
  put(kSystemCache, L"E", wideSuffix + L's');
  put(kSystemCache, L"F", L"behind.example");
  GuardedBuffer<Char> longName(300);
  for (const auto& [suffix, length] : {std::pair{longSuffix, 2u}, {std::string("long.example"), 254u}}) {
    size = 299;
    EXPECT_EQ(ask(suffix.c_str(), longName.data(), &size), 0u);
    EXPECT_EQ(size, length);
  }
  EXPECT_EQ(ask((longSuffix + 's').c_str(), longName.data(), &size), 234u);
  EXPECT_EQ(ask("behind.example", longName.data(), &size), 234u);
  EXPECT_EQ(size, 254u);
  EXPECT_TRUE(log.was({}));
}

}  // namespace
}  // namespace accounts
