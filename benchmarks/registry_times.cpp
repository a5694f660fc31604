// The registry family beside the platform's own calls that do the same work, as medians of interleaved runs. A program
// of its own, without a benchmark library, so that it also runs where the platform is the real one. Logging is off.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

#include <vlhostkit/vlhostkit.h>

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
    const DWORD value = static_cast<DWORD>(i);
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

double microseconds(void (*work)(), int repeats) {
  const auto begin = std::chrono::steady_clock::now();
  for (int i = 0; i < repeats; ++i) {
    work();
  }
  return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - begin).count() / repeats;
}

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + values.size() / 2, values.end());
  return values[values.size() / 2];
}

// Turn by turn, so that a slow moment of the computer meets both.
void compare(const char* subject, void (*ours)(), void (*raw)(), int rounds, int repeats) {
  std::vector<double> oursTimes;
  std::vector<double> rawTimes;
  for (int round = 0; round < rounds; ++round) {
    const bool oursFirst = round % 2 == 0;
    const double first = microseconds(oursFirst ? ours : raw, repeats);
    const double second = microseconds(oursFirst ? raw : ours, repeats);
    oursTimes.push_back(oursFirst ? first : second);
    rawTimes.push_back(oursFirst ? second : first);
  }
  const double oursTime = median(oursTimes);
  const double rawTime = median(rawTimes);
  std::printf("%-34s %10.3f us %10.3f us %8.3f\n", subject, oursTime, rawTime, oursTime / rawTime);
}

}  // namespace

int main() {
  prepare();
  std::printf("%-34s %13s %13s %8s\n", "", "ours", "platform", "ratio");
  compare("read a DWORD", readNumber, readNumberRaw, 1001, 10);
  compare("read a string of 32 characters", readText, readTextRaw, 1001, 10);
  compare("list 1001 values", listValues, listValuesRaw, 101, 1);
  expectSuccess(vlRegDeleteSubKey(HKEY_LOCAL_MACHINE, kPath, 0, true));
  if (failed) {
    std::fputs("a call failed: the times mean nothing\n", stderr);
  }
  return failed ? 1 : 0;
}
