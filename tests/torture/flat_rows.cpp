// The flat functions, family by family.
#include <sysfacts/forms.h>

#include "bench.h"

// A row of `function`, whose arguments may name the Bench `io`; and one of a function of the registry.
#define VL_ROW(promise, decisive, exit, function, ...) \
  Row({#function, &promise, decisive, exit, []([[maybe_unused]] Bench& io) { return function(__VA_ARGS__); }})
#define VL_KEY_ROW(promise, decisive, function, ...) \
  VL_ROW(promise, decisive, L" : ret=(%d)", function, HKEY_LOCAL_MACHINE, __VA_ARGS__)

namespace torture {
namespace {

using namespace std::string_literals;
using support::Key;

constexpr const wchar_t* kReturns = L"$: returns nRet = 0x%x";
constexpr const wchar_t* kNumber = L"$ (%d)";
constexpr const char* kFinds = "LoadLibrary GetProcAddress";

std::vector<Row> timeRows() {
  static const Promise kMake{.failures = {kSweepCode}};
  static const Promise kRead{.failures = {kSweepCode}, .numbers = {{"memcpy_s", 266}}, .untouched = kAll & ~kFirst};
  static const Promise kTicks{.failures = {kSweepCode}, .numbers = {{"memcpy_s", 266}}};
  static SYSTEMTIME time{2013, 3, 4, 28, 12, 34, 56, 0};
  static LARGE_INTEGER ticks{.QuadPart = 130'000'000'000'000'000};
  std::vector<Row> rows = {
      VL_ROW(kMake, "", kReturns, vlSysSystemTimeToISO8601, &time, io.out<wchar_t>(), &io.size),
      VL_ROW(kMake, "", kReturns, vlSysCurrentTimeToISO8601, io.out<wchar_t>(), &io.size),
      VL_ROW(kMake, "", kReturns, vlSysCurrentLocalTimeToISO8601, io.out<wchar_t>(), &io.size),
      VL_ROW(kMake, "FileTimeToSystemTime", kReturns, vlSysLargeIntegerToISO8601, &ticks, io.out<wchar_t>(), &io.size)};
  const std::string zone = kFinds + " TzSpecificLocalTimeToSystemTime"s;
  for (const auto& [text, conversion] :
       {std::pair(L"2013-03-28T12:34:56Z"s, ""s),
        {L"2013-03-28"s, "SystemTimeToFileTime LocalFileTimeToFileTime FileTimeToSystemTime"s},
        {L"2013-03-28T12:34:56+01:00"s, zone}}) {
    const std::string suffix = ' ' + std::string(text.begin(), text.end()), calls = "memcpy_s " + conversion;
    rows.push_back({"vlSysISO8601ToSystemTime" + suffix, &kRead, calls, kNumber,
                    [text = text](Bench& io) { return vlSysISO8601ToSystemTime(text.c_str(), io.out<SYSTEMTIME>()); }});
    rows.push_back(
        {"vlSysISO8601ToLargeInteger" + suffix, &kTicks, calls + " SystemTimeToFileTime", kNumber,
         [text = text](Bench& io) { return vlSysISO8601ToLargeInteger(text.c_str(), io.out<LARGE_INTEGER>()); }});
    rows.push_back({"vlSysCompareISO8601" + suffix, &kTicks, calls + ' ' + zone + " SystemTimeToFileTime", kReturns,
                    [text = text](Bench&) { return vlSysCompareISO8601(text.c_str(), L"2014-03-28T00-01"); }});
  }
  return rows;
}

Row seeing(Row row, const wchar_t* subkey, const wchar_t* value = nullptr) {
  row.observe = [=](Bench&) {
    const Key key(L"SOFTWARE\\VelorinTest" + std::wstring(subkey));
    return key && (value == nullptr || key.stored(value)) ? "there" : "gone";
  };
  return row;
}

std::vector<Row> registryRows() {
  static const Promise kLoose{.failures = {-1}, .untouched = kAll & ~kFirst};
  static const Promise kData{.failures = {-1}, .untouched = kAll & ~kFirst & ~kSecond};
  static const Promise kWhole{.failures = {-1}};
  static const Promise kListed{.failures = {-1}, .varying = kFirst | kSizes};
  const auto reads = "RegOpenKeyEx RegQueryValueEx", writes = "RegCreateKeyEx RegSetValueEx";
  const auto values = "RegOpenKeyEx RegEnumValue", keys = "RegOpenKeyEx RegEnumKeyEx";
  static constexpr auto kNarrow = "SOFTWARE\\VelorinTest";
  static constexpr auto kKey = L"SOFTWARE\\VelorinTest", kLeaf = L"SOFTWARE\\VelorinTest\\c";
  std::vector<Row> rows;
  for (const Row& row :
       {VL_KEY_ROW(kLoose, reads, vlRegReadDWORDValueExA, kNarrow, "d", io.out<DWORD>(), 0),
        VL_KEY_ROW(kData, reads, vlRegReadStringValueExA, kNarrow, "s", io.out<BYTE>(), &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadMultiStringValueExA, kNarrow, "m", io.out<BYTE>(), &io.size, 0),
        VL_KEY_ROW(kLoose, reads, vlRegReadDWORDValue, kKey, L"d", io.out<DWORD>()),
        VL_KEY_ROW(kLoose, reads, vlRegReadDWORDValueEx, kKey, L"d", io.out<DWORD>(), 0),
        VL_KEY_ROW(kLoose, reads, vlRegReadDWORDValueExW, kKey, L"d", io.out<DWORD>(), 0),
        VL_KEY_ROW(kData, reads, vlRegReadStringValue, kKey, L"s", io.out<BYTE>(), &io.size),
        VL_KEY_ROW(kData, reads, vlRegReadStringValueEx, kKey, L"s", io.out<BYTE>(), &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadStringValueExW, kKey, L"s", nullptr, &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadMultiStringValue, kKey, L"m", io.out<BYTE>(), &io.size),
        VL_KEY_ROW(kData, reads, vlRegReadMultiStringValueEx, kKey, L"m", io.out<BYTE>(), &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadMultiStringValueExW, kKey, L"m", nullptr, &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadBinaryValue, kKey, L"b", io.out<BYTE>(), &io.size),
        VL_KEY_ROW(kData, reads, vlRegReadBinaryValueEx, kKey, L"b", nullptr, &io.size, 0),
        VL_KEY_ROW(kData, reads, vlRegReadValue, kKey, L"d", io.other<DWORD>(), nullptr, &io.size),
        VL_KEY_ROW(kData, reads, vlRegReadValueEx, kKey, L"b", &(*io.other<DWORD>() = 3), io.out<BYTE>(), &io.size, 0),
        VL_KEY_ROW(kListed, values, vlRegListValueNames, kKey, io.out<RegValueEntry>(), &io.count, ~0u),
        VL_KEY_ROW(kListed, values, vlRegListValueNamesEx, kKey, nullptr, &io.count, ~0u, 0),
        VL_KEY_ROW(kListed, keys, vlRegListKeys, kKey, io.out<WCHAR>(), &io.count),
        VL_KEY_ROW(kListed, keys, vlRegListKeysEx, kKey, nullptr, &io.count, 0),
        VL_KEY_ROW(kWhole, writes, vlRegWriteDWORDValue, kKey, L"new", 1),
        VL_KEY_ROW(kWhole, writes, vlRegWriteDWORDValueEx, kKey, L"new", 1, 0),
        VL_KEY_ROW(kWhole, writes, vlRegWriteStringValue, kKey, L"new", L"x", 2 * sizeof(wchar_t)),
        VL_KEY_ROW(kWhole, writes, vlRegWriteStringValueEx, kKey, L"new", L"x", 2 * sizeof(wchar_t), 0),
        VL_KEY_ROW(kWhole, writes, vlRegWriteMultiStringValue, kKey, L"new", L"\0", 2 * sizeof(wchar_t)),
        VL_KEY_ROW(kWhole, writes, vlRegWriteMultiStringValueEx, kKey, L"new", L"\0", 2 * sizeof(wchar_t), 0),
        VL_KEY_ROW(kWhole, writes, vlRegWriteBinaryValue, kKey, L"new", "x", 1),
        VL_KEY_ROW(kWhole, writes, vlRegWriteBinaryValueEx, kKey, L"new", "x", 1, 0)}) {
    rows.push_back(seeing(row, L"", L"new"));
  }
  const std::string walks = "RegOpenKeyEx RegEnumKeyEx swprintf_s RegDeleteKey";
  rows.push_back(seeing(VL_KEY_ROW(kWhole, "RegOpenKeyEx RegDeleteValue", vlRegDeleteValue, kKey, L"d", 0), L"", L"d"));
  rows.push_back(seeing(VL_KEY_ROW(kWhole, walks, vlRegDeleteSubKey, kKey, 0, true), L""));
  rows.push_back(seeing(VL_KEY_ROW(kWhole, "LoadLibrary " + walks, vlRegDeleteKey, kKey, true, 0x100), L""));
  // Keys without subkeys by a function that the platform may have, too.
  rows.push_back(seeing(VL_KEY_ROW(kWhole, "LoadLibrary RegDeleteKey", vlRegDeleteKey, kLeaf, false, 0x100), L"\\c"));
  rows.push_back(rows.back());
  rows.back().name += " by RegDeleteKeyEx";
  rows.back().decisive += "Ex";
  rows.back().prepare = [](Bench&) {
    constexpr auto deletes =
        +[](HKEY key, LPCWSTR path, REGSAM view, DWORD) { return RegDeleteKeyExW(key, path, view, 0); };
    vlplatform::machine().modules().addEntryPoint(L"Advapi32.dll", "RegDeleteKeyEx", accounts::address(deletes));
  };
  return rows;
}

const Promise kNames{
    .failures = {kSweepCode}, .numbers = {{"HeapAlloc", 8}, {"LoadLibrary", 2}, {"GetProcAddress", 2}}, .throws = true};

long error(BOOL done) {
  return done ? 0 : static_cast<long>(GetLastError());
}

template <class Names, class Facts>
std::vector<Row> rowsByWidth() {
  using Char = typename Names::Char;
  static const auto upn = support::as<Char>("Quetzalcoatl@corp.example"), suffix = support::as<Char>("corp.example");
  static const auto user = support::as<Char>("Quetzalcoatl"), domain = support::as<Char>("CORP");
  static const Promise kSid{.failures = {kSweepCode}, .untouched = kAll & ~kSeen, .throws = true};
  static const Promise kAllOrNothing{.failures = {kSweepCode}};
  static const Promise kDrive{
      .failures = {kSweepCode}, .numbers = {{"GetDriveType", 15}}, .untouched = kAll & ~kSizes, .throws = true};
  static Promise kChain = kNames, kBothOrNone = kNames, kUserFirst = kNames, kVariable = kDrive;
  kChain.untouched = 0;
  kUserFirst.untouched = kAll & ~kTexts;  // the user name is there when the domain fails
  kBothOrNone.exitOfFailure = kUserFirst.exitOfFailure = kVariable.exitOfFailure = false;
  const std::string letter = Names::wide ? "W" : "A", string = Names::wide ? "(std::wstring)" : "(std::string)";
  const auto drives = "GetLogicalDriveStrings GetDriveType", session = "WTSQuerySessionInformation";
  const auto account = "LookupAccountName", variable = "GetEnvironmentVariable";
  const auto pair = [](auto function) {
    return [=](Bench& io) { return function(io.out<Char>(), &io.size, io.other<Char>(), &io.otherSize); };
  };
  const auto texts = [](auto function) {
    return [=](Bench& io) { return function(io.texts<Char>()[0], io.texts<Char>()[1]); };
  };
  const auto reporting = [](auto function, const Char* name) {
    return [=](Bench& io) { return error(function(name, io.out<Char>(), &io.size)); };
  };
  const auto drive = [](auto function) { return [=](Bench& io) { return function(io.out<Char>(), &io.size); }; };
  return {{"vlNetConvertUserIdToNETBIOS" + letter, &kNames, kFinds, kNumber,
           pair([](auto... out) { return Names::convert(upn.c_str(), suffix.c_str(), out...); })},
          {"vlNetConvertUserIdToNETBIOS" + string, &kBothOrNone, kFinds, L"vlNetConvertUserIdToNETBIOS (%d)",
           texts([](auto&... out) { return vlNetConvertUserIdToNETBIOS(upn, suffix, out...); })},
          {"vlNetGetCurrentUserAndDomain" + letter, &kNames, session, kNumber, pair(Names::currentUser)},
          {"vlNetGetCurrentUserAndDomain" + string, &kUserFirst, session, L"GetCurrentUserAndDomain (%d)",
           texts([](auto&... out) { return vlNetGetCurrentUserAndDomain(out...); })},
          {"vlNetGetUserNameDomainFromUPN" + letter, &kChain, kFinds, L"", reporting(Names::decompose, upn.c_str())},
          {"vlNetGetNETBIOSDomainNameFromUPN" + letter, &kNames, "RegOpenKeyEx RegEnumValue", L"",
           reporting(Names::systemCache, suffix.c_str())},
          {"vlSysGetFixedDrive" + letter, &kDrive, drives, kNumber, drive(Facts::fixedDrive)},
          {"vlSysGetFixedDrive" + string, &kDrive, drives, L"GetFixedDrive (%d)",
           texts([](auto& out, auto&) { return vlSysGetFixedDrive(out); })},
          {"vlSysGetSystemDrive" + letter, &kDrive, variable, kNumber, drive(Facts::systemDrive)},
          {"vlSysGetSystemDrive" + string, &kVariable, variable, L"vlSysGetSystemDrive (%d)",
           texts([](auto& out, auto&) { return vlSysGetSystemDrive(out); })},
          {"vlSysGetUserSID" + letter, &kSid, account, kNumber,
           [](Bench& io) { return Facts::userSid(user.c_str(), domain.c_str(), &io.sid); }},
          {"vlSysGetUserSID" + string, &kSid, account, L"vlSysGetUserSID (%d)",
           [](Bench& io) { return vlSysGetUserSID(user, domain, io.sid); }},
          {"vlSysConvertSID" + letter, &kAllOrNothing, "IsValidSid", L"",
           [](Bench& io) { return error(Facts::convertSid(io.known, io.out<Char>(), &io.size)); }},
          {"vlSysObtainSID" + letter, &kAllOrNothing, "GetTokenInformation LocalAlloc IsValidSid", L"",
           [](Bench& io) { return error(Facts::obtainSid(io.token, io.out<Char>(), &io.size)); }}};
}

std::vector<Row> accountRows() {
  const std::string looksUp = "LsaOpenPolicy HeapAlloc CopySid";
  const auto lookUp = [](Bench& io) {
    io.isOnHeap = true;
    return error(vlNetLookupUserNameW(L"Quetzalcoatl", L"CORP", &io.sid));
  };
  const auto loseDomain = [](Bench&) { vlplatform::machine().accounts().setReachable(L"CORP", false); };
  return {VL_ROW(kNames, "OpenProcessToken GetTokenInformation HeapAlloc LsaOpenPolicy LsaLookupSids", kNumber,
                 vlNetGetCurrentProcessUserAndDomainW, io.out<wchar_t>(), &io.size, io.other<wchar_t>(), &io.otherSize),
          {"vlNetGetInitialUserNameBeforeRenameW", &kNames,
           looksUp + " ConvertSidToStringSid RegOpenKeyEx RegQueryValueEx", L"$",
           [](Bench& io) {
             return error(vlNetGetInitialUserNameBeforeRenameW(L"Quetzalcoatl", L"CORP", io.out<wchar_t>(), &io.size));
           }},
          {"vlNetLookupUserNameW", &kNames, looksUp, L"$", lookUp},
          {"vlNetLookupUserNameW remembered",
           &kNames,
           looksUp + " RegOpenKeyEx RegQueryValueEx ConvertStringSidToSid",
           L"$",
           lookUp,
           {},
           loseDomain}};
}

std::vector<Row> installerRows() {
  static const Promise kAction{.failures = {kSweepCode},
                               .numbers = {{"MsiGetProperty", 2}, {"GetEnvironmentVariable", 1}}};
  static const Promise kOld{.failures = {0}};
  static const Promise kPresent{.failures = {-1}, .numbers = {{"VerifyVersionInfo", 0}}};
  const std::string begins = kFinds + " MsiGetProperty"s, shared = begins + " GetEnvironmentVariable";
  std::vector<Row> rows;
  for (Row row : {VL_ROW(kAction, shared, L"", MSIDeleteResourceFiles, io.install()),
                  VL_ROW(kAction, shared, L"", MSICleanMergedFolders, io.install()),
                  VL_ROW(kAction, begins, L"", MSIDeleteFile, io.install())}) {
    row.prepare = &Bench::makeTrees;
    row.observe = [](Bench& io) { return io.keeps() ? "kept" : "removed"; };
    rows.push_back(row);
  }
  const std::string old = "RegOpenKey RegQueryValueEx LocalAlloc";
  const std::string present = "GetModuleHandle GetProcAddress VerifyVersionInfo RegOpenKey RegQueryValueEx";
  for (const DWORD major : {4u, 5u}) {
    for (Row row :
         {VL_ROW(kOld, old, L"", IsTerminalServicesEnabled), VL_ROW(kOld, old, L"", DetectTSE, io.install())}) {
      row.name += " version " + std::to_string(major);
      row.promise = major == 4 ? &kOld : &kPresent;
      row.decisive = major == 4 ? old : present;
      row.prepare = [=](Bench&) {
        vlplatform::machine().version().set({.major = major, .minor = 2, .suiteMask = VER_SUITE_TERMINAL});
      };
      rows.push_back(row);
    }
  }
  return rows;
}

}  // namespace

std::vector<Row> flatRows() {
  std::vector<Row> rows;
  for (const auto& family :
       {timeRows(), registryRows(), accountRows(), rowsByWidth<accounts::Narrow, sysfacts::Narrow>(),
        rowsByWidth<accounts::Wide, sysfacts::Wide>(), installerRows()}) {
    for (const Row& row : family) {
      rows.push_back(row);
      if (row.name.starts_with("vlNet") && !row.prepare) {
        rows.push_back(row);
        rows.back().name += " offline";
        rows.back().prepare = [](Bench&) { vlplatform::machine().network().setAlive(false); };
      }
    }
  }
  return rows;
}

}  // namespace torture
