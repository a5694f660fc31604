#!/bin/sh
# check_imports.sh OBJDUMP TARGET LIST LIBRARY...: fails unless LIST has for each LIBRARY the line "TARGET NAME: WANTED...",
# with the names of the libraries that the loader takes for it, sorted, and no further line for TARGET. NAME is without
# version.
set -eu
export LC_ALL=C
objdump=$1 target=$2 list=$3 status=0
shift 3

listed=$(mktemp)
trap 'rm -f "$listed"' EXIT
grep "^$target " "$list" >"$listed"
for library in "$@"; do
  # Some want the loader itself, which is named after the processor.
  wanted=$("$objdump" -p "$library" |
    awk '/DLL Name:/ { print tolower($3) } /NEEDED/ && $2 !~ /^ld-linux/ { print $2 }' | sort | xargs)
  line="$target $(basename "$library" | sed 's/\.so[.0-9]*$/.so/'): $wanted"
  grep -q -x -F "$line" "$listed" || { echo "not listed: $line" && status=1; }
done
if [ "$(wc -l <"$listed")" -ne $# ]; then
  echo "$list has other libraries for $target than these: $*"
  status=1
fi
exit $status
