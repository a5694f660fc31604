// Functions beside the platform's own calls that do the same work, as medians of interleaved runs. A program of its
// own, without a benchmark library, so that it also runs where the platform is the real one. Logging is off. One line a
// time, for scripts/bench_table.py: subject, "|", who, tab, nanoseconds.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <vlhostkit/vlhostkit.h>

#ifdef _WIN32
#include <sddl.h>
#include <sensapi.h>
#define SECURITY_WIN32
#include <security.h>
#endif

namespace {

constexpr const wchar_t* kPath = L"SOFTWARE\\VelorinBenchmark";
constexpr int kValues = 1000;

bool failed = false;

void expectSuccess(long result) {
  failed = failed || result != 0;
}

template <class Work>
void withKey(REGSAM access, Work work) {
  HKEY key = nullptr;
  expectSuccess(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kPath, 0, access, &key));
  work(key);
  RegCloseKey(key);
}

void prepare() {
  HKEY key = nullptr;
  expectSuccess(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kPath, 0, nullptr, REG_OPTION_NON_VOLATILE, KEY_ALL_ACCESS, nullptr,
                                &key, nullptr));
  for (int i = 0; i < kValues; ++i) {
    const auto value = static_cast<DWORD>(i);
    expectSuccess(RegSetValueExW(key, (L"value" + std::to_wstring(1000 + i)).c_str(), 0, REG_DWORD,
                                 reinterpret_cast<const BYTE*>(&value), sizeof value));
  }
  const std::wstring text(31, L'x');  // 32 characters with the terminator
  expectSuccess(
      RegSetValueExW(key, L"text", 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()), 32 * sizeof(wchar_t)));
  RegCloseKey(key);
}

void readNumber() {
  DWORD value = 0;
  expectSuccess(vlRegReadDWORDValue(HKEY_LOCAL_MACHINE, kPath, L"value1500", &value));
}
void readNumberRaw() {
  withKey(KEY_QUERY_VALUE, [](HKEY key) {
    DWORD type = 0;
    DWORD value = 0;
    DWORD bytes = sizeof value;
    expectSuccess(RegQueryValueExW(key, L"value1500", nullptr, &type, reinterpret_cast<BYTE*>(&value), &bytes));
  });
}

void readText() {
  wchar_t text[32];
  DWORD bytes = sizeof text;
  expectSuccess(vlRegReadStringValue(HKEY_LOCAL_MACHINE, kPath, L"text", reinterpret_cast<BYTE*>(text), &bytes));
}
void readTextRaw() {
  withKey(KEY_QUERY_VALUE, [](HKEY key) {
    wchar_t text[32];
    DWORD type = 0;
    DWORD bytes = sizeof text;
    expectSuccess(RegQueryValueExW(key, L"text", nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes));
  });
}

std::vector<RegValueEntry> entries(kValues + 2);

void listValues() {
  int count = kValues + 2;
  expectSuccess(vlRegListValueNames(HKEY_LOCAL_MACHINE, kPath, entries.data(), &count, 0xFFFFFFFF));
  failed = failed || count != kValues + 1;
}
void listValuesRaw() {
  withKey(KEY_QUERY_VALUE, [](HKEY key) {
    DWORD index = 0;
    DWORD chars = 260;
    while (RegEnumValueW(key, index, entries[index].szName, &chars, nullptr, &entries[index].dwType, nullptr,
                         nullptr) == ERROR_SUCCESS) {
      ++index;
      chars = 260;
    }
    failed = failed || index != kValues + 1;
  });
}

SID* sid() {
  static struct {
    BYTE head[8] = {1, 5, 0, 0, 0, 0, 0, 5};
    DWORD subAuthorities[5] = {21, 1234567890, 2345678901, 3456789012, 1001};
  } bytes;
  return reinterpret_cast<SID*>(&bytes);
}

void convertSid() {
  wchar_t text[28 + 12 * 5];
  DWORD bytes = sizeof text;
  failed = !vlSysConvertSIDW(sid(), text, &bytes) || failed;
}
void convertSidRaw() {
  LPWSTR text = nullptr;
  failed = !ConvertSidToStringSidW(sid(), &text) || failed;
  LocalFree(text);
}

constexpr const wchar_t* kSystemCache = L"Software\\Microsoft\\Windows NT\\CurrentVersion\\Winlogon\\DomainCache";
constexpr const wchar_t* kOwnCache = L"SOFTWARE\\Velorin\\System\\DomainCache";
constexpr const wchar_t* kSuffix = L"vlhostkit-benchmark.invalid";
const std::wstring kPrincipal = std::wstring(L"alice@") + kSuffix;

// Known to the library's own cache only, which is asked last.
void translatePrincipal() {
  wchar_t name[256];
  DWORD size = 255;
  failed = !vlNetGetUserNameDomainFromUPNW(kPrincipal.c_str(), name, &size) || size != 11 || failed;
}
void translatePrincipalRaw() {
  wchar_t name[256];
  ULONG size = 255;
  DWORD network = NETWORK_ALIVE_LAN;
  const HMODULE module = LoadLibraryW(L"Secur32.dll");
  const auto translate =
      reinterpret_cast<decltype(&TranslateNameW)>(reinterpret_cast<void*>(GetProcAddress(module, "TranslateNameW")));
  failed = !IsNetworkAlive(&network) ||
           translate(kPrincipal.c_str(), NameUserPrincipal, NameSamCompatible, name, &size) || failed;
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, kSystemCache, 0, KEY_QUERY_VALUE, &key) == 0) {
    RegCloseKey(key);
  }
  expectSuccess(RegOpenKeyExW(HKEY_LOCAL_MACHINE, kOwnCache, 0, KEY_QUERY_VALUE, &key));
  DWORD type = 0;
  DWORD bytes = sizeof name;
  expectSuccess(RegQueryValueExW(key, kSuffix, nullptr, &type, reinterpret_cast<BYTE*>(name), &bytes));
  RegCloseKey(key);
  FreeLibrary(module);
  failed = (std::wstring(name) + L"\\alice").size() != 10 || failed;
}

double nanoseconds(void (*work)(), int repeats) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < repeats; ++i) {
    work();
  }
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count() / repeats;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + std::ssize(values) / 2, values.end());
  return values[values.size() / 2];
}

// Turn by turn, so that a slow moment of the computer meets both.
void compare(const char* subject, void (*ours)(), void (*raw)(), int rounds, int repeats) {
  std::vector<double> oursTimes;
  std::vector<double> rawTimes;
  for (int round = 0; round < rounds; ++round) {
    const bool oursFirst = round % 2 == 0;
    const double first = nanoseconds(oursFirst ? ours : raw, repeats);
    const double second = nanoseconds(oursFirst ? raw : ours, repeats);
    oursTimes.push_back(oursFirst ? first : second);
    rawTimes.push_back(oursFirst ? second : first);
  }
  std::printf("%s|ours\t%f\n%s|platform calls\t%f\n", subject, median(oursTimes), subject, median(rawTimes));
}

}  // namespace

int main() {
  prepare();
  compare("read a DWORD", readNumber, readNumberRaw, 1001, 10);
  compare("read a string of 32 characters", readText, readTextRaw, 1001, 10);
  compare("list 1001 values", listValues, listValuesRaw, 101, 1);
  compare("SID to text", convertSid, convertSidRaw, 1001, 100);
  HKEY cache = nullptr;
  DWORD made = 0;
  expectSuccess(RegCreateKeyExW(HKEY_LOCAL_MACHINE, kOwnCache, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &cache, &made));
  expectSuccess(RegSetValueExW(cache, kSuffix, 0, REG_SZ, reinterpret_cast<const BYTE*>(L"CORP"), 5 * sizeof(wchar_t)));
  compare("principal name, from the cache", translatePrincipal, translatePrincipalRaw, 101, 1);
  RegDeleteValueW(cache, kSuffix);
  RegCloseKey(cache);
  if (made == REG_CREATED_NEW_KEY) {
    expectSuccess(vlRegDeleteSubKey(HKEY_LOCAL_MACHINE, kOwnCache, 0, true));
  }
  expectSuccess(vlRegDeleteSubKey(HKEY_LOCAL_MACHINE, kPath, 0, true));
  if (failed) {
    static_cast<void>(std::fputs("a call failed: the times mean nothing\n", stderr));
  }
  return failed ? 1 : 0;
}
