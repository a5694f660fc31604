#include <support/logcapture.h>

#include <algorithm>
#include <optional>
#include <ostream>
#include <utility>

#ifndef _WIN32
#include <vlplatform/machine/allocations.h>
#endif

namespace support {
namespace {

using Records = std::vector<LogRecord>;

void list(testing::AssertionResult& result, const char* title, const Records& records) {
  result << title << "\n";
  for (const LogRecord& record : records) {
    result << "  " << testing::PrintToString(record) << "\n";
  }
}

}  // namespace

void PrintTo(const LogRecord& record, std::ostream* out) {
  *out << "level " << record.level;
  *out << " " << testing::PrintToString(record.tag) << " " << testing::PrintToString(record.text);
  if (!record.data.empty()) {
    *out << " " << testing::PrintToString(record.data);
  }
}

LogCapture::LogCapture(unsigned levels) {
  if (txlogSetSink(&LogCapture::record, this, levels) != TXLOG_DONE) {
    ADD_FAILURE() << "the log channel refused the sink";
  }
}

LogCapture::~LogCapture() {
  txlogSetSink(nullptr, nullptr, 0);
}

std::vector<LogRecord> LogCapture::records() const {
  const std::lock_guard lock(mutex_);
  return records_;
}

std::vector<LogRecord> LogCapture::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(records_, {});
}

testing::AssertionResult LogCapture::was(const std::vector<LogRecord>& expected) {
  const Records logged = take();
  if (logged == expected) {
    return testing::AssertionSuccess();
  }
  const auto difference = std::mismatch(logged.begin(), logged.end(), expected.begin(), expected.end());
  testing::AssertionResult failure = testing::AssertionFailure();
  failure << "the log differs from record " << difference.first - logged.begin() + 1 << " on\n";
  list(failure, "expected:", expected);
  list(failure, "logged:", logged);
  return failure;
}

void LogCapture::record(void* context, const txlogRecord* record) {
#ifndef _WIN32
  const vlplatform::OwnAllocations own;
#endif
  LogCapture& capture = *static_cast<LogCapture*>(context);
  const auto* const data = static_cast<const unsigned char*>(record->data);
  const std::lock_guard lock(capture.mutex_);
  capture.records_.push_back(
      {record->tag, record->level, record->text,
       data == nullptr ? std::vector<unsigned char>() : std::vector<unsigned char>(data, data + record->byteCount)});
}

}  // namespace support
