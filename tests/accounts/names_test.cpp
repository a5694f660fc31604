// User ids of every shape, the users of the session and of the process, and the sizes of what they hand out.
#include "fixture.h"

namespace accounts {
namespace {

const std::wstring kConvert = L"vlNetConvertUserIdToNETBIOS";
const std::wstring kCurrent = L"GetCurrentUserAndDomain";

// The records of a conversion by the overload. `route`: what is said behind the name.
template <class String>
LogRecord binary(const std::wstring& label, const String& data) {
  return {L"txhostkit", TXLOG_TRACE, label, bytesOf<typename String::value_type>(data)};
}
template <class String>
Log conversion(const String& domain, const std::vector<std::wstring>& route, int result) {
  Log log = {entered(kConvert), binary(kConvert + L" Domain name", domain), traced(kConvert + L" Username"),
             traced(kConvert + L" Domain = " + widened(domain))};
  for (const std::wstring& step : route) {
    log.push_back(traced(kConvert + step));
  }
  const std::wstring number = inParentheses(result);
  log.push_back(result % 87 == 0 ? left(kConvert + number) : failed(kConvert + L" UPN Translation failed" + number));
  return log;
}

template <class Width>
class Convert : public Accounts {};
TYPED_TEST_SUITE(Convert, Widths);

TYPED_TEST(Convert, TheShapeOfTheTextDecides) {
  using Char = typename TypeParam::Char;
  const std::wstring upn = L" UPN", sam = L" SAM compatible name", direct = L" Use input directly";
  const std::string tooLong = "CORP\\" + std::string(250, 'a');
  const struct {
    const char *userId, *domain;
    std::string translated;
    int result;
    const char *user, *domainOut;
    std::vector<std::wstring> route;
  } rows[] = {
      {"alice", "CORP", "", 0, "alice", "CORP", {direct}},
      {"alice", "CORP (this computer)", "", 0, "alice", "CORP", {direct}},
      {"alice", "CORP\tremark", "", 0, "alice", "CORP", {direct}},
      {"alice", "CO\tRP x", "", 0, "alice", "CO\tRP", {direct}},
      {"alice", "", "", 0, "alice", "", {direct}},
      {"alice", " CORP", "", 0, "alice", "", {direct}},
      {"alice", "\tCORP", "", 0, "alice", "", {direct}},
      {"CORP\\alice", "OTHER", "", 0, "alice", "CORP", {sam}},
      {"CORP\\dept\\alice", "OTHER", "", 0, "dept\\alice", "CORP", {sam}},
      {"\\alice", "OTHER", "", 0, "alice", "", {sam}},
      {"CORP\\", "OTHER", "", 0, "", "CORP", {sam}},
      {"alice@corp.example", "OTHER", "CORP\\alice", 0, "alice", "CORP", {upn, sam}},
      {"X\\alice@corp.example", "OTHER", "CORP\\dept\\alice", 0, "dept\\alice", "CORP", {upn, sam}},
      {"X\\alice@corp.example", "CORP x", "alice", 0, "X\\alice@corp.example", "CORP", {upn, direct}},
      {"", "CORP", "", 87, "before", "before", {}},
      {"alice@new.example", "CORP", "", 2, "before", "before", {upn}},
      // Too long for the translation's buffer: the translation itself calls that a success.
      {"alice@corp.example", "CORP", tooLong, 122, "before", "before", {upn}},
  };
  Key::create(kOwnCache);
  for (const auto& row : rows) {
    const Translation<TypeParam> translation(row.translated);
    const auto userId = as<Char>(row.userId), domain = as<Char>(row.domain);
    auto user = as<Char>("before"), domainOut = user;
    LogCapture log;
    EXPECT_EQ(vlNetConvertUserIdToNETBIOS(userId, domain, user, domainOut), row.result) << row.userId;
    Log seen = log.take();
    std::erase_if(seen, [](const LogRecord& record) { return record.text.find(L"Vista") != std::wstring::npos; });
    EXPECT_EQ(seen, conversion(domain, row.route, row.result)) << row.userId;
    EXPECT_EQ(user, as<Char>(row.user)) << row.userId;
    EXPECT_EQ(domainOut, as<Char>(row.domainOut)) << row.userId;
    EXPECT_EQ(Translation<TypeParam>::calls, row.route.size() == 2 || row.result % 87 != 0 ? 1 : 0);

    GuardedBuffer<Char> buffers[] = {GuardedBuffer<Char>(32), GuardedBuffer<Char>(32)};
    DWORD sizes[] = {32, 31};
    EXPECT_EQ(TypeParam::convert(userId.c_str(), row.domain[0] == '\0' ? nullptr : domain.c_str(), buffers[0].data(),
                                 &sizes[0], buffers[1].data(), &sizes[1]),
              row.result);
    const bool done = row.result == 0;
    EXPECT_TRUE(buffers[0].untouched(done ? user.size() + 1 : 0) && buffers[1].untouched(done ? sizes[1] : 0));
    EXPECT_TRUE(done ? buffers[0].data() == user && buffers[1].data() == domainOut : sizes[0] + sizes[1] == 63);
    EXPECT_EQ(log.records().back(), left(kConvert + TypeParam::letter + inParentheses(row.result)));

    // Arguments and results may be the same objects.
    auto first = userId, second = domain;
    vlNetConvertUserIdToNETBIOS(first, second, second, first);
    EXPECT_TRUE(!done || (second == user && first == domainOut));
  }
  DWORD size = 7;
  EXPECT_EQ(TypeParam::convert(nullptr, nullptr, nullptr, &size, nullptr, &size), 87);
  EXPECT_EQ(size, 7u);
}

// The functions that hand out two names: how each is called and what it logs on the way.
template <class W>
struct ConvertForm : W {
  using Char = typename W::Char;
  static constexpr bool bothOrNone = false, tracesOutput = W::wide;
  static constexpr const wchar_t *invalid = L" Invalid parameter",
                                 *userTooSmall = L" Insufficient buffer for user name",
                                 *domainTooSmall = L" Insufficient buffer for domain";
  static constexpr DWORD shownMore = 0;
  static inline const auto given = as<Char>("OTHER x");
  static inline const std::wstring name = kConvert + W::letter, shownFirst = pointer(given.c_str()) + L",";
  static int call(Char* user, DWORD* userSize, Char* domain, DWORD* domainSize) {
    return W::convert(as<Char>("CORP\\alice").c_str(), given.c_str(), user, userSize, domain, domainSize);
  }
  static Log before() {
    return Log{traced(name + L" User name"), traced(name + L" Domain name = OTHER x")} +
           conversion(given, {L" SAM compatible name"}, 0);
  }
};
template <class W>
struct CurrentForm : W {
  using Char = typename W::Char;
  static constexpr bool bothOrNone = false, tracesOutput = false;
  static constexpr const wchar_t *invalid = L" invalid parameter",
                                 *userTooSmall = L" Insufficient buffer for user's name",
                                 *domainTooSmall = L" Insufficient buffer for user's account domain";
  static constexpr DWORD shownMore = 1;
  static constexpr auto call = W::currentUser;
  static inline const std::wstring name = L"vlNet" + kCurrent + W::letter, shownFirst;
  static Log before() {
    std::basic_string<Char> user, domain;
    EXPECT_EQ(vlNetGetCurrentUserAndDomain(user, domain), 0);
    return {entered(kCurrent + (W::wide ? L"" : L" std::string")), traced(kCurrent + L" Retrieve username and domain"),
            binary(kCurrent + L" Domain", domain), left(kCurrent + L" (0)")};
  }
};
struct ProcessForm : CurrentForm<Wide> {
  static constexpr bool bothOrNone = true;
  static constexpr auto call = &vlNetGetCurrentProcessUserAndDomainW;
  static inline const std::wstring name = L"vlNetGetCurrentProcessUserAndDomainW";
  static Log before() { return {}; }
};

template <class Form>
class Sizes : public Accounts {};
using Forms =
    testing::Types<ConvertForm<Narrow>, ConvertForm<Wide>, CurrentForm<Narrow>, CurrentForm<Wide>, ProcessForm>;
TYPED_TEST_SUITE(Sizes, Forms);

TYPED_TEST(Sizes, OfBothNames) {
  using Char = typename TypeParam::Char;
  using Form = TypeParam;
  constexpr int kNone = -1000;  // no buffer
  Char userName[256], domainName[256];
  DWORD userNeeded = 256, domainNeeded = 256;
  ASSERT_EQ(Form::call(userName, &userNeeded, domainName, &domainNeeded), 0);
  ASSERT_EQ(userNeeded, std::basic_string_view(userName).size() + 1);
  ASSERT_EQ(domainNeeded, std::basic_string_view(domainName).size() + 1);
  const struct {
    int user, domain;          // capacities, less what is needed
    std::string_view outcome;  // the names written, and the one that has no room
  } rows[] = {{0, 0, "ud"},       {50, 40, "ud"},  {-1, 0, "U"},    {-1, -1, "U"},   {0, -1, "uD"},
              {kNone, kNone, ""}, {kNone, 0, "d"}, {0, kNone, "u"}, {kNone, -1, "D"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.outcome);
    const auto has = [&](char letter) { return row.outcome.find(letter) != std::string_view::npos; };
    const bool complete = row.outcome == "ud", none = Form::bothOrNone && !complete;
    const int result = none || has('U') || has('D') ? 122 : 0;
    const bool userWritten = !none && has('u'), domainWritten = !none && has('d');
    GuardedBuffer<Char> user(256), domain(256);
    const DWORD userCapacity = row.user == kNone ? 0 : userNeeded + row.user;
    const DWORD domainCapacity = row.domain == kNone ? 0 : domainNeeded + row.domain;
    DWORD userSize = userCapacity, domainSize = domainCapacity;
    Char* const domainOut = row.domain == kNone ? nullptr : domain.data();
    const Log before = Form::before();
    LogCapture log;
    EXPECT_EQ(Form::call(row.user == kNone ? nullptr : user.data(), &userSize, domainOut, &domainSize), result);
    EXPECT_EQ(userSize, userNeeded);
    EXPECT_EQ(domainSize, domainNeeded);
    EXPECT_TRUE(user.untouched(userWritten ? userNeeded : 0) && domain.untouched(domainWritten ? domainNeeded : 0));
    EXPECT_TRUE(!userWritten || user.data() == std::basic_string_view(userName));
    EXPECT_TRUE(!domainWritten || domain.data() == std::basic_string_view(domainName));
    const auto when = [](bool said, const LogRecord& record) { return said ? Log{record} : Log(); };
    const auto two = [](DWORD first, const wchar_t* between, DWORD second) {
      return L" (" + std::to_wstring(first) + between + std::to_wstring(second) + L")";
    };
    const std::wstring userFails = Form::userTooSmall + two(userCapacity, L" < ", userNeeded - 1 + Form::shownMore);
    const std::wstring domainFails =
        Form::domainTooSmall + two(domainCapacity, L" < ", domainNeeded - 1 + Form::shownMore);
    EXPECT_TRUE(log.was(
        Log{entered(Form::name + L" (" + Form::shownFirst + pointer(&userSize) + L"," + pointer(domainOut) + L"," +
                    pointer(&domainSize) + L")")} +
        before + when(userWritten && Form::tracesOutput, traced(Form::name + L" User name out")) +
        when(domainWritten && Form::tracesOutput, traced(Form::name + L" Domain out = CORP")) +
        when(none, failed(Form::name + L" Insufficient buffers" + two(userCapacity, L",", domainCapacity))) +
        when(!none && has('U'), failed(Form::name + userFails)) +
        when(!none && has('D'), failed(Form::name + domainFails)) + Log{left(Form::name + inParentheses(result))}));
  }
  DWORD size = 7;
  for (const bool user : {true, false}) {
    LogCapture log;
    EXPECT_EQ(Form::call(userName, user ? &size : nullptr, domainName, user ? nullptr : &size), 87);
    const Log seen = log.take();
    ASSERT_EQ(seen.size(), 3u);
    EXPECT_EQ((Log{seen[1], seen[2]}), (Log{failed(Form::name + Form::invalid), left(Form::name + L" (87)")}));
  }
  EXPECT_EQ(size, 7u);
}

}  // namespace
}  // namespace accounts
