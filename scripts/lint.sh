#!/usr/bin/env bash
# Looks for faults, and for what is not in the project's style, without running anything: with clang-tidy, clang-format
# and shellcheck. Says nothing if all is well.
#
#   lint.sh            all sources and scripts
#   lint.sh FOLDER...  the C++ sources below these folders only (src/registry)
set -euo pipefail
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

scripts/setup.sh --native --dev
status=0

folders=("$@")
if ((${#folders[@]} == 0)); then
  folders=(include src afx siblings platform examples benchmarks tests fuzz)
  mapfile -t shell < <(find cmake docs examples scripts tests -name '*.sh')
  shellcheck --external-sources "${shell[@]}" .ci/run || status=1
fi

find "${folders[@]}" \( -name '*.cpp' -o -name '*.h' \) -print0 | xargs -0 clang-format --dry-run --Werror || status=1

# A build folder of its own, never built in. Tests compile some sources a second time, which would be read again.
quietly build/lint/configure.log cmake --preset native -B build/lint -DVLHOSTKIT_TESTS=ON -DVLHOSTKIT_BENCHMARKS=ON
python3 - <<'END'
import json
path = "build/lint/compile_commands.json"
commands = {command["file"]: command for command in reversed(json.load(open(path)))}
json.dump(list(commands.values()), open(path, "w"), indent=1)
END
# Only what the target compiles: the sources for Windows are unknown to clang here.
below=$(IFS='|' && echo "${folders[*]%/}")
mapfile -t sources < <(sed -n 's/^ *"file": "\(.*\)",\?$/\1/p' build/lint/compile_commands.json |
  grep -E "^$root/($below)/" | sort -u)
((${#sources[@]} != 0)) || die "There are no sources of this target below: ${folders[*]}"
# Findings in a header come once for each source that includes it.
printf '%s\0' "${sources[@]}" |
  xargs -0 -P "$jobs" -n 1 clang-tidy -p build/lint --quiet --warnings-as-errors='*' >build/lint/findings.log \
    2>build/lint/tidy.log || status=1
cat build/lint/findings.log
if grep 'Error while processing' build/lint/tidy.log >&2; then
  status=1
fi
exit "$status"
