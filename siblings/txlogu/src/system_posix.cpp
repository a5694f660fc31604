#include "system.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "unicode.h"

// The last-error value of the platform stand-in, in programs that have it: its other functions are counted, and made
// to fail, for tests; a log call must not be among them.
extern "C" {
[[gnu::weak]] unsigned GetLastError();
[[gnu::weak]] void SetLastError(unsigned code);
}

namespace txlogu::system {
namespace {

constinit pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
constinit std::atomic<pthread_t> owner{};
constinit bool forkHandlers = false;
constinit bool lockedForFork = false;

bool ownedHere() noexcept {
  return owner.load(std::memory_order_relaxed) == pthread_self();
}

void beforeFork() noexcept {
  if (ownedHere()) return;  // the fork of a sink: it has the lock already and goes on having it
  pthread_mutex_lock(&mutex);
  owner.store(pthread_self(), std::memory_order_relaxed);
  lockedForFork = true;
}

void afterFork() noexcept {
  if (!lockedForFork) return;
  lockedForFork = false;
  unlock();
}

void registerForkHandlers() noexcept {
  if (forkHandlers) return;
  forkHandlers = true;
  pthread_atfork(beforeFork, afterFork, afterFork);
}

/// Holds back the signals by which a failed write would end the program.
class WriteSignals {
 public:
  WriteSignals() noexcept {
    sigpending(&pending_);
    sigset_t blocked;
    sigemptyset(&blocked);
    for (const int number : kNumbers) sigaddset(&blocked, number);
    pthread_sigmask(SIG_BLOCK, &blocked, &before_);
  }

  ~WriteSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

  WriteSignals(const WriteSignals&) = delete;
  WriteSignals& operator=(const WriteSignals&) = delete;

  /// Takes away the signal that our write has caused, but none that was waiting before.
  void discard(int number) noexcept {
    if (sigismember(&pending_, number) == 1) return;
    sigset_t one;
    sigemptyset(&one);
    sigaddset(&one, number);
    constexpr timespec kNoWait{};
    while (sigtimedwait(&one, nullptr, &kNoWait) < 0 && errno == EINTR) {
    }
  }

 private:
  static constexpr int kNumbers[] = {SIGPIPE, SIGXFSZ};
  sigset_t pending_;
  sigset_t before_;
};

/// Writes all bytes; returns how many were written.
std::size_t writeAll(int descriptor, std::string_view bytes) noexcept {
  WriteSignals signals;
  std::size_t written = 0;
  while (written < bytes.size()) {
    const ssize_t count = ::write(descriptor, bytes.data() + written, bytes.size() - written);
    if (count > 0) {
      written += static_cast<std::size_t>(count);
    } else if (count == 0 || errno != EINTR) {
      if (count < 0 && errno == EPIPE) signals.discard(SIGPIPE);
      if (count < 0 && errno == EFBIG) signals.discard(SIGXFSZ);
      break;
    }
  }
  return written;
}

}  // namespace

CallGuard::CallGuard() noexcept : errno_(errno), lastError_(GetLastError != nullptr ? GetLastError() : 0) {
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState_);
}

CallGuard::~CallGuard() {
  int state = 0;
  pthread_setcancelstate(cancelState_, &state);
  if (SetLastError != nullptr) SetLastError(static_cast<unsigned>(lastError_));
  errno = errno_;
}

bool lock() noexcept {
  if (ownedHere()) return false;
  pthread_mutex_lock(&mutex);
  owner.store(pthread_self(), std::memory_order_relaxed);
  registerForkHandlers();
  return true;
}

bool tryLock() noexcept {
  if (ownedHere() || pthread_mutex_trylock(&mutex) != 0) return false;
  owner.store(pthread_self(), std::memory_order_relaxed);
  return true;
}

void unlock() noexcept {
  owner.store(pthread_t{}, std::memory_order_relaxed);
  pthread_mutex_unlock(&mutex);
}

std::size_t readConfiguration(Char* buffer, std::size_t capacity) noexcept {
  const char* value = std::getenv("TXLOG");
  if (value == nullptr) return 0;
  const std::size_t length = std::strlen(value);
  if (length < capacity) std::memcpy(buffer, value, length + 1);
  return length;
}

bool File::open() noexcept {
  int descriptor = ::open(path_, O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
  if (descriptor >= 0 && descriptor <= STDERR_FILENO) {
    // One of the standard streams is closed: its number must not lead others into our file.
    const int low = descriptor;
    descriptor = ::fcntl(low, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    ::close(low);
  }
  struct stat status {};
  if (descriptor < 0 || ::fstat(descriptor, &status) != 0) return false;
  handle_ = descriptor;
  device_ = status.st_dev;
  node_ = status.st_ino;
  return true;
}

bool File::append(std::string_view line) noexcept {
  struct stat status {};
  if (handle_ >= 0 &&
      (::fstat(static_cast<int>(handle_), &status) != 0 || status.st_dev != device_ || status.st_ino != node_)) {
    handle_ = -1;
  }
  if (handle_ < 0 && !open()) return false;
  const int descriptor = static_cast<int>(handle_);
  if (torn_ && writeAll(descriptor, "\n") != 1) return false;
  const std::size_t written = writeAll(descriptor, line);
  torn_ = written != 0 && written != line.size();
  return written == line.size();
}

void File::close() noexcept {
  if (handle_ >= 0) ::close(static_cast<int>(handle_));
  handle_ = -1;
}

void writeStandardError(std::string_view line) noexcept {
  writeAll(STDERR_FILENO, line);
}

bool hasDebuggerOutput() noexcept {
  return false;
}

void writeDebugger(std::string_view) noexcept {}

long long now() noexcept {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);
  return static_cast<long long>(time.tv_sec) * 1000 + time.tv_nsec / 1'000'000;
}

unsigned long processId() noexcept {
  return static_cast<unsigned long>(::getpid());
}

unsigned long threadId() noexcept {
  return static_cast<unsigned long>(::gettid());
}

char32_t takeNarrow(const char*& text) noexcept {
  return takeCodePoint(text, text + strnlen(text, vlplatform::utf8::kMaxLength));
}

}  // namespace txlogu::system
