// Principal names by the live translation and by the two caches.
#include "fixture.h"

namespace accounts {
namespace {

template <class Width>
class Upn : public Accounts {
 protected:
  // What a call leaves, apart from the buffer: 0 or the last-error value of the failure.
  static DWORD decompose(const std::string& upn, typename Width::Char* samName, DWORD* size) {
    return Width::decompose(as<typename Width::Char>(upn).c_str(), samName, size) != 0 ? 0 : GetLastError();
  }
  static DWORD systemCache(const std::string& suffix, typename Width::Char* name, DWORD* size) {
    return Width::systemCache(as<typename Width::Char>(suffix).c_str(), name, size) != 0 ? 0 : GetLastError();
  }
};
TYPED_TEST_SUITE(Upn, Widths);

const auto kAlice = "alice@corp.example";

TYPED_TEST(Upn, LiveAnswersAreRemembered) {
  using Char = typename TypeParam::Char;
  std::optional<Translation<TypeParam>> translation(std::in_place, "CORP\\alice");
  GuardedBuffer<Char> name(32);
  LogCapture log;
  for (const bool keyIsThere : {false, true}) {
    if (keyIsThere) {
      put(kOwnCache, L"corp@example", L"OLDER");
    }
    DWORD size = 32;
    EXPECT_EQ(this->decompose("alice@corp@example", name.data(), &size), 0u);
    EXPECT_EQ(name.data(), as<Char>("CORP\\alice"));
    EXPECT_TRUE(name.untouched(11));
    EXPECT_EQ(size, 11u);
    const Log seen = log.take();
    EXPECT_TRUE(keyIsThere ? seen.empty() : seen.size() == 1 && seen[0].level == TXLOG_ERROR);
  }
  const auto stored = std::pair{DWORD{REG_SZ}, terminated(L"CORP")};
  EXPECT_EQ(Key(kOwnCache).stored(L"corp@example"), stored);

  // A buffer that is too small for it counts as a success without an answer.
  name.refill();
  DWORD size = 10;
  SetLastError(kUntouchedError);
  EXPECT_TRUE(TypeParam::decompose(as<Char>("bob@other.example").c_str(), name.data(), &size));
  EXPECT_EQ(GetLastError(), 0u);
  EXPECT_EQ(size, 11u);
  EXPECT_TRUE(name.untouched());
  EXPECT_FALSE(Key(kOwnCache).stored(L"other.example"));

  // Where there is no translation, no cache is asked.
  translation.reset();
  const EntryPoints none(L"secur32.dll", {{TypeParam::translateName, nullptr}});
  EXPECT_EQ(this->decompose("alice@corp@example", name.data(), &size), 2u);
  EXPECT_EQ(this->decompose(kAlice, name.data(), nullptr), 87u);
  EXPECT_TRUE(name.untouched() && size == 11);
}

TYPED_TEST(Upn, CachesAnswerWhenTheTranslationDoesNot) {
  using Char = typename TypeParam::Char;
  constexpr DWORD kNone = 99;  // no buffer
  const std::string longUser(244, 'u');
  const struct {
    std::string upn;
    const wchar_t *inSystem, *inOwn;  // the domain's names there
    DWORD capacity, lastError, size;  // size 0: not defined
    std::string text;                 // empty: untouched
  } rows[] = {
      {kAlice, L"CORP", L"OTHER", 11, 0, 11, "CORP\\alice"},
      {kAlice, L"", L"OWN", 10, 0, 10, "OWN\\alice"},
      {kAlice, L"CORP", L"", kNone, 0, 11, ""},
      {kAlice, L"", L"OWN", kNone, 122, 0, ""},
      {kAlice, L"CORP", L"", 10, 122, 11, "CORP"},
      {kAlice, L"CORP", L"", 4, 122, 11, "CORP"},
      {kAlice, L"", L"OWN", 3, 234, 0, ""},
      {kAlice, L"", L"", 30, 2, 0, ""},
      {"@corp.example", L"CORP", L"", 6, 0, 6, "CORP\\"},
      {"a@CORP.EXAMPLE", L"CORP", L"OWN", 30, 0, 6, "OWN\\a"},
      // The system cache's name is too long for the caller, and the own cache is read with its length as capacity.
      {kAlice, L"LONGDOMAIN", L"OWN", 3, 122, 10, ""},
      {kAlice, L"LONGDOMAIN", L"ABCDEFGHI", 3, 122, 16, ""},
      {kAlice, L"LONGDOMAIN", L"", 3, 2, 0, ""},
      {"@corp.example", L"LONG", L"A", 3, 0, 3, "A\\"},
      // 254 characters, and one more.
      {longUser + "@corp.example", L"DOMAIN789", L"", 300, 0, 255, "DOMAIN789\\" + longUser},
      {longUser + "@corp.example", L"DOMAIN7890", L"", 300, 122, 256, "DOMAIN7890"},
      {"alice", L"CORP", L"OWN", 30, 87, 30, ""},
  };
  for (const auto& row : rows) {
    for (const DWORD failure : {DWORD{ERROR_NO_SUCH_DOMAIN}, DWORD{0}}) {
      SCOPED_TRACE(row.upn + " " + std::to_string(row.capacity));
      this->removeCaches();
      Key::create(kOwnCache);
      put(kSystemCache, L"AFIRST", L"first.example");
      if (row.inSystem[0] != L'\0') {
        put(kSystemCache, row.inSystem, L"corp.example");
      }
      if (row.inOwn[0] != L'\0') {
        put(kOwnCache, L"corp.example", row.inOwn);
      }
      const Translation<TypeParam> translation("", failure);
      GuardedBuffer<Char> name(row.capacity + 1);
      DWORD size = row.capacity;
      SetLastError(ERROR_INSUFFICIENT_BUFFER);  // which must not be taken for the translation's
      EXPECT_EQ(this->decompose(row.upn, row.capacity == kNone ? nullptr : name.data(), &size), row.lastError);
      EXPECT_EQ(Translation<TypeParam>::calls, 1);
      EXPECT_TRUE(row.size == 0 || size == row.size) << size;
      EXPECT_TRUE(name.untouched(row.text.empty() ? 0 : row.text.size() + 1));
      EXPECT_TRUE(row.text.empty() || name.data() == as<Char>(row.text));
    }
  }
}

TYPED_TEST(Upn, RecordsAndBoundsOfTheOwnCache) {
  using Char = typename TypeParam::Char;
  const std::wstring name = std::wstring(L"vlNetGetNETBIOSDomainNameFromUPNVista") + TypeParam::letter;
  Bytes odd = bytesOf(L"OWN"sv);
  odd.push_back(0x41);
  const struct {
    std::optional<Bytes> data;  // as stored
    DWORD lastError;
    const char* text;
    std::wstring error;
  } rows[] = {{{}, 2, "", L" Can't open registry key SOFTWARE\\Velorin\\System\\DomainCache"},
              {{}, 2, "", L" Can't get value of registry key corp.example"},
              {bytesOf(L"OWN\0MORE\0"sv), 0, "OWN\\alice", L""},
              {bytesOf(L"OWN"sv), 0, "OWN\\alice", L""},
              {bytesOf<wchar_t>(std::wstring(40, L'o')), 234, "", L" Can't get value of registry key corp.example"},
              {odd, 0, "OWN\\alice", L""},
              {Bytes(), 0, "\\alice", L""}};
  const Translation<TypeParam> translation("", ERROR_NO_SUCH_DOMAIN);
  LogCapture log;
  for (const auto& row : rows) {
    SCOPED_TRACE(&row - rows);
    if (row.data) {
      Key::create(kOwnCache).set(L"corp.example", REG_SZ, *row.data);
    }
    GuardedBuffer<Char> sam(41);
    DWORD size = 40;
    EXPECT_EQ(this->decompose(kAlice, sam.data(), &size), row.lastError);
    const Log error = row.lastError != 0 ? Log{failed(name + row.error)} : Log();
    EXPECT_TRUE(row.lastError != 0 || (sam.data() == as<Char>(row.text) && size == std::strlen(row.text) + 1));
    EXPECT_TRUE(log.was(Log{entered(name)} + error + Log{left(name + inParentheses(static_cast<int>(row.lastError)))}));
    Key::create(kOwnCache);  // there from the second row on
  }
}

TYPED_TEST(Upn, SystemCache) {
  using Char = typename TypeParam::Char;
  LogCapture log;
  DWORD size = 20;
  GuardedBuffer<Char> name(300);
  EXPECT_EQ(this->systemCache("corp.example", name.data(), &size), 2u);
  // 126 wide or 254 narrow characters of data, 254 of a name; one more ends the search.
  const std::string suffix(TypeParam::wide ? 126 : 254, 's');
  const std::wstring longName(254, L'd');
  put(kSystemCache, L"AAAA", L"corp.example");
  put(kSystemCache, L"BBB", L"corp.example");
  EXPECT_EQ(this->systemCache("Corp.example", name.data(), &size), 259u);
  EXPECT_EQ(this->systemCache("corp.exampl", name.data(), &size), 259u);
  EXPECT_EQ(size, 20u);
  EXPECT_TRUE(name.untouched());
  put(kSystemCache, L"CC", widened(suffix));
  put(kSystemCache, longName, L"long.example");
  put(kSystemCache, L"E" + longName, L"name.example");
  put(kSystemCache, L"F", L"behind.example");
  const struct {
    std::string suffix;
    DWORD capacity, lastError, size;
    std::wstring name;  // empty: untouched
  } rows[] = {{"corp.example", 4, 0, 4, L"AAAA"}, {"corp.example", 3, 122, 4, L""},
              {suffix, 299, 0, 2, L"CC"},         {"long.example", 254, 0, 254, longName},
              {suffix + 's', 299, 234, 299, L""}, {"behind.example", 299, 234, 299, L""}};
  for (const auto& row : rows) {
    name.refill();
    size = row.capacity;
    EXPECT_EQ(this->systemCache(row.suffix, name.data(), &size), row.lastError) << row.suffix;
    EXPECT_EQ(size, row.size);
    EXPECT_TRUE(name.untouched(row.name.empty() ? 0 : row.size + 1));
    EXPECT_TRUE(row.name.empty() || widened(std::basic_string<Char>(name.data())) == row.name);
  }
  RegDeleteValueW(Key(kSystemCache).get(), (L"E" + longName).c_str());
  put(kSystemCache, L"E", widened(suffix) + L's');
  EXPECT_EQ(this->systemCache("unknown.example", name.data(), &size), 234u);
  size = 0;
  EXPECT_EQ(this->systemCache("corp.example", nullptr, &size), 0u);
  EXPECT_EQ(size, 4u);
  EXPECT_TRUE(log.was({}));
}

}  // namespace
}  // namespace accounts
