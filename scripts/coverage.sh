#!/usr/bin/env bash
# Builds the native target with line counters, runs its tests, and prints how much of src/ they reach: for each family
# the lines, those that ran and the percentage; then the lines that did not run, file by file.
#
#   coverage.sh
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

(($# == 0)) || die "usage: coverage.sh"
scripts/setup.sh --native --dev
folder=build/native-coverage
build native-coverage
find "$folder" -name '*.gcda' -delete
# Not the two that search memory for copies of a secret: unoptimised code leaves its own on the stack.
quietly "$folder/ctest.log" ctest --test-dir "$folder" -j "$jobs" --output-on-failure --no-tests=error \
  --exclude-regex '^(test_memoryscan|hostkit\.calls)$'

quietly "$folder/gcovr.log" gcovr --root . --filter src/ -j "$jobs" \
  --json "$folder/lines.json" "$folder"

python3 - "$folder/lines.json" <<'END'
import collections, json, sys

families = collections.defaultdict(lambda: [0, 0])
left_out = []
for file in json.load(open(sys.argv[1]))["files"]:
    lines = collections.defaultdict(int)
    for line in file["lines"]:
        if not line["gcovr/noncode"]:
            lines[line["line_number"]] += line["count"]
    path = file["file"].split("/")
    for family in (path[1] if len(path) > 2 else "(none)", "all of src"):
        families[family][0] += len(lines)
        families[family][1] += sum(count > 0 for count in lines.values())
    missed = [str(number) for number in sorted(lines) if lines[number] == 0]
    if missed:
        left_out.append(f"{file['file']}: {', '.join(missed)}")

print(f"{'family':<12}{'lines':>7}{'ran':>7}{'percent':>9}")
for family in sorted(families, key=lambda name: (name == "all of src", name)):
    lines, ran = families[family]
    print(f"{family:<12}{lines:>7}{ran:>7}{100 * ran / lines:>9.1f}")
print("\nlines that did not run:" if left_out else "\nAll lines ran.")
print("\n".join(sorted(left_out)))
END
