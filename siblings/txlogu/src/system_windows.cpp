#include "system.h"

#include <windows.h>

#include <atomic>
#include <cerrno>

#include <vlhostkit/wipe.h>

#include "line.h"
#include "unicode.h"

// The platform declares it for drivers only.
extern "C" __declspec(dllimport) BOOLEAN NTAPI RtlDllShutdownInProgress();

namespace txlogu::system {
namespace {

constinit SRWLOCK srwLock = SRWLOCK_INIT;
constinit std::atomic<DWORD> owner{0};
// Used under the lock only.
constinit wchar_t wideLine[Line::kCapacity + 1]{};

bool ownedHere() noexcept {
  return owner.load(std::memory_order_relaxed) == GetCurrentThreadId();
}

HANDLE toHandle(std::intptr_t handle) noexcept {
  return reinterpret_cast<HANDLE>(handle);
}

std::size_t write(HANDLE file, std::string_view bytes) noexcept {
  std::size_t written = 0;
  while (written < bytes.size()) {
    DWORD count = 0;
    if (!WriteFile(file, bytes.data() + written, static_cast<DWORD>(bytes.size() - written), &count, nullptr)) break;
    if (count == 0) break;
    written += count;
  }
  return written;
}

DWORD widen(std::string_view line) noexcept {
  const int length = MultiByteToWideChar(CP_UTF8, 0, line.data(), static_cast<int>(line.size()), wideLine,
                                         static_cast<int>(Line::kCapacity));
  wideLine[length] = L'\0';
  return static_cast<DWORD>(length);
}

/// `bytes` of UTF-8 are at least as many as the wide characters that they became.
void wipeWideLine(std::size_t bytes) noexcept {
  VL::Framework::wipe(wideLine, bytes * sizeof(wchar_t));
}

/// Keeps other processes from appending at the same time. The range lies far behind any data.
class AppendLock {
 public:
  explicit AppendLock(HANDLE file) noexcept : file_(file) {
    held_ = LockFileEx(file_, LOCKFILE_EXCLUSIVE_LOCK, 0, 1, 0, &range_) != FALSE;
  }
  ~AppendLock() {
    if (held_) UnlockFileEx(file_, 0, 1, 0, &range_);
  }
  AppendLock(const AppendLock&) = delete;
  AppendLock& operator=(const AppendLock&) = delete;

 private:
  static OVERLAPPED farRange() noexcept {
    OVERLAPPED range{};
    range.OffsetHigh = 0x7FFFFFFF;
    return range;
  }

  HANDLE file_;
  OVERLAPPED range_ = farRange();
  bool held_;
};

}  // namespace

CallGuard::CallGuard() noexcept : errno_(errno), lastError_(GetLastError()) {}

CallGuard::~CallGuard() {
  errno = errno_;
  SetLastError(lastError_);
}

bool lock() noexcept {
  if (ownedHere()) return false;
  // At the end of a process all other threads are gone, perhaps with the lock in their hands.
  if (RtlDllShutdownInProgress()) return tryLock();
  AcquireSRWLockExclusive(&srwLock);
  owner.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

bool tryLock() noexcept {
  if (ownedHere() || !TryAcquireSRWLockExclusive(&srwLock)) return false;
  owner.store(GetCurrentThreadId(), std::memory_order_relaxed);
  return true;
}

void unlock() noexcept {
  owner.store(0, std::memory_order_relaxed);
  ReleaseSRWLockExclusive(&srwLock);
}

std::size_t readConfiguration(Char* buffer, std::size_t capacity) noexcept {
  return GetEnvironmentVariableW(L"TXLOG", buffer, static_cast<DWORD>(capacity));
}

bool File::open() noexcept {
  // Reading is asked for since a range can't be locked without it.
  const HANDLE file = CreateFileW(path_, FILE_APPEND_DATA | FILE_READ_DATA | SYNCHRONIZE,
                                  FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) return false;
  handle_ = reinterpret_cast<std::intptr_t>(file);
  return true;
}

bool File::append(std::string_view line) noexcept {
  if (handle_ == -1 && !open()) return false;
  const HANDLE file = toHandle(handle_);
  const AppendLock appendLock(file);
  if (torn_ && write(file, "\n") != 1) return false;
  const std::size_t written = write(file, line);
  torn_ = written != 0 && written != line.size();
  return written == line.size();
}

void File::close() noexcept {
  if (handle_ != -1) CloseHandle(toHandle(handle_));
  handle_ = -1;
}

void writeStandardError(std::string_view line) noexcept {
  const HANDLE file = GetStdHandle(STD_ERROR_HANDLE);
  if (file == nullptr || file == INVALID_HANDLE_VALUE) return;
  DWORD mode = 0;
  if (GetConsoleMode(file, &mode)) {
    DWORD written = 0;
    WriteConsoleW(file, wideLine, widen(line), &written, nullptr);
    wipeWideLine(line.size());
  } else {
    write(file, line);
  }
}

bool hasDebuggerOutput() noexcept {
  return true;
}

void writeDebugger(std::string_view line) noexcept {
  widen(line);
  OutputDebugStringW(wideLine);
  wipeWideLine(line.size());
}

long long now() noexcept {
  FILETIME time{};
  GetSystemTimeAsFileTime(&time);
  const unsigned long long ticks = static_cast<unsigned long long>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
  constexpr long long kFrom1601To1970 = 11'644'473'600'000;
  return static_cast<long long>(ticks / 10'000) - kFrom1601To1970;
}

unsigned long processId() noexcept {
  return GetCurrentProcessId();
}

unsigned long threadId() noexcept {
  return GetCurrentThreadId();
}

char32_t takeNarrow(const char*& text) noexcept {
  if (static_cast<unsigned char>(*text) < 0x80) return static_cast<char32_t>(*text++);
  // The shortest run of bytes that the code page takes for a character; no code page needs more than four.
  for (int length = 1; length <= 4 && text[length - 1] != '\0'; ++length) {
    wchar_t units[2];
    const int count = MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text, length, units, 2);
    if (count > 0) {
      text += length;
      const wchar_t* unit = units;
      return takeCodePoint(unit, units + count);
    }
  }
  ++text;
  return vlplatform::utf8::kReplacement;
}

}  // namespace txlogu::system
