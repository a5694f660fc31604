#!/usr/bin/env bash
# Runs the fuzzers, and says for each how many inputs it ran and what it found.
#
#   fuzz.sh [NAME] [SECONDS]    the fuzzer fuzz_NAME, or all of them (also with the name "all"), 30 seconds each
#
# Seeds come from fuzz/corpus/NAME, which stays as it is. Inputs that reach new code are kept in build/fuzz/NAME/corpus,
# and inputs that fail in build/fuzz/NAME/findings; run the fuzzer with such a file as its argument to see it fail.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

name=${1:-all}
seconds=${2:-30}
[[ $# -le 2 && $seconds =~ ^[1-9][0-9]*$ ]] || die "usage: fuzz.sh [NAME|all] [SECONDS]"

scripts/setup.sh --native --dev
build native-fuzz

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=1 UBSAN_OPTIONS=print_stacktrace=1

# Runs one fuzzer; fails if that found something.
fuzz() {
  local program=$1 name=$2 status=0 executions
  local folder=build/fuzz/$name
  local corpora=("$folder/corpus")
  mkdir -p "$folder/corpus" "$folder/findings"
  if [[ -d fuzz/corpus/$name ]]; then
    corpora+=("fuzz/corpus/$name")
  fi
  say "fuzz_$name: $seconds s"
  "$program" -max_total_time="$seconds" -timeout=10 -print_final_stats=1 -artifact_prefix="$folder/findings/" \
    "${corpora[@]}" >"$folder/log" 2>&1 </dev/null || status=$?
  executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$folder/log")
  if ((status != 0)); then
    cat "$folder/log" >&2
  fi
  echo "fuzz_$name: ${executions:-unknown number of} executions, $((status != 0)) findings"
  return "$status"
}

programs=(build/native-fuzz/bin/fuzz_"$name")
if [[ $name == all ]]; then
  shopt -s nullglob
  programs=(build/native-fuzz/bin/fuzz_*)
fi
((${#programs[@]} != 0)) || die "There are no fuzzers."
found=0
for program in "${programs[@]}"; do
  [[ -x $program ]] || die "There is no fuzzer $(basename "$program")."
  program_name=$(basename "$program")
  fuzz "$program" "${program_name#fuzz_}" || found=1
done
exit "$found"
