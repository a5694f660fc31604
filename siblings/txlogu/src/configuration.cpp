#include "configuration.h"

#include <algorithm>
#include <cwchar>

#include "levels.h"
#include "unicode.h"

namespace txlogu {
namespace {

using system::Char;
using system::View;

constexpr bool isBlank(Char c) noexcept {
  return c == Char{' '} || c == Char{'\t'};
}

View trim(View text) noexcept {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// Cuts the part before `separator` off the front of `rest`, blanks around it removed.
View takePart(View& rest, char separator) noexcept {
  const std::size_t length = std::min(rest.find(static_cast<Char>(separator)), rest.size());
  const View part = trim(rest.substr(0, length));
  rest.remove_prefix(std::min(length + 1, rest.size()));
  return part;
}

/// Whether `text` begins with the lower-case `word`, in letters of either case.
bool beginsWith(View text, std::string_view word) noexcept {
  if (text.size() < word.size()) return false;
  return std::equal(word.begin(), word.end(), text.begin(), [](char expected, Char c) {
    const bool upper = c >= Char{'A'} && c <= Char{'Z'};
    return static_cast<Char>(expected) == (upper ? static_cast<Char>(c - 'A' + 'a') : c);
  });
}

bool isWord(View text, std::string_view word) noexcept {
  return text.size() == word.size() && beginsWith(text, word);
}

/// Removes `key` from the front of `item`, if it is there.
bool takeKey(View& item, std::string_view key) noexcept {
  if (!beginsWith(item, key)) return false;
  item = trim(item.substr(key.size()));
  return true;
}

void complain(Line& line, std::string_view what, View subject) noexcept {
  line.writeComplaint(what, subject);
  system::writeStandardError(line.view());
}

}  // namespace

void Configuration::read(Line& line) noexcept {
  read_ = true;
  const std::size_t length = system::readConfiguration(text_, kMostCharacters + 1);
  if (length > kMostCharacters) return complain(line, "TXLOG is too long", {});
  View rest(text_, length);
  const View all = rest;
  bool asked = false;
  while (!rest.empty()) {
    const View item = takePart(rest, ';');
    if (item.empty()) continue;
    asked = true;
    readItem(item, line);
  }
  if (!asked) return;
  if (!toStandardError_ && !toDebugger_ && file_.path() == nullptr) {
    levels_ = 0;
    return complain(line, "TXLOG names no destination", all);
  }
  if (!levelsAsked_) levels_ = TXLOG_ALL_LEVELS;
}

void Configuration::readItem(View item, Line& line) noexcept {
  View value = item;
  if (isWord(item, "stderr")) {
    toStandardError_ = true;
  } else if (isWord(item, "debugger") && system::hasDebuggerOutput()) {
    toDebugger_ = true;
  } else if (takeKey(value, "file=") && !value.empty() && file_.path() == nullptr) {
    // The character behind the path is a blank, a separator or the end, all of them done with.
    text_[static_cast<std::size_t>(value.data() - text_) + value.size()] = Char{};
    file_.setPath(value.data());
  } else if (value = item; takeKey(value, "level=") && !value.empty()) {
    levelsAsked_ = true;
    while (!value.empty()) readLevel(takePart(value, ','), line);
  } else if (value = item; takeKey(value, "tag=") && !value.empty()) {
    tagsAsked_ = true;
    while (!value.empty()) readTag(takePart(value, ','), line);
  } else {
    complain(line, "TXLOG: item not understood", item);
  }
}

void Configuration::readLevel(View name, Line& line) noexcept {
  if (isWord(name, "all")) {
    levels_ = TXLOG_ALL_LEVELS;
    return;
  }
  for (const LevelName& known : kLevelNames) {
    if (isWord(name, known.name)) {
      levels_ |= TXLOG_LEVEL_BIT(known.level);
      return;
    }
  }
  complain(line, "TXLOG: level not understood", name);
}

void Configuration::readTag(View name, Line& line) noexcept {
  if (name.empty() || tagCount_ == kMostTags) return complain(line, "TXLOG: tag not understood", name);
  tags_[tagCount_++] = name;
}

bool Configuration::takesTag(const wchar_t* tag) const noexcept {
  if (!tagsAsked_) return true;
  const wchar_t* const tagEnd = tag + std::wcslen(tag);
  return std::any_of(tags_, tags_ + tagCount_, [tag, tagEnd](View wanted) {
    const Char* expected = wanted.data();
    const Char* const expectedEnd = expected + wanted.size();
    const wchar_t* given = tag;
    while (expected != expectedEnd && given != tagEnd) {
      if (takeCodePoint(expected, expectedEnd) != takeCodePoint(given, tagEnd)) return false;
    }
    return expected == expectedEnd && given == tagEnd;
  });
}

void Configuration::deliver(Line& line) noexcept {
  if (toStandardError_) system::writeStandardError(line.view());
  if (toDebugger_) system::writeDebugger(line.view());
  if (file_.path() == nullptr || file_.append(line.view()) || fileFailed_) return;
  fileFailed_ = true;
  complain(line, "the log file can't be written", file_.path());
}

}  // namespace txlogu
