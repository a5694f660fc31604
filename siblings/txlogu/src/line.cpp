#include "line.h"

#include <vlhostkit/wipe.h>

#include <algorithm>
#include <chrono>
#include <cwchar>

#include "levels.h"
#include "unicode.h"

namespace txlogu {
namespace {

constexpr char kHexDigits[] = "0123456789abcdef";
constexpr std::string_view kCutMark = "\\[cut]";

}  // namespace

void Line::append(char byte) noexcept {
  if (length_ < kCapacity) bytes_[length_++] = byte;
}

void Line::append(std::string_view bytes) noexcept {
  for (const char byte : bytes) append(byte);
}

void Line::appendNumber(long long value, int width) noexcept {
  char digits[24];
  int count = 0;
  if (value < 0) append('-');
  auto rest = value < 0 ? 0ull - static_cast<unsigned long long>(value) : static_cast<unsigned long long>(value);
  for (; rest != 0 || count < width; rest /= 10) digits[count++] = static_cast<char>('0' + rest % 10);
  while (count > 0) append(digits[--count]);
}

void Line::appendTime(long long milliseconds) noexcept {
  using namespace std::chrono;
  const sys_time<std::chrono::milliseconds> time{std::chrono::milliseconds{milliseconds}};
  const auto day = floor<days>(time);
  const year_month_day date{day};
  const hh_mm_ss clock{time - day};
  appendNumber(static_cast<int>(date.year()), 4);
  append('-');
  appendNumber(static_cast<unsigned>(date.month()), 2);
  append('-');
  appendNumber(static_cast<unsigned>(date.day()), 2);
  append('T');
  appendNumber(clock.hours().count(), 2);
  append(':');
  appendNumber(clock.minutes().count(), 2);
  append(':');
  appendNumber(clock.seconds().count(), 2);
  append('.');
  appendNumber(clock.subseconds().count(), 3);
  append('Z');
}

void Line::appendLevel(int level) noexcept {
  for (const LevelName& known : kLevelNames) {
    if (known.level == level) return append(known.name);
  }
  append("level");
  appendNumber(level);
}

void Line::appendEscaped(char32_t codePoint) noexcept {
  switch (codePoint) {
    case U'\\':
      return append("\\\\");
    case U'\n':
      return append("\\n");
    case U'\r':
      return append("\\r");
    case U'\t':
      return append("\\t");
    default:
      break;
  }
  if (vlplatform::utf8::misleads(codePoint)) {
    append("\\u");
    for (int shift = 12; shift >= 0; shift -= 4) append(kHexDigits[codePoint >> shift & 0xF]);
  } else {
    char bytes[vlplatform::utf8::kMaxLength];
    append(std::string_view(bytes, static_cast<std::size_t>(vlplatform::utf8::encode(codePoint, bytes))));
  }
}

template <typename Char>
void Line::appendEscaped(const Char* text, const Char* end) noexcept {
  while (text != end) appendEscaped(takeCodePoint(text, end));
}

void Line::appendTag(const wchar_t* tag) noexcept {
  std::size_t length = 0;
  while (length < TXLOG_MAX_TAG && tag[length] != L'\0') ++length;
  const wchar_t* const end = tag + length;
  const bool cut = *end != L'\0';
  while (tag != end) {
    const char32_t codePoint = takeCodePoint(tag, end);
    if (codePoint == U' ') {
      append("\\u0020");
    } else {
      appendEscaped(codePoint);
    }
  }
  if (cut) append(kCutMark);
}

void Line::appendData(const txlogRecord& record) noexcept {
  const int shown = std::min(record.byteCount, TXLOG_MAX_DATA);
  append(" \\[");
  if (record.data == nullptr) {
    append("no data]");
    return;
  }
  appendNumber(record.byteCount);
  append(" bytes");
  if (shown < record.byteCount) {
    append(", last ");
    appendNumber(record.byteCount - shown);
    append(" left out");
  }
  append(']');
  const auto* bytes = static_cast<const unsigned char*>(record.data);
  for (int index = 0; index < shown; ++index) {
    append(' ');
    append(kHexDigits[bytes[index] >> 4]);
    append(kHexDigits[bytes[index] & 0xF]);
  }
}

void Line::clear() noexcept {
  VL::Framework::wipe(bytes_, length_);
  length_ = 0;
}

void Line::write(const txlogRecord& record) noexcept {
  clear();
  appendTime(record.time);
  append(' ');
  appendNumber(static_cast<long long>(record.processId));
  append(' ');
  appendNumber(static_cast<long long>(record.threadId));
  append(' ');
  appendLevel(record.level);
  append(' ');
  appendTag(record.tag);
  append(' ');
  appendEscaped(record.text, record.text + record.textLength);
  if (record.textCut != 0) append(kCutMark);
  if (record.binary != 0) appendData(record);
  append('\n');
}

void Line::writeComplaint(std::string_view what, system::View subject) noexcept {
  clear();
  append("txlogu: ");
  append(what);
  append(": ");
  appendEscaped(subject.data(), subject.data() + subject.size());
  append('\n');
}

}  // namespace txlogu
