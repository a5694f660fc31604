/// Secure strings against plain standard strings: a sequence of operations, read from bytes, is done to both, and after
/// each they must agree. For random bytes and for a fuzzer.
#ifndef SECURETEXT_MODEL_H
#define SECURETEXT_MODEL_H

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include <vlhostkit/securestring.h>

#include "subject.h"

namespace securetext::model {

inline constexpr std::size_t kMostCharacters = 3000;

class Run {
 public:
  Run(std::span<const std::uint8_t> bytes, const WatchedManager& memory) : rest_(bytes), memory_(memory) {}

  /// Returns the number of operations.
  std::size_t operator()() {
    std::size_t operations = 0;
    for (; !rest_.empty(); ++operations) {
      const unsigned choice = next(40);
      choice < 26 ? edit() : choice < 32 ? common(wide_) : choice < 38 ? common(narrow_) : convert();
      std::ranges::for_each(wide_, checkAndLimit<wchar_t>);
      std::ranges::for_each(narrow_, checkAndLimit<char>);
      require(memory_.dirty() == 0, "a buffer was given back with something in it");
    }
    return operations;
  }

 private:
  template <class Char>
  using Subjects = std::array<Subject<Char>, 3>;

  // Texts that double again and again are cut back.
  template <class Char>
  static void checkAndLimit(Subject<Char>& subject) {
    subject.check();
    if (subject.text.size() > kMostCharacters) {
      subject.string->ReleaseBuffer(3);
      subject.becomes(subject.text.substr(0, 3));
    }
  }

  // Zeros behind the end of the bytes.
  unsigned next(std::size_t limit) {
    if (rest_.empty()) {
      return 0;
    }
    const unsigned byte = rest_.front();
    rest_ = rest_.subspan(1);
    return static_cast<unsigned>(byte % limit);
  }
  // An index or count for a text of `length`: in it, at its edges, or far out.
  int position(std::size_t length) {
    static constexpr int kFar[] = {INT_MIN, -1, INT_MAX, 1000};
    const unsigned choice = next(32);
    return choice < 4 ? kFar[choice] : static_cast<int>(next(length + 3)) - 1;
  }
  template <class Char>
  Char character() {
    static constexpr Char kCharacters[] = {'a', 'a', 'b',  'B', 'A',
                                           'z', ' ', '\t', '-', static_cast<Char>(sizeof(Char) == 1 ? 0xe9 : 0x4e2d)};
    return kCharacters[next(std::size(kCharacters))];
  }
  template <class Char>
  std::basic_string<Char> text() {
    std::basic_string<Char> made(next(6) == 0 ? next(50) : next(5), Char{});
    std::ranges::generate(made, [this] { return character<Char>(); });
    return made;
  }
  template <class Char>
  Subject<Char>& one(Subjects<Char>& subjects) {
    return subjects[next(subjects.size())];
  }

  template <class Char>
  Argument<Char> argument(Subjects<Char>& subjects) {
    Argument<Char> made;
    const unsigned kind = next(8);
    if (kind == 0) {
      made.count = next(8) == 0 ? -1 : static_cast<int>(next(2));
      made.outcome = made.count == 0 ? kDone : kInvalid;
      return made;
    }
    if (kind < 4) {
      const Subject<Char>& subject = one(subjects);
      const unsigned from = next(subject.text.size() + 1);
      made.pointer = subject.chars() + from;
      made.value = subject.text.substr(from);
    } else {
      made.value = text<Char>();
      made.own.reset(new Char[made.value.size() + 1]);
      std::copy_n(made.value.c_str(), made.value.size() + 1, made.own.get());
      made.pointer = made.own.get();
    }
    made.count = next(8) == 0 ? -1 : static_cast<int>(next(made.value.size() + 1));
    made.outcome = made.count < 0 ? kMemory : kDone;
    return made;
  }

  template <class Text>
  static Text inserted(Text text, int index, const Text& added) {
    return text.insert(static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(text.size()))), added);
  }

  template <class Char>
  void rawAccess(Subject<Char>& subject) {
    auto& string = *subject.string;
    const int before = headerOf(subject.chars()).nAllocLength;
    const int n = next(16) == 0 ? -1 : static_cast<int>(next(80));
    Char* const buffer = string.GetBuffer(n);
    const int allocated = headerOf(buffer).nAllocLength;
    require(buffer == subject.chars() && allocated >= std::max(n, before), "GetBuffer");
    subject.residue = subject.residue && n <= before;
    subject.check();
    const int bad = next(2) == 0 ? allocated + 1 : -2;
    require(outcomeOf([&] { string.ReleaseBuffer(bad); }) == kInvalid, "ReleaseBuffer out of range");
    subject.check();

    auto written = text<Char>();
    const auto most = static_cast<std::size_t>(allocated);
    written.resize(next(4) == 0 ? most : std::min(written.size(), most), 'x');
    const int length = static_cast<int>(written.size());
    std::copy_n(written.c_str(), std::min(length + 1, allocated), buffer);
    string.ReleaseBuffer(next(2) == 0 ? -1 : length);
    subject.becomes(written);
    require(zeroFrom(subject.chars(), length), "ReleaseBuffer leaves something behind the text");
  }

  // What both widths have.
  template <class Char>
  void common(Subjects<Char>& subjects) {
    Subject<Char>& subject = one(subjects);
    const Subject<Char>& other = one(subjects);
    auto& string = *subject.string;
    const auto before = subject.text;
    const Argument<Char> added = argument(subjects);
    const int index = position(before.size());
    switch (next(7)) {
      case 0:
        string = *other.string;
        return subject.becomes(std::basic_string<Char>(other.text));
      case 1: {
        const auto expected = inserted(before, index, added.value);
        require(string.Insert(index, added.pointer) == static_cast<int>(expected.size()), "result of Insert");
        return subject.becomes(expected);
      }
      case 2: {
        const auto expected = before + added.counted();  // nothing of a count that is refused
        require(outcomeOf([&] { string.Append(added.pointer, added.count); }) == added.outcome, "end of Append");
        return subject.becomes(expected);
      }
      case 3:
        return rawAccess(subject);
      case 4:
        string.Empty();
        subject.becomes({});
        return require(zeroFrom(subject.chars(), 0), "Empty leaves something");
      case 5: {
        const std::size_t found = index < 0 ? before.npos : before.find(added.value, static_cast<std::size_t>(index));
        return require(string.Find(added.pointer, index) == static_cast<int>(found), "Find");
      }
      default: {
        std::optional<typename Subject<Char>::String> made;
        require(outcomeOf([&] { made.emplace(added.pointer, added.count); }) == added.outcome, "end of a constructor");
        const bool whole = !made || next(2) == 0;
        if (whole) {
          made.emplace(added.pointer);
        }
        subject.string.emplace(std::as_const(*made));
        return subject.becomes(whole ? added.value : added.counted());
      }
    }
  }

  static std::wstring cut(const std::wstring& text, long long first, long long count) {
    first = std::max(first, 0LL);
    return count < 0 || first > static_cast<long long>(text.size())
               ? std::wstring()
               : text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
  }

  static void replace(Subject<wchar_t>& subject, const Argument<wchar_t>& oldText, const Argument<wchar_t>& newText) {
    std::wstring expected = subject.text;
    int hits = 0;
    for (std::size_t at = 0; !oldText.value.empty() && (at = expected.find(oldText.value, at)) != std::wstring::npos;
         ++hits) {
      expected.replace(at, oldText.value.size(), newText.value);
      at += newText.value.size();
    }
    // Sequences of replacements could grow without end.
    if (expected.size() <= kMostCharacters) {
      require(subject.string->Replace(oldText.pointer, newText.pointer) == hits, "result of Replace");
      subject.becomes(expected);
    }
  }

  // What only the wide one has.
  void edit() {
    Subject<wchar_t>& subject = one(wide_);
    Subject<wchar_t>& other = one(wide_);
    CSecStr& string = *subject.string;
    const std::wstring before = subject.text;
    const std::wstring ofOther = other.text;
    const int length = subject.length();
    const int index = position(before.size());
    const int many = position(before.size());
    const auto c = character<wchar_t>();
    const Argument<wchar_t> a = argument(wide_);
    const Argument<wchar_t> b = argument(wide_);
    switch (next(17)) {
      case 0:
        string = a.pointer;
        return subject.becomes(a.value);
      case 1:
        string += a.pointer;
        return subject.becomes(before + a.value);
      case 2:
        string += *other.string;
        return subject.becomes(before + ofOther);
      case 3:
        string += c;
        return subject.becomes(before + c);
      case 4:
        require(string.Insert(index, c) == length + 1, "result of Insert");
        return subject.becomes(inserted(before, index, std::wstring(1, c)));
      case 5:
        string.Append(a.pointer);
        return subject.becomes(before + a.value);
      case 6:
        require(outcomeOf([&] { string.SetString(a.pointer, a.count); }) == a.outcome, "end of SetString");
        return a.outcome == kDone ? subject.becomes(a.counted()) : void();
      case 7:
      case 8:
        return replace(subject, a, b);
      case 9:
        *other.string = string.Mid(index, many);
        return other.becomes(cut(before, index, many));
      case 10:
        *other.string = string.Mid(index);
        return other.becomes(cut(before, index, INT_MAX));
      case 11:
        *other.string = string.Left(many);
        return other.becomes(cut(before, 0, std::max(many, 0)));
      case 12:
        *other.string = string.Right(many);
        return other.becomes(cut(before, length - std::clamp(many, 0, length), length));
      case 13:
        *other.string = string + a.pointer;
        return other.becomes(before + a.value);
      case 14:
        *other.string = a.pointer + string;
        return other.becomes(a.value + before);
      case 15:
        *other.string = string + *other.string;
        return other.becomes(before + ofOther);
      default:
        require(string.Remove(c) == static_cast<int>(std::erase(subject.text, c)), "result of Remove");
        subject.residue = true;
        return;
    }
  }

  // ASCII only converts to itself on all machines.
  void convert() {
    Subject<wchar_t>& wide = one(wide_);
    Subject<char>& narrow = one(narrow_);
    const auto ascii = [](auto c) { return c > 0 && c < 0x80; };
    const unsigned way = next(5);
    if (way < 3 && std::ranges::all_of(narrow.text, ascii)) {
      way == 0   ? wide.string.emplace(narrow.chars(), narrow.length())
      : way == 1 ? wide.string.emplace(narrow.string->GetBuffer())
                 : * wide.string = narrow.chars();
      wide.becomes({narrow.text.begin(), narrow.text.end()});
    } else if (way >= 3 && std::ranges::all_of(wide.text, ascii)) {
      way == 3 ? * narrow.string = wide.string->GetBuffer() : narrow.string.emplace(*wide.string);
      narrow.becomes({wide.text.begin(), wide.text.end()});
    }
  }

  std::span<const std::uint8_t> rest_;
  const WatchedManager& memory_;
  Subjects<wchar_t> wide_;
  Subjects<char> narrow_;
};

struct Result {
  std::size_t operations = 0;
  std::string mismatch;  ///< empty if there is none
};

inline Result run(std::span<const std::uint8_t> bytes) {
  WatchedManager memory;
  Result result;
  try {
    result.operations = Run(bytes, memory)();
    require(memory.clean(), "memory at the end");
  } catch (const Mismatch& mismatch) {
    result.mismatch = mismatch.what;
  }
  return result;
}

}  // namespace securetext::model

#endif
