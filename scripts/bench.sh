#!/usr/bin/env bash
# Builds and runs the benchmarks (native). Arguments go to the benchmark program, e.g. --benchmark_filter=TimeText.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

scripts/setup.sh --native
build native-bench vlhostkit_bench
exec build/native-bench/bin/vlhostkit_bench "$@"
