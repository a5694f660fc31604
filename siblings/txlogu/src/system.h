/// What the channel needs of the operating system; one source file a system implements it.
#ifndef TXLOGU_SYSTEM_H
#define TXLOGU_SYSTEM_H

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

namespace txlogu::system {

/// The character of paths and environment values: wide on Windows, bytes elsewhere.
using Char = std::conditional_t<sizeof(wchar_t) == 2, wchar_t, char>;
using View = std::basic_string_view<Char>;

/// Keeps what the caller may look at after a log call: errno and the last-error value. On POSIX it also keeps the
/// thread from being cancelled within the call.
class CallGuard {
 public:
  CallGuard() noexcept;
  ~CallGuard();
  CallGuard(const CallGuard&) = delete;
  CallGuard& operator=(const CallGuard&) = delete;

 private:
  int errno_;
  unsigned long lastError_;
  int cancelState_ = 0;
};

/// Takes the channel's one lock. False, with nothing taken, if this thread has it already or if it can't be had any
/// more, since the process is ending and the thread that had it is gone. A fork is safe while others log.
bool lock() noexcept;
/// Takes the lock if it is free.
bool tryLock() noexcept;
void unlock() noexcept;

/// Copies the environment variable TXLOG and its terminator to `buffer`. Returns its length, 0 if there is none, or a
/// number not below `capacity` if it does not fit.
std::size_t readConfiguration(Char* buffer, std::size_t capacity) noexcept;

/// A file that lines are appended to. Opened when it is needed.
class File {
 public:
  constexpr File() noexcept = default;

  void setPath(const Char* path) noexcept { path_ = path; }
  const Char* path() const noexcept { return path_; }

  /// Appends a line as a whole, also beside other processes. False if it could not be written, or not wholly; the
  /// next line then begins with a line end of its own.
  bool append(std::string_view line) noexcept;
  void close() noexcept;

 private:
  bool open() noexcept;

  const Char* path_ = nullptr;
  std::intptr_t handle_ = -1;
  // Tells our file from another that the program has opened under our number, after it closed ours.
  std::uint64_t device_ = 0;
  std::uint64_t node_ = 0;
  bool torn_ = false;
};

void writeStandardError(std::string_view line) noexcept;

bool hasDebuggerOutput() noexcept;
void writeDebugger(std::string_view line) noexcept;

/// Milliseconds since 1 January 1970 UTC.
long long now() noexcept;
unsigned long processId() noexcept;
unsigned long threadId() noexcept;

/// Takes the first code point off a NUL-terminated text in the system's narrow encoding, which must not be empty.
char32_t takeNarrow(const char*& text) noexcept;

}  // namespace txlogu::system

#endif
