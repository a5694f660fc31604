/// A benchmark that runs `work` again and again.
#ifndef VL_BENCHMARKS_ROW_H
#define VL_BENCHMARKS_ROW_H

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

/// Each repetition has a copy of `work`, and other buffers than the one before, since one that lies across the border
/// of a page costs twice the time.
template <class Work>
class Row : public benchmark::internal::Benchmark {
 public:
  Row(const std::string& name, Work work) : Benchmark(name.c_str()), work_(std::move(work)) {}

  void Run(benchmark::State& state) override {
    static std::vector<std::unique_ptr<char[]>> kept;
    for (std::size_t size = 24; size < 512; size += 16) {
      kept.push_back(std::make_unique<char[]>(size));
    }
    Work run = work_;  // NOLINT(performance-unnecessary-copy-initialization): for a place of its own
    for (auto _ : state) {
      run();
    }
  }

 private:
  Work work_;
};

/// `name` is for scripts/bench_table.py: subject, "|", "ours" or the peer.
template <class Work>
bool row(const std::string& name, Work work) {
  auto* const made = new Row<Work>(name, std::move(work));
  // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks): the library owns it
  return benchmark::internal::RegisterBenchmarkInternal(made) == made;
}

#endif
