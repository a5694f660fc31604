// Secret text beside plain strings that are wiped by hand, and a crypto library's secure vector. Logging is off.
#include <benchmark/benchmark.h>
#include <vlhostkit/vlhostkit.h>
#include <vlhostkit/wipe.h>

#include <cwchar>
#include <list>
#include <string>

#ifdef VL_PEER_BOTAN
#include <botan/secmem.h>
#endif

namespace {

constexpr const wchar_t* kSecret = L"correct horse battery staple, 42 characters";

void wipe(std::wstring& text) {
  VL::Framework::wipe(text.data(), text.capacity() * sizeof(wchar_t));
}

// A buffer that happens to cross the border of a page costs twice the time. So every repetition has other buffers: some
// stay behind from each.
template <class String>
void moveOn() {
  static std::list<String> kept;
  kept.emplace_back(kSecret);
  kept.emplace_back(kSecret);
}

void construct(benchmark::State& state) {
  moveOn<CSecStr>();
  for (auto _ : state) {
    CSecStr text(kSecret);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(construct)->Name("construct and destroy|ours");

void constructPlain(benchmark::State& state) {
  moveOn<std::wstring>();
  for (auto _ : state) {
    std::wstring text(kSecret);
    benchmark::DoNotOptimize(text);
    wipe(text);
  }
}
BENCHMARK(constructPlain)->Name("construct and destroy|std::wstring, wiped");

void assign(benchmark::State& state) {
  moveOn<CSecStr>();
  CSecStr text(kSecret);
  for (auto _ : state) {
    text = kSecret;
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assign)->Name("assign|ours");

// The same discipline: private copy, wipe, refill, wipe of the copy.
void assignPlain(benchmark::State& state) {
  moveOn<std::wstring>();
  std::wstring text(kSecret);
  for (auto _ : state) {
    std::wstring copy(kSecret);
    wipe(text);
    text = copy;
    wipe(copy);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assignPlain)->Name("assign|std::wstring, copied, wiped");

void format(benchmark::State& state) {
  moveOn<CSecStr>();
  CSecStr text;
  for (auto _ : state) {
    text.Format(L"%s-%d", kSecret, 4711);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(format)->Name("format a secret|ours");

void formatPlain(benchmark::State& state) {
  moveOn<std::wstring>();
  std::wstring text;
  for (auto _ : state) {
    std::wstring work(64, L'\0');
    work.resize(static_cast<std::size_t>(std::swprintf(work.data(), work.size(), L"%ls-%d", kSecret, 4711)));
    wipe(text);
    text = work;
    wipe(work);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(formatPlain)->Name("format a secret|swprintf, wiped");

std::wstring everySecondCharacterHits(std::size_t length) {
  std::wstring text(length, L'a');
  for (std::size_t i = 0; i < length; i += 2) {
    text[i] = L'-';
  }
  return text;
}

void replace(benchmark::State& state) {
  const CSecStr text(everySecondCharacterHits(static_cast<std::size_t>(state.range(0))).c_str());
  for (auto _ : state) {
    CSecStr edited(text);
    benchmark::DoNotOptimize(edited.Replace(L"-", L"+-+"));
  }
}
BENCHMARK(replace)->Name("replace, every 2nd of|ours")->Arg(10'000)->Arg(100'000);

void replacePlain(benchmark::State& state) {
  const std::wstring text = everySecondCharacterHits(static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    std::wstring source(text);
    std::wstring edited;
    edited.reserve(source.size() * 2 + 1);
    std::size_t from = 0;
    for (std::size_t hit = source.find(L'-'); hit != std::wstring::npos; hit = source.find(L'-', from)) {
      edited.append(source, from, hit - from).append(L"+-+");
      from = hit + 1;
    }
    edited.append(source, from);
    benchmark::DoNotOptimize(edited);
    wipe(source);
    wipe(edited);
  }
}
BENCHMARK(replacePlain)->Name("replace, every 2nd of|std::wstring, wiped")->Arg(10'000)->Arg(100'000);

// One character added to a text of the given length, by `append`.
template <class String>
void appendCharacter(benchmark::State& state, String& text, void (*append)(String&)) {
  const std::wstring start(static_cast<std::size_t>(state.range(0)), L'a');
  text = start.c_str();
  int added = 0;
  for (auto _ : state) {
    append(text);
    if (++added == 8) {
      state.PauseTiming();
      text = start.c_str();
      added = 0;
      state.ResumeTiming();
    }
  }
}
void append(benchmark::State& state) {
  CSecStr text;
  text.GetBuffer(static_cast<int>(state.range(0)) * 2 + 16);
  appendCharacter<CSecStr>(state, text, [](CSecStr& to) { to += L'b'; });
}
BENCHMARK(append)->Name("append a character to|ours")->Arg(100)->Arg(1000)->Arg(10'000);
void appendPlain(benchmark::State& state) {
  std::wstring text;
  text.reserve(static_cast<std::size_t>(state.range(0)) * 2 + 16);
  appendCharacter<std::wstring>(state, text, [](std::wstring& to) {
    std::wstring copy(to);
    wipe(to);
    to = copy;
    to += L'b';
    wipe(copy);
  });
}
BENCHMARK(appendPlain)->Name("append a character to|std::wstring, copied, wiped")->Arg(100)->Arg(1000)->Arg(10'000);

void list(benchmark::State& state) {
  moveOn<CSecStr>();
  for (auto _ : state) {
    CSecStrList texts;
    for (int i = 0; i < 10; ++i) {
      texts.AddTail(kSecret);
    }
    benchmark::DoNotOptimize(texts.GetCount());
  }
}
BENCHMARK(list)->Name("list of 10 secrets|ours");

void listPlain(benchmark::State& state) {
  moveOn<std::wstring>();
  for (auto _ : state) {
    std::list<std::wstring> texts;
    for (int i = 0; i < 10; ++i) {
      std::wstring copy(kSecret);
      texts.push_back(copy);
      wipe(copy);
    }
    benchmark::DoNotOptimize(texts.size());
    for (std::wstring& text : texts) {
      wipe(text);
    }
  }
}
BENCHMARK(listPlain)->Name("list of 10 secrets|std::list, wiped");

#ifdef VL_PEER_BOTAN
void constructSecureVector(benchmark::State& state) {
  const std::size_t length = std::wcslen(kSecret) + 1;
  for (auto _ : state) {
    Botan::secure_vector<wchar_t> text(kSecret, kSecret + length);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(constructSecureVector)->Name("construct and destroy|Botan secure_vector");

void assignSecureVector(benchmark::State& state) {
  const std::size_t length = std::wcslen(kSecret) + 1;
  Botan::secure_vector<wchar_t> text(kSecret, kSecret + length);
  for (auto _ : state) {
    text.assign(kSecret, kSecret + length);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assignSecureVector)->Name("assign|~Botan secure_vector, without a copy");
#endif

}  // namespace
