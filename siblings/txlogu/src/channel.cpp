#include <txlogu/txlogu.h>

#include <atomic>
#include <cstdarg>

#include "configuration.h"
#include "format.h"
#include "line.h"
#include "system.h"

namespace txlogu {
namespace {

/// What a caller passed: a format with arguments, or, if there are none, bytes under a label.
struct Call {
  const wchar_t* tag;
  int level;
  const wchar_t* text;
  std::va_list* arguments;
  const void* data;
  int byteCount;
};

/// Everything that the lock protects. Constant-initialised and without a destructor, so that it serves the first call
/// and the last one, whichever static objects they come from.
struct Channel {
  txlogSink sink = nullptr;
  void* context = nullptr;
  unsigned sinkLevels = 0;
  Configuration configuration;
  Text text;
  Line line;
};

constinit Channel channel;

// The levels whose calls go on to the channel. All of them do until TXLOG has been read.
constinit std::atomic<unsigned> openLevels{TXLOG_ALL_LEVELS};

/// Holds the lock. Not held if the thread has it already, which means that it runs in a sink.
class Session {
 public:
  Session() noexcept : held_(system::lock()) {}
  ~Session() {
    if (held_) system::unlock();
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  explicit operator bool() const noexcept { return held_; }

 private:
  bool held_;
};

void updateOpenLevels() noexcept {
  unsigned levels = TXLOG_ALL_LEVELS;
  if (channel.sink != nullptr) {
    levels = channel.sinkLevels;
  } else if (channel.configuration.isRead()) {
    levels = channel.configuration.levels();
  }
  openLevels.store(levels, std::memory_order_relaxed);
}

void callSink(const txlogRecord& record) noexcept {
  try {
    channel.sink(channel.context, &record);
  } catch (...) {
    // The sink's own affair: the thread that logs knows nothing of it.
  }
}

[[gnu::noinline, gnu::cold]] void log(const Call& call) noexcept {
  const system::CallGuard guard;
  const Session session;
  if (!session) return;
  if (channel.sink == nullptr && !channel.configuration.isRead()) {
    channel.configuration.read(channel.line);
    updateOpenLevels();
  }
  // Again, since the caller's look at the levels was a hint only.
  if ((openLevels.load(std::memory_order_relaxed) & TXLOG_LEVEL_BIT(call.level)) == 0) return;

  txlogRecord record{};
  record.level = call.level;
  record.tag = call.tag != nullptr ? call.tag : L"(null)";
  if (channel.sink == nullptr && !channel.configuration.takesTag(record.tag)) return;
  record.time = system::now();
  record.processId = system::processId();
  record.threadId = system::threadId();

  if (call.arguments != nullptr) {
    record.format = call.text;
    appendFormatted(channel.text, call.text, call.arguments);
  } else {
    record.binary = 1;
    channel.text.append(call.text);
    if (call.data != nullptr && call.byteCount >= 0) {
      record.data = call.data;
      record.byteCount = call.byteCount;
    }
  }
  channel.text.finish();
  record.text = channel.text.data();
  record.textLength = channel.text.length();
  record.textCut = channel.text.cut() ? 1 : 0;

  if (channel.sink != nullptr) {
    callSink(record);
  } else {
    channel.line.write(record);
    channel.configuration.deliver(channel.line);
    channel.line.clear();
  }
  channel.text.clear();
}

bool isClosed(int level) noexcept {
  return (openLevels.load(std::memory_order_relaxed) & TXLOG_LEVEL_BIT(level)) == 0;
}

/// At unload. Another thread may be within the channel for as long as it likes; the file is then left to the system.
[[gnu::destructor]] void closeFile() noexcept {
  if (!system::tryLock()) return;
  channel.configuration.closeFile();
  system::unlock();
}

}  // namespace
}  // namespace txlogu

void txlogLog(const wchar_t* tag, int level, const wchar_t* format, ...) {
  if (txlogu::isClosed(level)) return;
  std::va_list arguments;
  va_start(arguments, format);
  txlogu::log({tag, level, format, &arguments, nullptr, 0});
  va_end(arguments);
}

void txlogLogBin(const wchar_t* tag, int level, const void* data, int byteCount, const wchar_t* label) {
  if (txlogu::isClosed(level)) return;
  txlogu::log({tag, level, label, nullptr, data, byteCount});
}

int txlogSetSink(txlogSink sink, void* context, unsigned levels) {
  using namespace txlogu;
  const system::CallGuard guard;
  const Session session;
  if (!session) return TXLOG_REFUSED;
  channel.sink = sink;
  channel.context = context;
  channel.sinkLevels = levels;
  updateOpenLevels();
  return TXLOG_DONE;
}
