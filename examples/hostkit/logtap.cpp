#include "logtap.h"

#include <stdexcept>
#include <utility>

#include "text.h"

namespace {

LogTap* current = nullptr;

std::string levelName(int level) {
  switch (level) {
    case TXLOG_NOTE:
      return "note";
    case TXLOG_ERROR:
      return "error";
    case TXLOG_TRACE:
      return "trace";
    case TXLOG_ENTRY:
      return "entry";
    case TXLOG_EXIT:
      return "exit";
    default:
      return "level " + std::to_string(level);
  }
}

}  // namespace

LogTap::LogTap(Receiver receiver) : receiver_(std::move(receiver)), former_(current) {
  if (txlogSetSink(take, this, TXLOG_ALL_LEVELS) != TXLOG_DONE) {
    throw std::runtime_error("the log channel refuses the program's sink");
  }
  current = this;
}

LogTap::~LogTap() {
  current = former_;
  txlogSetSink(former_ != nullptr ? take : nullptr, former_, TXLOG_ALL_LEVELS);
}

void LogTap::take(void* context, const txlogRecord* record) {
  std::string line = "[" + levelName(record->level) + "] " + shown(toUtf8({record->text, record->textLength}));
  if (record->textCut != 0) {
    line += "...";
  }
  if (record->binary != 0) {
    line += " (" + std::to_string(record->byteCount) + " bytes)";
  }
  static_cast<LogTap*>(context)->receiver_(line);
}
