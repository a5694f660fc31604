// Secret text beside plain strings that are wiped by hand, and a crypto library's secure vector. Logging is off.
#include <vlhostkit/vlhostkit.h>
#include <vlhostkit/wipe.h>

#include <cwchar>
#include <list>
#include <string>

#include "row.h"

#ifdef VL_PEER_BOTAN
#include <botan/secmem.h>
#endif

namespace {

using benchmark::DoNotOptimize;

constexpr const wchar_t* kSecret = L"correct horse battery staple, 42 characters";

void wipe(std::wstring& text) {
  VL::Framework::wipe(text.data(), text.capacity() * sizeof(wchar_t));
}

// The same discipline: private copy, wipe, refill, wipe of the copy.
void assign(std::wstring& text, std::wstring copy) {
  wipe(text);
  text = copy;
  wipe(copy);
}

std::wstring everySecondCharacterHits(int length) {
  std::wstring text(static_cast<std::size_t>(length), L'a');
  for (std::size_t i = 0; i < text.size(); i += 2) {
    text[i] = L'-';
  }
  return text;
}

void replaceRows(int length) {
  const std::string subject = "replace, every 2nd of " + std::to_string(length);
  const std::wstring text = everySecondCharacterHits(length);
  row(subject + "|ours", [secret = CSecStr(text.c_str())] {
    CSecStr edited(secret);
    DoNotOptimize(edited.Replace(L"-", L"+-+"));
  });
  row(subject + "|std::wstring, wiped", [text] {
    std::wstring source(text);
    std::wstring edited;
    edited.reserve(source.size() * 2 + 1);
    std::size_t from = 0;
    for (std::size_t hit = source.find(L'-'); hit != std::wstring::npos; hit = source.find(L'-', from)) {
      edited.append(source, from, hit - from).append(L"+-+");
      from = hit + 1;
    }
    edited.append(source, from);
    DoNotOptimize(edited);
    wipe(source);
    wipe(edited);
  });
}

// An assignment and eight characters.
void appendRows(int length) {
  const std::string subject = "assign, append 8 to " + std::to_string(length);
  const std::wstring start(static_cast<std::size_t>(length), L'a');
  row(subject + "|ours", [start, text = CSecStr()]() mutable {
    text = start.c_str();
    for (int i = 0; i < 8; ++i) {
      text += L'b';
    }
  });
  row(subject + "|std::wstring, copied, wiped", [start, text = std::wstring()]() mutable {
    assign(text, start);
    for (int i = 0; i < 8; ++i) {
      std::wstring copy(text);
      wipe(text);
      text.reserve(copy.size() + 1);
      text = copy;
      text += L'b';
      wipe(copy);
    }
  });
}

[[maybe_unused]] const bool rows = [] {
  row("construct and destroy|ours", [] { DoNotOptimize(CSecStr(kSecret)); });
  row("construct and destroy|std::wstring, wiped", [] {
    std::wstring text(kSecret);
    DoNotOptimize(text);
    wipe(text);
  });
  row("assign|ours", [text = CSecStr()]() mutable { text = kSecret; });
  row("assign|std::wstring, copied, wiped", [text = std::wstring()]() mutable { assign(text, kSecret); });
  row("format a secret|ours", [text = CSecStr()]() mutable { text.Format(L"%s-%d", kSecret, 4711); });
  row("format a secret|swprintf, wiped", [text = std::wstring()]() mutable {
    std::wstring work(64, L'\0');
    work.resize(static_cast<std::size_t>(std::swprintf(work.data(), work.size(), L"%ls-%d", kSecret, 4711)));
    wipe(text);
    text = work;
    wipe(work);
  });
  replaceRows(10'000);
  replaceRows(100'000);
  appendRows(100);
  appendRows(10'000);
  row("list of 10 secrets|ours", [] {
    CSecStrList texts;
    for (int i = 0; i < 10; ++i) {
      texts.AddTail(kSecret);
    }
  });
  row("list of 10 secrets|std::list, copied, wiped", [] {
    std::list<std::wstring> texts;
    for (int i = 0; i < 10; ++i) {
      assign(texts.emplace_back(), kSecret);
    }
    for (std::wstring& text : texts) {
      wipe(text);
    }
  });
#ifdef VL_PEER_BOTAN
  static const std::size_t length = std::wcslen(kSecret) + 1;
  using Secure = Botan::secure_vector<wchar_t>;
  row("construct and destroy|Botan secure_vector", [] { DoNotOptimize(Secure(kSecret, kSecret + length)); });
  row("assign|~Botan secure_vector, without a copy", [text = Secure()]() mutable {
    text.assign(kSecret, kSecret + length);
    DoNotOptimize(text);
  });
#endif
  return true;
}();

}  // namespace
