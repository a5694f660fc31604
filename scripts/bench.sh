#!/usr/bin/env bash
# Builds and runs the benchmarks.
#
#   bench.sh             the native ones, as one table: each subject beside the strongest peer that does the same work
#   bench.sh ARG...      the benchmark program with these arguments, e.g. --benchmark_filter=parse
#   bench.sh --windows   the table of those that need no benchmark library, under Wine
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

if [[ ${1-} == --windows ]]; then
  scripts/setup.sh
  have_windows || die "The Windows benchmarks need the cross compiler and Wine."
  build windows-bench vlhostkit_platform_times
  run_in_wine windows-bench vlhostkit_platform_times >build/windows-bench/platform.txt
  scripts/bench_table.py build/windows-bench/platform.txt
  exit
fi

scripts/setup.sh --native
build native-bench vlhostkit_bench vlhostkit_platform_times
results=build/native-bench
if (($# > 0)); then
  exec "$results/bin/vlhostkit_bench" "$@"
fi
# Repeated in random order, so that a slow moment of the computer meets all of them.
"$results/bin/vlhostkit_bench" --benchmark_enable_random_interleaving=true --benchmark_repetitions=15 \
  --benchmark_min_time=0.02 --benchmark_format=json >"$results/bench.json" 2>"$results/bench.log"
"$results/bin/vlhostkit_platform_times" >"$results/platform.txt"
scripts/bench_table.py "$results/bench.json" "$results/platform.txt"
