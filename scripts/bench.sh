#!/usr/bin/env bash
# Builds and runs the benchmarks.
#
#   bench.sh [ARG...]    the native ones; arguments go to the benchmark program, e.g. --benchmark_filter=TimeText.
#                        Without arguments the registry's times are added.
#   bench.sh --windows   the registry's times, under Wine
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

if [[ ${1-} == --windows ]]; then
  scripts/setup.sh
  have_windows || die "The Windows benchmarks need the cross compiler and Wine."
  build windows-bench vlhostkit_registry_times
  run_in_wine windows-bench vlhostkit_registry_times
  exit
fi

scripts/setup.sh --native
build native-bench vlhostkit_bench vlhostkit_registry_times
build/native-bench/bin/vlhostkit_bench "$@"
if (($# == 0)); then
  build/native-bench/bin/vlhostkit_registry_times
fi
