// Secret text beside plain strings that are wiped by hand, and a crypto library's secure vector. Logging is off.
#include <benchmark/benchmark.h>
#include <vlhostkit/vlhostkit.h>
#include <vlhostkit/wipe.h>

#include <cwchar>
#include <string>

#ifdef VL_PEER_BOTAN
#include <botan/secmem.h>
#endif

namespace {

constexpr const wchar_t* kSecret = L"correct horse battery staple, 42 characters";

void wipe(std::wstring& text) {
  VL::Framework::wipe(text.data(), text.capacity() * sizeof(wchar_t));
}

void construct(benchmark::State& state) {
  for (auto _ : state) {
    CSecStr text(kSecret);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(construct);

void constructPlain(benchmark::State& state) {
  for (auto _ : state) {
    std::wstring text(kSecret);
    benchmark::DoNotOptimize(text);
    wipe(text);
  }
}
BENCHMARK(constructPlain);

void assign(benchmark::State& state) {
  CSecStr text(kSecret);
  for (auto _ : state) {
    text = kSecret;
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assign);

// The same discipline: private copy, wipe, refill, wipe of the copy.
void assignPlain(benchmark::State& state) {
  std::wstring text(kSecret);
  for (auto _ : state) {
    std::wstring copy(kSecret);
    wipe(text);
    text = copy;
    wipe(copy);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assignPlain);

void format(benchmark::State& state) {
  CSecStr text;
  for (auto _ : state) {
    text.Format(L"%s-%d", kSecret, 4711);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(format);

void formatPlain(benchmark::State& state) {
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
BENCHMARK(formatPlain);

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
  state.SetComplexityN(state.range(0));
}
BENCHMARK(replace)->Arg(10'000)->Arg(100'000)->Complexity(benchmark::oN);

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
BENCHMARK(replacePlain)->Arg(10'000)->Arg(100'000);

// One character added to a text of the given length.
void appendCharacter(benchmark::State& state) {
  const std::wstring start(static_cast<std::size_t>(state.range(0)), L'a');
  CSecStr text;
  text.GetBuffer(static_cast<int>(state.range(0)) * 2 + 16);
  text = start.c_str();
  int added = 0;
  for (auto _ : state) {
    text += L'b';
    if (++added == 8) {
      state.PauseTiming();
      text = start.c_str();
      added = 0;
      state.ResumeTiming();
    }
  }
}
BENCHMARK(appendCharacter)->Arg(100)->Arg(1000)->Arg(10'000);

#ifdef VL_PEER_BOTAN
void constructSecureVector(benchmark::State& state) {
  const std::size_t length = std::wcslen(kSecret) + 1;
  for (auto _ : state) {
    Botan::secure_vector<wchar_t> text(kSecret, kSecret + length);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(constructSecureVector);

void assignSecureVector(benchmark::State& state) {
  const std::size_t length = std::wcslen(kSecret) + 1;
  Botan::secure_vector<wchar_t> text(kSecret, kSecret + length);
  for (auto _ : state) {
    text.assign(kSecret, kSecret + length);
    benchmark::DoNotOptimize(text);
  }
}
BENCHMARK(assignSecureVector);
#endif

}  // namespace
