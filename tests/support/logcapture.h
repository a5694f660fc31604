/// Records what reaches the log channel.
#ifndef SUPPORT_LOGCAPTURE_H
#define SUPPORT_LOGCAPTURE_H

#include <gtest/gtest.h>

#include <iosfwd>
#include <mutex>
#include <string>
#include <vector>

#include <txlogu/txlogu.h>

namespace support {

struct LogRecord {
  std::wstring tag;
  int level = TXLOG_NOTE;
  std::wstring text;                  ///< the label of a binary record
  std::vector<unsigned char> data{};  ///< of a binary record

  bool operator==(const LogRecord&) const = default;
};

/// For GoogleTest's messages.
void PrintTo(const LogRecord& record, std::ostream* out);

/// While one lives, it gets all records of the levels it was made for. One at a time in a process.
class LogCapture {
 public:
  explicit LogCapture(unsigned levels = TXLOG_ALL_LEVELS);
  ~LogCapture();
  LogCapture(const LogCapture&) = delete;
  LogCapture& operator=(const LogCapture&) = delete;

  /// What was logged so far, by all threads, in the order of the calls.
  std::vector<LogRecord> records() const;
  /// The same, and begins anew.
  std::vector<LogRecord> take();

  /// Takes the records and compares them with `expected`:
  ///
  ///     EXPECT_TRUE(log.was({{L"txhostkit", TXLOG_ENTRY, L"vlFoo"}, {L"txhostkit", TXLOG_EXIT, L"vlFoo : ret=(0)"}}));
  testing::AssertionResult was(const std::vector<LogRecord>& expected);

 private:
  static void record(void* context, const txlogRecord* record);

  mutable std::mutex mutex_;
  std::vector<LogRecord> records_;
};

}  // namespace support

#endif
