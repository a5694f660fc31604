#!/bin/sh
# check_exports.sh TOOL LIBRARY LIST: fails unless LIBRARY exports exactly the names of LIST, one a line, C++ names as
# they are declared. TOOL is an objdump for a .dll, and an nm for anything else, where the run-time records of classes
# are not looked at: they must be the same object in all libraries there, while a DLL keeps its own.
set -eu
export LC_ALL=C
tool=$1 library=$2 list=$3

case $library in
  *.dll) exported=$("$tool" -p "$library" | awk '/^\[Ordinal\/Name Pointer\] Table/ { in_table = 1; next }
                                                  in_table && NF == 0 { exit }
                                                  in_table { print $NF }') ;;
  *) exported=$("$tool" -D --defined-only -P "$library" | awk '{ print $1 }') ;;
esac

# Lines that only one side has; diff's own marks would not say whose they are.
differences=$(printf '%s\n' "$exported" | c++filt | grep -v '^typeinfo \|^vtable ' | sort -u | diff - "$list" | sed -n 's/^</exported but not listed:/p; s/^>/listed but not exported:/p')
if [ -n "$differences" ]; then
  echo "$library:"
  echo "$differences"
  exit 1
fi
wc -l <"$list"
