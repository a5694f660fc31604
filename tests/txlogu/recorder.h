/// Takes the records of this process while it lives.
#ifndef TESTS_TXLOGU_RECORDER_H
#define TESTS_TXLOGU_RECORDER_H

#include <gtest/gtest.h>
#include <txlogu/txlogu.h>

#include <cstring>
#include <string>
#include <vector>

struct Recorded {
  int level;
  std::wstring tag;
  const wchar_t* format;
  std::wstring text;
  bool cut;
  bool binary;
  bool hasData;
  std::string data;
  unsigned long threadId;
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
    Recorded copy{record->level,           record->tag,
                  record->format,          std::wstring(record->text, record->textLength),
                  record->textCut != 0,    record->binary != 0,
                  record->data != nullptr, {},
                  record->threadId};
    EXPECT_EQ(record->text[record->textLength], L'\0');
    if (record->data != nullptr) copy.data.assign(static_cast<const char*>(record->data), record->byteCount);
    static_cast<Recorder*>(self)->records_.push_back(copy);
  }

  std::vector<Recorded> records_;
};

#endif
