/// The log records of the library's calls, as a caller takes them off the channel.
#ifndef HOSTKIT_LOGTAP_H
#define HOSTKIT_LOGTAP_H

#include <txlogu/txlogu.h>

#include <functional>
#include <string>

/// Hands every record to `receiver` as one line, "[entry] vlSysISO8601ToSystemTime", while the tap lives. The tap made
/// last has the records; when it ends, the one before has them again. For one thread, and taps end in turn.
class LogTap {
 public:
  using Receiver = std::function<void(const std::string& line)>;

  explicit LogTap(Receiver receiver);
  ~LogTap();
  LogTap(const LogTap&) = delete;
  LogTap& operator=(const LogTap&) = delete;

 private:
  static void take(void* context, const txlogRecord* record);

  Receiver receiver_;
  LogTap* former_;
};

#endif
