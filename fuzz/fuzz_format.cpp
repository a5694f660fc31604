// Formats: secret strings and the platform print what a small writer and the C library's numbers say, the log channel
// what its few conversions say; what is no format is refused, or ends the formatting. The arguments stand in a fixed
// order; the input gives values, how each is written, and a broken end.
#include <vlhostkit/securestring.h>

#include <bit>
#include <cwchar>

#include <txlogu/txlogu.h>
#include <vlafx/exceptions.h>

#include "fuzz.h"

using Texts = std::wstring[];
using Narrow = const char*[];

// A conversion up to its size, with width and precision in it or from the arguments.
struct Field {
  Field(fuzz::Input& in, bool stars) {
    const unsigned switches = in.byte();
    // NOLINTNEXTLINE(bugprone-signed-char-misuse,cert-str34-c): numbers, of either sign
    width = static_cast<std::int8_t>(in.byte()), most = static_cast<std::int8_t>(in.byte());
    for (unsigned i = 0; i < 5; ++i) start.append(switches >> i & 1, L"-+ 0#"[i]);
    left = (switches & 1) != 0 || (stars && width < 0);
    zero = (switches & 8) != 0 && !left;
    if (stars || width > 0)
      start += stars ? L"*.*" : std::to_wstring(width), size = static_cast<unsigned>(std::abs(width));
    if (!stars && most >= 0) start += L'.' + std::to_wstring(most);
  }
  std::wstring with(std::wstring text) const {
    text.resize(std::min(text.size(), static_cast<std::size_t>(most < 0 ? -1 : most)));
    return text.insert(left ? text.size() : 0, size - std::min(size, text.size()), zero ? L'0' : L' ');
  }
  std::wstring start = L"%";
  int width, most;
  std::size_t size = 0;
  bool left, zero;
};

static void compare(const wchar_t* format, const std::wstring& expected, bool valid, auto... arguments) {
  const int result = valid ? static_cast<int>(expected.size()) : -1;
  const fuzz::Block<wchar_t> exact(expected.size() + 1), small(expected.size());
  CHECK(swprintf_s(exact.data(), exact.size(), format, arguments...) == result);
  CHECK(valid ? exact.data() == expected : *exact.data() == L'\0');
  CHECK(swprintf_s(small.data(), small.size(), format, arguments...) == -1);
  CHECK(std::all_of(small.data(), small.data() + small.size(), [](wchar_t c) { return c == L'\0'; }));
  CSecStr secret(L"before");
  try {
    secret.Format(format, arguments...);
    CHECK(valid && secret.GetString() == expected);
  } catch (COleException* refused) {
    refused->Delete();
    CHECK(!valid && secret.GetString() == std::wstring(L"before"));
  }
}

template <class Value>
static std::wstring byLibrary(const std::wstring& format, Value value) {
  wchar_t shown[1024];
  CHECK(std::swprintf(shown, std::size(shown), format.c_str(), value) >= 0);
  return shown;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static std::wstring logged;
  txlogSetSink([](void*, const txlogRecord* record) { logged = record->text; }, nullptr, TXLOG_ALL_LEVELS);
  fuzz::Input in(data, size);
  const Field numbers(in, false), texts(in, true), small(in, false);
  const std::size_t kind = in.byte(), choice = in.byte();
  std::uint64_t bits = 0;
  for (const std::uint8_t byte : in.bytes()) bits = bits << 8 | byte;
  const auto number = static_cast<int>(bits);
  const auto real = std::bit_cast<double>(bits);
  const std::wstring given = fuzz::text<wchar_t>(in.line()), shown = given.empty() ? L"(null)" : given;
  const wchar_t* const wide = given.empty() ? nullptr : given.c_str();
  const char* const narrow = Narrow{"", nullptr, "n\xE2\x82\xAC", "a\xFF\xE2\x82z\xC3"}[choice % 4];
  const std::wstring narrowShown = Texts{L"", L"(null)", L"n\x20ac", L"a\xFFFD\xFFFDz\xFFFD"}[choice % 4];
  const wchar_t integer = L"diuxXo"[choice % 6], floating = L"eEfFgGaA"[choice % 8];
  std::wstring plain, plainShown, end;
  for (const wchar_t byte : fuzz::text<wchar_t>(in.line()))
    plain.append(byte == L'%' ? 2 : 1, byte), plainShown += byte;
  // What is no conversion; the rest would be some.
  for (const std::uint8_t byte : in.rest()) end += L"-+ #0123456789.hlwLjztI"[byte % 23];
  if (!end.empty()) end = L'%' + end + Texts{L"", L"y%d", L"n%s", L"%%S"}[choice / 8 % 4];

  const std::wstring first = Texts{L"", L"l", L"I32", L"h", L"hh"}[kind % 5] + integer;
  const std::wstring theirs = Texts{L"", L"", L"", L"h", L"hh"}[kind % 5] + integer;
  const std::wstring last = Texts{L"ll", L"I64", L"I", L"j", L"z", L"t"}[kind % 6] + integer;
  const std::wstring digits = numbers.most < 0 && (floating | 32) == L'a' ? L".13" : L"";
  const std::wstring& start = numbers.start;
  compare((plain + start + first + texts.start + Texts{L"s", L"ls", L"ws", L"lS", L"wS"}[kind % 5] + small.start +
           Texts{L"S", L"hs", L"hS", L"hhs"}[kind % 4] + plain + start + last + start + floating + end)
              .c_str(),
          plainShown + byLibrary(start + theirs, number) + texts.with(shown) + small.with(narrowShown) + plainShown +
              byLibrary(start + L"ll" + integer, bits) + byLibrary(start + digits + floating, real),
          end.empty(), number, texts.width, texts.most, wide, narrow, bits, real);
  txlogLog(L"", 0, (plain + (kind % 2 != 0 ? L"%d%x%s%S%p" : L"%d%x%ls%S%p") + end).c_str(), number, number, wide,
           narrow, data);
  const std::wstring address = byLibrary(L"%016lX", reinterpret_cast<std::uintptr_t>(data));
  plainShown += byLibrary(L"%d", number) + byLibrary(L"%x", number) + shown + narrowShown + address + end;
  CHECK(logged == plainShown.substr(0, TXLOG_MAX_TEXT));
  return 0;
}
