/// Secure strings against plain standard strings: a sequence of operations, read from bytes, is done to both, and after
/// each they must agree. For random bytes and for a fuzzer.
#ifndef SECURETEXT_MODEL_H
#define SECURETEXT_MODEL_H

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include <vlhostkit/securestring.h>

#include "outcome.h"
#include "watchedmanager.h"

namespace securetext::model {

/// The bytes of a sequence; zeros behind their end.
class Script {
 public:
  explicit Script(std::span<const std::uint8_t> bytes) : rest_(bytes) {}

  bool ended() const { return rest_.empty(); }
  unsigned next(unsigned limit) {
    if (rest_.empty()) {
      return 0;
    }
    const unsigned byte = rest_.front();
    rest_ = rest_.subspan(1);
    return byte % limit;
  }
  /// An index or count for a text of `length`: in it, at its edges, or far out.
  int position(int length) {
    static constexpr int kFar[] = {INT_MIN, -1, INT_MAX, 1000};
    const unsigned choice = next(32);
    return choice < 4 ? kFar[choice] : static_cast<int>(next(static_cast<unsigned>(length) + 3)) - 1;
  }
  template <class Char>
  Char character() {
    static constexpr Char kCharacters[] = {'a', 'a', 'b',  'B', 'A',
                                           'z', ' ', '\t', '-', static_cast<Char>(sizeof(Char) == 1 ? 0xe9 : 0x4e2d)};
    return kCharacters[next(std::size(kCharacters))];
  }
  template <class Char>
  std::basic_string<Char> text() {
    const unsigned length = next(6) == 0 ? next(50) : next(5);
    std::basic_string<Char> made;
    for (unsigned i = 0; i < length; ++i) {
      made += character<Char>();
    }
    return made;
  }

 private:
  std::span<const std::uint8_t> rest_;
};

inline constexpr std::size_t kMostCharacters = 3000;

/// What does not agree.
struct Mismatch {
  std::string message;
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
  void becomes(Text now) {
    text = std::move(now);
    residue = false;
  }

  void check() const {
    const CStringData& header = headerOf(chars());
    require(string->GetLength() == length() && header.nDataLength == length(), "length");
    require(std::equal(text.begin(), text.end(), chars()), "text");
    require(chars()[length()] == 0, "terminator");
    require(header.nAllocLength >= length(), "allocated length");
    Char unwritten;
    std::memset(&unwritten, kFill, sizeof unwritten);
    require(residue || std::all_of(chars() + length(), chars() + header.nAllocLength,
                                   [=](Char c) { return c == 0 || c == unwritten; }),
            "old text behind the text");
  }
  // Texts that double again and again are cut back.
  void checkAndLimit() {
    check();
    if (text.size() > kMostCharacters) {
      string->ReleaseBuffer(3);
      becomes(text.substr(0, 3));
    }
  }
};

/// A text as an argument: null, of its own, or inside one of the subjects.
template <class Char>
struct Argument {
  std::unique_ptr<Char[]> own;  // of exact size, so that a read behind it is seen
  const Char* pointer = nullptr;
  std::basic_string<Char> value;

  int length() const { return static_cast<int>(value.size()); }
};

class Run {
 public:
  Run(std::span<const std::uint8_t> bytes, const WatchedManager& memory) : script_(bytes), memory_(memory) {}

  /// Returns the number of operations.
  std::size_t operator()() {
    std::size_t operations = 0;
    for (; !script_.ended(); ++operations) {
      const unsigned choice = script_.next(40);
      if (choice < 26) {
        editWide(choice);
      } else if (choice < 32) {
        common(wide_);
      } else if (choice < 38) {
        common(narrow_);
      } else {
        convert();
      }
      for (Subject<wchar_t>& subject : wide_) {
        subject.checkAndLimit();
      }
      for (Subject<char>& subject : narrow_) {
        subject.checkAndLimit();
      }
      require(memory_.dirty() == 0, "a buffer was given back with something in it");
    }
    return operations;
  }

 private:
  template <class Char>
  using Subjects = std::array<Subject<Char>, 3>;

  template <class Char>
  Subject<Char>& one(Subjects<Char>& subjects) {
    return subjects[script_.next(static_cast<unsigned>(subjects.size()))];
  }

  template <class Char>
  Argument<Char> argument(Subjects<Char>& subjects) {
    Argument<Char> made;
    const unsigned kind = script_.next(8);
    if (kind == 0) {
      return made;
    }
    if (kind < 4) {
      const Subject<Char>& subject = one(subjects);
      const unsigned from = script_.next(static_cast<unsigned>(subject.length()) + 1);
      made.pointer = subject.chars() + from;
      made.value = subject.text.substr(from);
      return made;
    }
    made.value = script_.text<Char>();
    made.own.reset(new Char[made.value.size() + 1]);
    made.value.copy(made.own.get(), made.value.size());
    made.own[made.value.size()] = Char{};
    made.pointer = made.own.get();
    return made;
  }

  /// A length for a counted text, and how a call with it must end.
  template <class Char>
  std::pair<int, std::string_view> count(const Argument<Char>& text) {
    if (script_.next(8) == 0) {
      return {-1, text.pointer == nullptr ? kInvalid : kMemory};
    }
    if (text.pointer == nullptr) {
      const int length = static_cast<int>(script_.next(2));
      return {length, length == 0 ? kDone : kInvalid};
    }
    return {static_cast<int>(script_.next(static_cast<unsigned>(text.length()) + 1)), kDone};
  }

  template <class Char>
  static std::basic_string<Char> inserted(const std::basic_string<Char>& text, int index,
                                          const std::basic_string<Char>& added) {
    return std::basic_string<Char>(text).insert(
        static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(text.size()))), added);
  }

  template <class Char>
  void insert(Subject<Char>& subject, int index, const Argument<Char>& added) {
    const auto expected = inserted(subject.text, index, added.value);
    require(subject.string->Insert(index, added.pointer) == static_cast<int>(expected.size()), "result of Insert");
    if (!added.value.empty()) {
      subject.becomes(expected);
    }
  }

  template <class Char>
  void append(Subject<Char>& subject, const Argument<Char>& added) {
    const auto [length, outcome] = count(added);
    require(outcomeOf([&, n = length] { subject.string->Append(added.pointer, n); }) == outcome, "end of Append");
    if (outcome == kDone && length > 0) {
      subject.becomes(subject.text + added.value.substr(0, static_cast<std::size_t>(length)));
    }
  }

  template <class Char>
  void rawAccess(Subject<Char>& subject) {
    auto& string = *subject.string;
    const int before = headerOf(subject.chars()).nAllocLength;
    const int n = script_.next(16) == 0 ? -1 : static_cast<int>(script_.next(80));
    Char* const buffer = string.GetBuffer(n);
    const int allocated = headerOf(buffer).nAllocLength;
    require(buffer == subject.chars() && allocated >= std::max(n, before), "GetBuffer");
    if (n > before) {
      subject.residue = false;
    }
    subject.check();
    const int bad = script_.next(2) == 0 ? allocated + 1 : -2;
    require(outcomeOf([&] { string.ReleaseBuffer(bad); }) == kInvalid, "ReleaseBuffer out of range");
    subject.check();

    auto written = script_.text<Char>();
    written.resize(std::min(written.size(), static_cast<std::size_t>(allocated)));
    written.copy(buffer, written.size());
    const int length = static_cast<int>(written.size());
    if (length < allocated) {
      buffer[length] = Char{};
    }
    string.ReleaseBuffer(script_.next(2) == 0 ? -1 : length);
    subject.becomes(written);
    require(zeroFrom(subject.chars(), length), "ReleaseBuffer leaves something behind the text");
  }

  template <class Char>
  void remake(Subject<Char>& subject, Subjects<Char>& subjects) {
    using String = typename Subject<Char>::String;
    const Argument<Char> text = argument(subjects);
    const auto [length, outcome] = count(text);
    std::optional<String> made;
    require(outcomeOf([&, n = length] { made.emplace(text.pointer, n); }) == outcome, "end of a constructor");
    auto expected = text.value.substr(0, static_cast<std::size_t>(std::max(length, 0)));
    if (!made || script_.next(2) == 0) {
      made.emplace(text.pointer);
      expected = text.value;
    }
    subject.string.emplace(std::as_const(*made));
    subject.becomes(expected);
  }

  template <class Char>
  void common(Subjects<Char>& subjects) {
    Subject<Char>& subject = one(subjects);
    switch (script_.next(7)) {
      case 0: {
        const Subject<Char>& other = one(subjects);
        *subject.string = *other.string;
        subject.becomes(std::basic_string<Char>(other.text));
        break;
      }
      case 1: {
        const Argument<Char> added = argument(subjects);
        insert(subject, script_.position(subject.length()), added);
        break;
      }
      case 2:
        append(subject, argument(subjects));
        break;
      case 3:
        rawAccess(subject);
        break;
      case 4:
        subject.string->Empty();
        subject.becomes({});
        require(zeroFrom(subject.chars(), 0), "Empty leaves something");
        break;
      case 5: {
        const Argument<Char> wanted = argument(subjects);
        const int start = script_.position(subject.length());
        const std::size_t found =
            start < 0 ? std::string::npos : subject.text.find(wanted.value, static_cast<std::size_t>(start));
        require(subject.string->Find(wanted.pointer, start) == static_cast<int>(found), "Find");
        break;
      }
      default:
        remake(subject, subjects);
    }
  }

  static int sign(int number) { return (number > 0) - (number < 0); }

  static std::wstring lower(std::wstring text) {
    std::ranges::transform(text, text.begin(), [](wchar_t c) { return c >= L'A' && c <= L'Z' ? c - L'A' + L'a' : c; });
    return text;
  }
  static std::wstring upper(std::wstring text) {
    std::ranges::transform(text, text.begin(), [](wchar_t c) { return c >= L'a' && c <= L'z' ? c - L'a' + L'A' : c; });
    return text;
  }
  static std::wstring cut(const std::wstring& text, long long first, long long count) {
    const auto length = static_cast<long long>(text.size());
    first = std::max(first, 0LL);
    if (count < 0 || first > length) {
      return {};
    }
    return text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
  }

  void replace(Subject<wchar_t>& subject) {
    const Argument<wchar_t> oldText = argument(wide_);
    const Argument<wchar_t> newText = argument(wide_);
    std::wstring expected;
    std::size_t from = 0;
    int hits = 0;
    if (!oldText.value.empty()) {
      for (std::size_t hit; (hit = subject.text.find(oldText.value, from)) != std::wstring::npos; ++hits) {
        expected.append(subject.text, from, hit - from).append(newText.value);
        from = hit + oldText.value.size();
      }
    }
    expected.append(subject.text, from);
    // Sequences of replacements could grow without end.
    if (expected.size() > kMostCharacters) {
      return;
    }
    require(subject.string->Replace(oldText.pointer, newText.pointer) == hits, "result of Replace");
    if (hits != 0) {
      subject.becomes(expected);
    }
  }

  void trim(Subject<wchar_t>& subject) {
    const unsigned kind = script_.next(4);
    const wchar_t character = script_.character<wchar_t>();
    const std::wstring dropped = kind % 2 == 0 ? std::wstring(L" \t") : std::wstring(1, character);
    CSecStr& string = *subject.string;
    if (kind < 2) {
      require(&(kind == 0 ? string.TrimLeft() : string.TrimLeft(character)) == &string, "result of TrimLeft");
      subject.text.erase(0, std::min(subject.text.find_first_not_of(dropped), subject.text.size()));
    } else {
      require(&(kind == 2 ? string.TrimRight() : string.TrimRight(character)) == &string, "result of TrimRight");
      subject.text.erase(subject.text.find_last_not_of(dropped) + 1);
    }
    subject.residue = true;
  }

  void compare(const Subject<wchar_t>& subject) {
    const Subject<wchar_t>& other = one(wide_);
    const CSecStr &a = *subject.string, &b = *other.string;
    const int order = sign(subject.text.compare(other.text));
    require(sign(a.Compare(b)) == order, "Compare");
    require(sign(a.CompareNoCase(b)) == sign(lower(subject.text).compare(lower(other.text))), "CompareNoCase");
    require((a == b) == (order == 0) && (a != b) == (order != 0) && (a < b) == (order < 0), "operators");
    require((a == b.GetString()) == (order == 0) && (a.GetString() != b) == (order != 0), "operators with pointers");
  }

  void characters(Subject<wchar_t>& subject) {
    const int index = script_.position(subject.length());
    const wchar_t character = script_.character<wchar_t>();
    const bool in = index >= 0 && index < subject.length();
    wchar_t got = 0;
    const bool readable = in || index == subject.length();
    require(outcomeOf([&] { got = subject.string->GetAt(index); }) == (readable ? kDone : kArgument), "GetAt");
    require(got == (in ? subject.text[static_cast<std::size_t>(index)] : 0), "result of GetAt");
    require(outcomeOf([&] { subject.string->SetAt(index, character); }) == (in ? kDone : kArgument), "SetAt");
    if (in) {
      subject.text[static_cast<std::size_t>(index)] = character;
    }
    require(subject.string->ReverseFind(character) == static_cast<int>(subject.text.rfind(character)), "ReverseFind");
    const std::size_t found =
        index < 0 ? std::wstring::npos : subject.text.find(character, static_cast<std::size_t>(index));
    require(subject.string->Find(character, index) == static_cast<int>(found), "Find");
  }

  void part(Subject<wchar_t>& target, const Subject<wchar_t>& source) {
    const int first = script_.position(source.length());
    const int many = script_.position(source.length());
    const int length = source.length();
    switch (script_.next(4)) {
      case 0:
        target.string.emplace(source.string->Mid(first, many));
        target.becomes(cut(source.text, first, many));
        break;
      case 1:
        target.string.emplace(source.string->Mid(first));
        target.becomes(cut(source.text, first, INT_MAX));
        break;
      case 2:
        target.string.emplace(source.string->Left(many));
        target.becomes(cut(source.text, 0, std::max(many, 0)));
        break;
      default:
        target.string.emplace(source.string->Right(many));
        target.becomes(cut(source.text, length - std::clamp(many, 0, length), length));
    }
  }

  void join(Subject<wchar_t>& target, const Subject<wchar_t>& left) {
    const Argument<wchar_t> right = argument(wide_);
    switch (script_.next(3)) {
      case 0:
        *target.string = *left.string + right.pointer;
        target.becomes(left.text + right.value);
        break;
      case 1:
        *target.string = right.pointer + *left.string;
        target.becomes(right.value + left.text);
        break;
      default:
        *target.string = *left.string + *target.string;
        target.becomes(left.text + target.text);
    }
  }

  void format(Subject<wchar_t>& subject) {
    const Argument<wchar_t> first = argument(wide_);
    const Argument<wchar_t> second = argument(wide_);
    const int number = static_cast<int>(script_.next(256)) - 128;
    const unsigned most = script_.next(8);
    const auto shown = [](const Argument<wchar_t>& text) { return text.pointer == nullptr ? L"(null)" : text.value; };
    const std::wstring expected =
        shown(first) + L":nar:" + std::to_wstring(number) + L"%" + second.value.substr(0, most);
    subject.string->Format(L"%s:%.3S:%d%%%.*s", first.pointer, "narrow", number, static_cast<int>(most),
                           second.pointer == nullptr ? L"" : second.pointer);
    subject.becomes(expected);
  }

  void setString(Subject<wchar_t>& subject) {
    const Argument<wchar_t> text = argument(wide_);
    const auto [length, outcome] = count(text);
    require(outcomeOf([&, n = length] { subject.string->SetString(text.pointer, n); }) == outcome, "end of SetString");
    if (outcome == kDone) {
      subject.becomes(text.value.substr(0, static_cast<std::size_t>(length)));
    }
  }

  void editWide(unsigned choice) {
    Subject<wchar_t>& subject = one(wide_);
    CSecStr& string = *subject.string;
    switch (choice) {
      case 0:
      case 1: {
        const Argument<wchar_t> text = argument(wide_);
        string = text.pointer;
        subject.becomes(text.value);
        break;
      }
      case 2: {
        const Argument<wchar_t> text = argument(wide_);
        string += text.pointer;
        subject.becomes(subject.text + text.value);
        break;
      }
      case 3: {
        const Subject<wchar_t>& other = one(wide_);
        string += *other.string;
        subject.becomes(subject.text + other.text);
        break;
      }
      case 4:
      case 5: {
        const wchar_t added = script_.character<wchar_t>();
        string += added;
        subject.becomes(subject.text + added);
        break;
      }
      case 6:
        string += L'\0';
        require(string.GetLength() == subject.length() + 1 && string.Compare(subject.text.c_str()) == 0,
                "adding a NUL");
        string.ReleaseBuffer(-1);
        subject.becomes(std::wstring(subject.text));
        break;
      case 7: {
        const int index = script_.position(subject.length());
        const wchar_t added = script_.next(8) == 0 ? L'\0' : script_.character<wchar_t>();
        const auto expected = inserted(subject.text, index, std::wstring(added != 0 ? 1 : 0, added));
        require(string.Insert(index, added) == static_cast<int>(expected.size()), "result of Insert");
        subject.residue = subject.residue && added == 0;
        subject.text = expected;
        break;
      }
      case 8: {
        const Argument<wchar_t> text = argument(wide_);
        string.Append(text.pointer);
        subject.residue = subject.residue && text.value.empty();
        subject.text += text.value;
        break;
      }
      case 9:
      case 10:
        setString(subject);
        break;
      case 11:
      case 12:
      case 13:
        replace(subject);
        break;
      case 14: {
        const wchar_t dropped = script_.character<wchar_t>();
        require(string.Remove(dropped) == static_cast<int>(std::erase(subject.text, dropped)), "result of Remove");
        subject.residue = true;
        break;
      }
      case 15:
        string.MakeUpper();
        subject.text = upper(subject.text);
        break;
      case 16:
        string.MakeLower();
        subject.text = lower(subject.text);
        break;
      case 17:
        trim(subject);
        break;
      case 18:
      case 19:
        part(one(wide_), Subject<wchar_t>(subject));
        break;
      case 20:
      case 21:
        join(one(wide_), subject);
        break;
      case 22:
        format(subject);
        break;
      case 23:
        compare(subject);
        break;
      default:
        characters(subject);
    }
  }

  // ASCII only converts to itself on all machines.
  void convert() {
    Subject<wchar_t>& wide = one(wide_);
    Subject<char>& narrow = one(narrow_);
    const auto ascii = [](auto c) { return c > 0 && c < 0x80; };
    if (script_.next(2) == 0 && std::ranges::all_of(narrow.text, ascii)) {
      *wide.string =
          script_.next(2) == 0 ? CSecStr(narrow.chars(), narrow.length()) : CSecStr(narrow.string->GetBuffer());
      if (script_.next(2) == 0) {
        *wide.string = narrow.chars();
      }
      wide.becomes({narrow.text.begin(), narrow.text.end()});
    } else if (std::ranges::all_of(wide.text, ascii)) {
      *narrow.string = wide.string->GetBuffer();
      if (script_.next(2) == 0) {
        narrow.string.emplace(*wide.string);
      }
      narrow.becomes({wide.text.begin(), wide.text.end()});
    } else {
      // What does not convert to as many bytes: the length is right, and nothing else is shown.
      narrow.string.emplace(*wide.string);
      narrow.becomes({narrow.chars(), static_cast<std::size_t>(wide.length())});
      require(narrow.text.find(static_cast<char>(kFill)) == std::string::npos, "bytes that were never written");
      narrow.string->Empty();
      narrow.becomes({});
    }
  }

  Script script_;
  const WatchedManager& memory_;
  Subjects<wchar_t> wide_;
  Subjects<char> narrow_;
};

struct Result {
  std::string mismatch;  ///< empty: all agrees
  std::size_t operations = 0;
};

/// Does the operations that `bytes` tell.
inline Result run(std::span<const std::uint8_t> bytes) {
  Result result;
  WatchedManager memory;
  try {
    require(outcomeOf([&] { result.operations = Run(bytes, memory)(); }) == kDone, "an exception");
    require(memory.open() == 0, "a buffer was not given back");
    require(memory.dirty() == 0, "a buffer was given back with something in it at the end");
  } catch (const Mismatch& mismatch) {
    result.mismatch = mismatch.message;
  }
  return result;
}

}  // namespace securetext::model

#endif
