// User ids of every shape, and the size protocol of the flat forms.
#include "fixture.h"

namespace accounts {
namespace {

template <class Width>
class Convert : public Accounts {
 protected:
  static constexpr wchar_t kName[] = L"vlNetConvertUserIdToNETBIOS";

  static std::wstring name() { return std::wstring(kName) + Width::letter; }
  // The overload's records. `route` names levels and texts behind its own name.
  static std::vector<LogRecord> overloadRecords(const std::basic_string<typename Width::Char>& domain,
                                                const Lines& route) {
    std::vector<LogRecord> all = records({{TXLOG_ENTRY, kName}});
    all.push_back(binary(L"vlNetConvertUserIdToNETBIOS Domain name", domain));
    Lines lines = {{TXLOG_TRACE, L" Username"},
                   {TXLOG_TRACE, L" Domain = " + std::wstring(domain.begin(), domain.end())}};
    lines.insert(lines.end(), route.begin(), route.end());
    for (const auto& [level, text] : lines) {
      all.push_back({L"txhostkit", level, kName + text});
    }
    return all;
  }
};
using Widths = testing::Types<Narrow, Wide>;
TYPED_TEST_SUITE(Convert, Widths);

const Lines kDirect = {{TXLOG_TRACE, L" Use input directly"}, {TXLOG_EXIT, L" (0)"}};
const Lines kSam = {{TXLOG_TRACE, L" SAM compatible name"}, {TXLOG_EXIT, L" (0)"}};
const Lines kUpnSam = {{TXLOG_TRACE, L" UPN"}, {TXLOG_TRACE, L" SAM compatible name"}, {TXLOG_EXIT, L" (0)"}};
const Lines kUpnDirect = {{TXLOG_TRACE, L" UPN"}, {TXLOG_TRACE, L" Use input directly"}, {TXLOG_EXIT, L" (0)"}};

TYPED_TEST(Convert, TheShapeOfTheTextDecides) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  const struct {
    const char* userId;
    const char* domain;
    const char* translated;
    const char* user;
    const char* domainOut;
    const Lines& route;
  } rows[] = {
      {"alice", "CORP", "", "alice", "CORP", kDirect},
      {"alice", "CORP (this computer)", "", "alice", "CORP", kDirect},
      {"alice", "CORP\tremark", "", "alice", "CORP", kDirect},
      {"alice", "CO\tRP x", "", "alice", "CO\tRP", kDirect},
      {"alice", "", "", "alice", "", kDirect},
      {"alice", " CORP", "", "alice", "", kDirect},
      {"alice", "\tCORP", "", "alice", "", kDirect},
      {"CORP\\alice", "OTHER", "", "alice", "CORP", kSam},
      {"CORP\\dept\\alice", "OTHER", "", "dept\\alice", "CORP", kSam},
      {"\\alice", "OTHER", "", "alice", "", kSam},
      {"CORP\\", "OTHER", "", "", "CORP", kSam},
      {"alice@corp.example", "OTHER", "CORP\\alice", "alice", "CORP", kUpnSam},
      {"X\\alice@corp.example", "OTHER", "CORP\\dept\\alice", "dept\\alice", "CORP", kUpnSam},
      {"alice@corp.example", "CORP x", "alice", "alice@corp.example", "CORP", kUpnDirect},
      {"X\\alice@corp.example", "CORP", "alice", "X\\alice@corp.example", "CORP", kUpnDirect},
  };
  Key::create(kOwnCache);
  support::LogCapture log;
  for (const auto& row : rows) {
    const Translation<TypeParam> translation{std::string(row.translated)};
    String user = as<Char>("before");
    String domain = user;
    EXPECT_EQ(vlNetConvertUserIdToNETBIOS(as<Char>(row.userId), as<Char>(row.domain), user, domain), 0);
    EXPECT_EQ(user, as<Char>(row.user)) << row.userId;
    EXPECT_EQ(domain, as<Char>(row.domainOut)) << row.userId;
    EXPECT_TRUE(log.was(TestFixture::overloadRecords(as<Char>(row.domain), row.route))) << row.userId;
    EXPECT_EQ(Translation<TypeParam>::calls, row.translated[0] != '\0' ? 1 : 0);

    // Arguments and results may be the same objects.
    user = as<Char>(row.userId);
    domain = as<Char>(row.domain);
    EXPECT_EQ(vlNetConvertUserIdToNETBIOS(user, domain, domain, user), 0);
    EXPECT_EQ(domain, as<Char>(row.user));
    EXPECT_EQ(user, as<Char>(row.domainOut));
    log.take();
  }
}

TYPED_TEST(Convert, FailuresTouchNothing) {
  using Char = typename TypeParam::Char;
  using String = std::basic_string<Char>;
  const struct {
    const char* userId;
    std::string translated;
    int result;
    Lines route;
  } rows[] = {
      {"", "", 87, {{TXLOG_EXIT, L" (87)"}}},
      {"alice@corp.example", "", 2, {{TXLOG_TRACE, L" UPN"}, {TXLOG_ERROR, L" UPN Translation failed (2)"}}},
      // Too long for the translation's buffer: the translation itself calls that a success.
      {"alice@corp.example",
       "CORP\\" + std::string(250, 'a'),
       122,
       {{TXLOG_TRACE, L" UPN"}, {TXLOG_ERROR, L" UPN Translation failed (122)"}}},
  };
  support::LogCapture log;
  Key::create(kOwnCache);
  Key::create(kSystemCache);
  for (const auto& row : rows) {
    const Translation<TypeParam> translation(row.translated);
    String user = as<Char>("user");
    String domain = as<Char>("domain");
    EXPECT_EQ(vlNetConvertUserIdToNETBIOS(as<Char>(row.userId), as<Char>("CORP"), user, domain), row.result);
    EXPECT_EQ(user, as<Char>("user"));
    EXPECT_EQ(domain, as<Char>("domain"));
    std::vector<LogRecord> seen = log.take();
    std::erase_if(seen, [](const LogRecord& r) { return r.text.find(L"NETBIOSDomainName") != std::wstring::npos; });
    EXPECT_EQ(seen, TestFixture::overloadRecords(as<Char>("CORP"), row.route)) << row.userId;

    GuardedBuffer<Char> buffer(8);
    DWORD userSize = 8;
    DWORD domainSize = 9;
    EXPECT_EQ(
        TypeParam::convert(as<Char>(row.userId).c_str(), nullptr, buffer.data(), &userSize, buffer.data(), &domainSize),
        row.result);
    EXPECT_TRUE(buffer.untouched());
    EXPECT_EQ(userSize + domainSize, 17u);
    seen = log.take();
    ASSERT_FALSE(seen.empty());
    EXPECT_EQ(seen.back().text, TestFixture::name() + L" (" + std::to_wstring(row.result) + L")");
  }
}

TYPED_TEST(Convert, SizeProtocol) {
  using Char = typename TypeParam::Char;
  constexpr DWORD kNone = 99;  // no buffer
  const struct {
    DWORD userCapacity;
    DWORD domainCapacity;
    int result;
    bool userWritten;
    bool domainWritten;
    const wchar_t* error;
  } rows[] = {
      {6, 5, 0, true, true, L""},
      {60, 50, 0, true, true, L""},
      {5, 5, 122, false, false, L" Insufficient buffer for user name (5 < 5)"},
      {0, 0, 122, false, false, L" Insufficient buffer for user name (0 < 5)"},
      {6, 4, 122, true, false, L" Insufficient buffer for domain (4 < 4)"},
      {kNone, kNone, 0, false, false, L""},
      {kNone, 5, 0, false, true, L""},
      {6, kNone, 0, true, false, L""},
      {kNone, 2, 122, false, false, L" Insufficient buffer for domain (2 < 4)"},
  };
  const bool wide = sizeof(Char) != 1;
  support::LogCapture log;
  for (const auto& row : rows) {
    GuardedBuffer<Char> user(64);
    GuardedBuffer<Char> domain(64);
    DWORD userSize = row.userCapacity;
    DWORD domainSize = row.domainCapacity;
    const auto given = as<Char>("OTHER x");
    Char* const domainOut = row.domainCapacity == kNone ? nullptr : domain.data();
    EXPECT_EQ(TypeParam::convert(as<Char>("CORP\\alice").c_str(), given.c_str(),
                                 row.userCapacity == kNone ? nullptr : user.data(), &userSize, domainOut, &domainSize),
              row.result);
    EXPECT_EQ(userSize, 6u);
    EXPECT_EQ(domainSize, 5u);
    EXPECT_TRUE(user.untouched(row.userWritten ? 6 : 0));
    EXPECT_TRUE(domain.untouched(row.domainWritten ? 5 : 0));
    if (row.userWritten) {
      EXPECT_EQ(user.data(), as<Char>("alice"));
    }
    if (row.domainWritten) {
      EXPECT_EQ(domain.data(), as<Char>("CORP"));
    }
    const std::wstring name = TestFixture::name();
    std::vector<LogRecord> expected =
        records({{TXLOG_ENTRY, name + L" (" + pointer(given.c_str()) + L"," + pointer(&userSize) + L"," +
                                   pointer(domainOut) + L"," + pointer(&domainSize) + L")"},
                 {TXLOG_TRACE, name + L" User name"},
                 {TXLOG_TRACE, name + L" Domain name = OTHER x"}});
    const auto overload = TestFixture::overloadRecords(given, kSam);
    expected.insert(expected.end(), overload.begin(), overload.end());
    Lines tail;
    if (row.userWritten && wide) {
      tail.push_back({TXLOG_TRACE, name + L" User name out"});
    }
    if (row.domainWritten && wide) {
      tail.push_back({TXLOG_TRACE, name + L" Domain out = CORP"});
    }
    if (row.error[0] != L'\0') {
      tail.push_back({TXLOG_ERROR, name + row.error});
    }
    tail.push_back({TXLOG_EXIT, name + L" (" + std::to_wstring(row.result) + L")"});
    const auto tailRecords = records(tail);
    expected.insert(expected.end(), tailRecords.begin(), tailRecords.end());
    EXPECT_TRUE(log.was(expected));
  }
}

TYPED_TEST(Convert, RequiredPointers) {
  using Char = typename TypeParam::Char;
  const auto id = as<Char>("alice");
  DWORD userSize = 7;
  DWORD domainSize = 7;
  support::LogCapture log(TXLOG_LEVEL_BIT(TXLOG_ERROR) | TXLOG_LEVEL_BIT(TXLOG_TRACE) | TXLOG_LEVEL_BIT(TXLOG_EXIT));
  EXPECT_EQ(TypeParam::convert(nullptr, id.c_str(), nullptr, &userSize, nullptr, &domainSize), 87);
  EXPECT_EQ(TypeParam::convert(id.c_str(), id.c_str(), nullptr, nullptr, nullptr, &domainSize), 87);
  EXPECT_EQ(TypeParam::convert(id.c_str(), id.c_str(), nullptr, &userSize, nullptr, nullptr), 87);
  EXPECT_EQ(userSize + domainSize, 14u);
  const std::wstring name = TestFixture::name();
  const Lines once = {{TXLOG_ERROR, name + L" Invalid parameter"}, {TXLOG_EXIT, name + L" (87)"}};
  EXPECT_TRUE(log.was(records({once[0], once[1], once[0], once[1], once[0], once[1]})));
}

}  // namespace
}  // namespace accounts
