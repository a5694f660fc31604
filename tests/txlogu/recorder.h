/// Takes the records of this process while it lives.
#ifndef TESTS_TXLOGU_RECORDER_H
#define TESTS_TXLOGU_RECORDER_H

#include <gtest/gtest.h>
#include <txlogu/txlogu.h>

#include <string>
#include <vector>

/// A record with copies of what it points to.
struct Recorded : txlogRecord {
  std::wstring tag, text;
  std::string data;
};

class Recorder {
 public:
  explicit Recorder(unsigned levels = TXLOG_ALL_LEVELS) { EXPECT_EQ(txlogSetSink(take, this, levels), TXLOG_DONE); }
  ~Recorder() { EXPECT_EQ(txlogSetSink(nullptr, nullptr, 0), TXLOG_DONE); }
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  const std::vector<Recorded>& records() const { return records_; }
  std::wstring lastText() const { return records_.empty() ? L"<no record>" : records_.back().text; }

 private:
  static void take(void* self, const txlogRecord* record) {
    EXPECT_EQ(record->text[record->textLength], L'\0');
    EXPECT_EQ(record->data == nullptr ? record->byteCount : 0, 0);
    const std::string data(static_cast<const char*>(record->data), record->byteCount);
    static_cast<Recorder*>(self)->records_.push_back(
        {*record, record->tag, std::wstring(record->text, record->textLength), data});
  }

  std::vector<Recorded> records_;
};

#endif
