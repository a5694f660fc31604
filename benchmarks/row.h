/// A benchmark that runs `work` again and again.
#ifndef VL_BENCHMARKS_ROW_H
#define VL_BENCHMARKS_ROW_H

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

/// `name` is for scripts/bench_table.py: subject, "|", "ours" or the peer. Each repetition has a copy of `work`, and
/// other buffers than the one before, since one that lies across the border of a page costs twice the time.
template <class Work>
bool row(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(), [work](benchmark::State& state) {
    static std::vector<std::unique_ptr<char[]>> kept;
    for (std::size_t size = 24; size < 512; size += 16) {
      kept.push_back(std::make_unique<char[]>(size));
    }
    Work run = work;  // NOLINT(performance-unnecessary-copy-initialization): for a place of its own
    for (auto _ : state) {
      run();
    }
  });
  return true;
}

#endif
