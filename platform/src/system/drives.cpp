#include <vlplatform/machine/drives.h>

#include <mntent.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <string_view>

#include "gate.h"
#include "unicode.h"

namespace vlplatform {
namespace {

constexpr wchar_t kFirstLetter = L'A';
constexpr wchar_t kSystemLetter = L'C';
constexpr wchar_t kLastLetter = L'Z';

wchar_t upperLetter(wchar_t letter) {
  const wchar_t upper = upperCase(letter);
  return upper >= kFirstLetter && upper <= kLastLetter ? upper : L'\0';
}

// What a mounted file system is as a drive, DRIVE_UNKNOWN for what has no letter: the system's own, the start-up
// partitions, images, and what is no disk.
UINT typeOf(std::string_view source, std::string_view folder, std::string_view type) {
  if (type == "nfs" || type == "nfs4" || type == "cifs") {
    return DRIVE_REMOTE;
  }
  const bool isDisk = source.substr(0, 5) == "/dev/" && source.substr(0, 9) != "/dev/loop";
  if (!isDisk || folder.substr(0, 5) == "/boot") {
    return DRIVE_UNKNOWN;
  }
  return type == "iso9660" || type == "udf" ? DRIVE_CDROM : DRIVE_FIXED;
}

Drives::List thisComputersDrives() {
  Drives::List drives{{kSystemLetter, DRIVE_FIXED}};
  const std::unique_ptr<FILE, decltype(&endmntent)> table(setmntent("/proc/self/mounts", "r"), &endmntent);
  if (!table) {
    return drives;
  }
  std::set<std::string> sources;  // a file system in several places is one drive
  std::map<std::string, UINT> others;
  mntent entry{};
  char text[4096];
  while (getmntent_r(table.get(), &entry, text, sizeof text) != nullptr) {
    const UINT type = typeOf(entry.mnt_fsname, entry.mnt_dir, entry.mnt_type);
    if (std::string_view(entry.mnt_dir) == "/") {
      sources.insert(entry.mnt_fsname);
    } else if (type != DRIVE_UNKNOWN) {
      others[entry.mnt_fsname] = type;
    }
  }
  wchar_t letter = kSystemLetter;
  for (const auto& [source, type] : others) {
    if (letter != kLastLetter && !sources.contains(source)) {
      drives[++letter] = type;
    }
  }
  return drives;
}

}  // namespace

void Drives::reset() {
  const std::lock_guard lock(mutex_);
  list_.reset();
}

void Drives::clear() {
  const std::lock_guard lock(mutex_);
  list_.emplace();
}

void Drives::set(wchar_t letter, UINT type) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  if (const wchar_t upper = upperLetter(letter)) {
    known()[upper] = type;
  }
}

void Drives::remove(wchar_t letter) {
  const OwnAllocations own;
  const std::lock_guard lock(mutex_);
  known().erase(upperLetter(letter));
}

Drives::List Drives::list() const {
  const std::lock_guard lock(mutex_);
  return known();
}

Drives::List& Drives::known() const {
  if (!list_) {
    list_ = thisComputersDrives();
  }
  return *list_;
}

namespace {

template <class Char>
DWORD rootTexts(DWORD chars, Char* buffer) {
  const OwnAllocations own;
  std::basic_string<Char> texts;
  for (const auto& [letter, type] : machine().drives().list()) {
    texts += {static_cast<Char>(letter), Char{':'}, Char{'\\'}, Char{}};
  }
  const auto size = static_cast<DWORD>(texts.size());
  if (chars <= size) {
    return size + 1;
  }
  if (buffer == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  copyTerminated<Char>(texts, buffer);
  return size;
}

template <class Char>
UINT typeOfRoot(const Char* root) {
  const OwnAllocations own;
  const std::wstring text = root != nullptr ? wideOrEmpty(root) : std::wstring{kSystemLetter, L':', L'\\'};
  if (text.size() != 3 || text.compare(1, 2, L":\\") != 0) {
    return DRIVE_NO_ROOT_DIR;
  }
  const Drives::List drives = machine().drives().list();
  const auto found = drives.find(upperLetter(text[0]));
  return found != drives.end() ? found->second : DRIVE_NO_ROOT_DIR;
}

}  // namespace
}  // namespace vlplatform

using namespace vlplatform;

DWORD GetLogicalDriveStringsW(DWORD chars, LPWSTR buffer) {
  return gateFails("GetLogicalDriveStringsW") ? 0 : rootTexts(chars, buffer);
}

DWORD GetLogicalDriveStringsA(DWORD chars, LPSTR buffer) {
  return gateFails("GetLogicalDriveStringsA") ? 0 : rootTexts(chars, buffer);
}

UINT GetDriveTypeW(LPCWSTR root) {
  return gateFails("GetDriveTypeW") ? DRIVE_UNKNOWN : typeOfRoot(root);
}

UINT GetDriveTypeA(LPCSTR root) {
  return gateFails("GetDriveTypeA") ? DRIVE_UNKNOWN : typeOfRoot(root);
}
