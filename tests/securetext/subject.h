/// What the model of the secure strings works on.
#ifndef SECURETEXT_SUBJECT_H
#define SECURETEXT_SUBJECT_H

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <vlhostkit/securestring.h>

#include "outcome.h"
#include "watchedmanager.h"

namespace securetext::model {

/// What does not agree.
struct Mismatch {
  const char* what;
};

inline void require(bool condition, const char* what) {
  if (!condition) {
    throw Mismatch{what};
  }
}

/// A secure string and what it must hold.
template <class Char>
struct Subject {
  using String = std::conditional_t<std::is_same_v<Char, wchar_t>, CSecStr, CSecStrA>;
  using Text = std::basic_string<Char>;

  std::optional<String> string{std::in_place};
  Text text;
  /// Characters that an edit in place has dropped may stand behind the text.
  bool residue = false;

  int length() const { return static_cast<int>(text.size()); }
  const Char* chars() const { return string->GetString(); }
  // A call that changes nothing need not wipe.
  void becomes(Text now) {
    residue = residue && now == text;
    text = std::move(now);
  }

  void check() const {
    const CStringData& header = headerOf(chars());
    require(string->GetLength() == length() && header.nDataLength == length(), "length");
    require(std::equal(text.begin(), text.end(), chars()) && chars()[length()] == 0, "text");
    require(header.nAllocLength >= length(), "allocated length");
    Char unwritten;
    std::memset(&unwritten, kFill, sizeof unwritten);
    require(residue || std::all_of(chars() + length(), chars() + header.nAllocLength,
                                   [=](Char c) { return c == 0 || c == unwritten; }),
            "old text behind the text");
  }
};

/// A text as an argument: null, of its own, or inside one of the subjects. With a length for calls that count, and how
/// such a call must end.
template <class Char>
struct Argument {
  std::unique_ptr<Char[]> own;  // of exact size, so that a read behind it is seen
  const Char* pointer = nullptr;
  std::basic_string<Char> value;
  int count = 0;
  std::string_view outcome = kDone;

  std::basic_string<Char> counted() const { return value.substr(0, static_cast<std::size_t>(std::max(count, 0))); }
};

}  // namespace securetext::model

#endif
