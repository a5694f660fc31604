#include <string>
#include <vector>

#include "registrykey.h"
#include "registryvalue.h"
#include "results.h"
#include "text.h"
#include "tour.h"

namespace {

const RegistryKey kKey{HKEY_CURRENT_USER, L"Software\\VelorinTour"};

// Deletes what the tour wrote, however it ends. A deletion without RegDeleteKeyEx looks in the program's own view: the
// other one's key is named there by where it lies.
struct Cleanup {
  ~Cleanup() {
    vlRegDeleteKey(kKey.root, kKey.path.c_str(), true, 0x100);
    vlRegDeleteKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\VelorinTour", true, 0x100);
    vlRegDeleteKey(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\VelorinTour", true, 0x100);
  }
};

void store(TourPage& page, const RegistryKey& key, const std::string& name, DWORD type,
           const std::vector<std::string>& texts) {
  const int result = writeValue(key, name, type, encoded(type, texts).data);
  if (result != kRegistryDone) {
    page.refused("Write " + name, result);
  }
}

void showValue(TourPage& page, const std::string& label, const RegistryKey& key, const std::string& name,
               std::optional<DWORD> type) {
  const RegistryValue value = readValue(key, name, type);
  if (value.result == kRegistryDone) {
    page.fact(label, nameOfType(*value.type) + " " + shownValue(*value.type, value.data).readable);
  } else {
    page.refused(label, value.result);
  }
}

// A failure that is the point.
void showRefused(TourPage& page, const std::string& label, int result) {
  page.fact(label, registryResultInWords(result) + " (" + std::to_string(result) + ")");
}

void showLists(TourPage& page) {
  const ValueList values = valuesOf(kKey, std::nullopt);
  const SubkeyList subkeys = subkeysOf(kKey);
  if (values.result != kRegistryDone || subkeys.result != kRegistryDone) {
    page.refused("Lists", values.result != kRegistryDone ? values.result : subkeys.result);
    return;
  }
  for (const RegValueEntry& entry : values.entries) {
    page.fact("Value " + shown(toUtf8(entry.szName)), nameOfType(entry.dwType));
  }
  for (const std::wstring& name : subkeys.names) {
    page.fact("Subkey", shown(toUtf8(name)));
  }
}

void showViews(TourPage& page) {
  const RegistryKey wide{HKEY_LOCAL_MACHINE, L"SOFTWARE\\VelorinTour", 0x100};
  const RegistryKey narrow{HKEY_LOCAL_MACHINE, L"SOFTWARE\\VelorinTour", 0x200};
  if (const int result = writeValue(wide, "View", REG_SZ, encoded(REG_SZ, {"64-bit"}).data); result != kRegistryDone) {
    showRefused(page, "Not permitted to this user", result);
    return;
  }
  store(page, narrow, "View", REG_SZ, {"32-bit"});
  showValue(page, "The same path in the 64-bit view", wide, "View", std::nullopt);
  showValue(page, "and in the 32-bit view", narrow, "View", std::nullopt);
}

}  // namespace

void tourRegistry(TourPage& page) {
  const Cleanup cleanup;
  page.title("Registry: values written below HKCU\\Software\\VelorinTour, and read");
  store(page, kKey, "Runs", REG_DWORD, {"42"});
  store(page, kKey, "Greeting", REG_SZ, {"Grüße, \"Velorin\""});
  store(page, kKey, "Paths", REG_MULTI_SZ, {"C:\\Data", "D:\\More"});
  store(page, kKey, "Bytes", REG_BINARY, {"00ff10"});
  store(page, {kKey.root, kKey.path + L"\\Sub"}, "", REG_SZ, {"a subkey's unnamed value"});
  showValue(page, "Runs, read as a DWORD", kKey, "Runs", REG_DWORD);
  for (const char* const name : {"Runs", "Greeting", "Paths", "Bytes"}) {
    showValue(page, std::string(name) + ", as the type it has", kKey, name, std::nullopt);
  }
  showRefused(page, "Runs, read as text", readValue(kKey, "Runs", REG_SZ).result);

  page.title("Registry: what the key has");
  showLists(page);

  page.title("Registry: the two views of HKLM\\SOFTWARE");
  showViews(page);

  page.title("Registry: deletion");
  const LPCWSTR path = kKey.path.c_str();
  showRefused(page, "The key, which has a subkey", vlRegDeleteKey(kKey.root, path, false, 0x100));
  showRefused(page, "The key with all below it", vlRegDeleteKey(kKey.root, path, true, 0x100));
  showRefused(page, "Runs, read again", readValue(kKey, "Runs", std::nullopt).result);
}
