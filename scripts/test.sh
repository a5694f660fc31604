#!/usr/bin/env bash
# Builds both targets and runs all tests on both. The last line has the totals: "N passed, N failed[, N skipped]".
#
#   test.sh                 native, and Windows under Wine
#   test.sh --native        native only
#   test.sh --sanitizers    in addition native with AddressSanitizer and UndefinedBehaviorSanitizer, and with
#                           ThreadSanitizer
#   test.sh --x86           in addition Windows for 32-bit programs, whose tests run where Wine is there for them
#
# Counted are the test cases of the GoogleTest programs, and each other test once. A program that crashes, hangs or
# leaks counts as one failure, and so does a build that fails. Where Wine is missing and can't be installed, only the
# native half runs; with CI set that is a failure.
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

windows=1
x86=
presets=(native)
setup=()
for argument in "$@"; do
  case $argument in
    --native)
      windows=
      setup+=(--native)
      ;;
    --sanitizers) presets+=(native-asan native-tsan) ;;
    --x86)
      x86=1
      setup+=(--x86)
      ;;
    *) die "usage: test.sh [--native] [--sanitizers] [--x86]" ;;
  esac
done

scripts/setup.sh "${setup[@]}"

passed=0
failed=0
skipped=0

if [[ -n $windows ]]; then
  if have_windows; then
    presets+=(windows)
  else
    say "*** No cross compiler or no Wine: the Windows target is NOT tested. ***"
    if [[ -n ${CI:-} ]]; then
      failed=1
    fi
  fi
fi

if [[ -n $x86 ]]; then
  if have_x86; then
    presets+=(windows-x86)
  else
    say "*** No cross compiler for 32-bit programs: the target windows-x86 is NOT tested. ***"
  fi
fi

# Prints "PASSED FAILED SKIPPED" of the last ctest run in a build folder, from ctest's list of tests and the result
# files that the GoogleTest programs write at their end.
count() {
  # shellcheck disable=SC2016
  awk -v results="$1/test-results" '
    function attribute(line, name) {
      return match(line, " " name "=\"[^\"]*\"") ? substr(line, RSTART + length(name) + 3, RLENGTH - length(name) - 4) : ""
    }
    function count_program(file, status,    line, run, cases, failures, left_out) {
      while ((getline line < file) > 0) {
        if (line ~ /^ *<testsuites /) {
          run = 1
          cases = attribute(line, "tests")
          failures = attribute(line, "failures")
        } else if (line ~ /^ *<testsuite /) {
          left_out += attribute(line, "disabled") + attribute(line, "skipped")
        }
      }
      close(file)
      if (!run) {
        return 0
      }
      if ((status != "run" && failures == 0) || cases == 0) {
        failed++
      }
      passed += cases - failures - left_out
      failed += failures
      skipped += left_out
      return 1
    }
    /^[ \t]*<testcase / {
      name = attribute($0, "name")
      status = attribute($0, "status")
      if (name ~ /^wine\./) {
        failed += status != "run"
      } else if (status == "disabled") {
        skipped++
      } else if (!count_program(results "/" name ".xml", status)) {
        if (status == "run") {
          passed++
        } else {
          failed++
        }
      }
    }
    /^[ \t]*<skipped message="SKIP_RETURN_CODE/ {  # a test that says itself that it has nothing to run on
      failed--
      skipped++
    }
    END { print passed + 0, failed + 0, skipped + 0 }' "$1/ctest.xml"
}

test_preset() {
  local preset=$1 folder=build/$1 status=0 p f s start=$SECONDS
  say "$preset: building and testing"
  if ! build "$preset"; then
    say "$preset: the build FAILED"
    failed=$((failed + 1))
    return
  fi
  rm -rf "$folder/test-results" "$folder/ctest.xml"
  mkdir "$folder/test-results"
  ctest --test-dir "$folder" -j "$jobs" --output-on-failure --no-tests=error --output-junit "$root/$folder/ctest.xml" \
    >"$folder/ctest.log" 2>&1 </dev/null || status=$?
  read -r p f s < <([[ -f $folder/ctest.xml ]] && count "$folder" || echo 0 0 0)
  if ((status != 0)); then
    cat "$folder/ctest.log"
    # Whatever ctest found wrong has to show in the totals.
    f=$((f > 0 ? f : 1))
  fi
  passed=$((passed + p))
  failed=$((failed + f))
  skipped=$((skipped + s))
  echo "$preset: $p passed, $f failed, $s skipped ($((SECONDS - start)) s)"
}

for preset in "${presets[@]}"; do
  test_preset "$preset"
done

if ((skipped != 0)); then
  echo "$passed passed, $failed failed, $skipped skipped"
else
  echo "$passed passed, $failed failed"
fi
((failed == 0 && passed != 0))
