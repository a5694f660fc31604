#!/bin/sh
# What needs a shell: streams that are closed, full or no longer read, and bytes that are no text.
#
#   streams.sh PROGRAM...
set -u
failures=0

check() { # NAME EXPECTED ACTUAL
  if [ "$2" != "$3" ]; then
    printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
  fi
}

good='2013-03-28T00Z -> 2013-03-28T00:00:00Z, ticks 130089024000000000'

actual=$(printf 'a\0b\n2013-03-28T00Z\0\n2013-03-28T00Z\n' | "$@" time parse - 2>&1; echo "exit $?")
check 'NUL characters' "line 1: 'a\\x00b': the line has a NUL character (87)
line 2: '2013-03-28T00Z\\x00': the line has a NUL character (87)
$good
exit 1" "$actual"

actual=$(printf 'x\033[31m\342\200\256\303\n' | "$@" time parse - 2>&1; echo "exit $?")
check 'a terminal sequence and half a character' "line 1: 'x\\x1b[31m\\u202e$(printf '\357\277\275')': no such form, \
or a value out of its range (87)
exit 1" "$actual"

actual=$({ head -c 300000 /dev/zero | tr '\0' 1; printf '\n2013-03-28T00Z\n'; } | "$@" time parse - 2>/dev/null
  echo "exit $?")
check 'a very long line' "$good
exit 1" "$actual"

# Standard output and the exit code go separate ways here.
exec 3>&1
status=$({ "$@" time now 2>/dev/null >&-; echo $?; })
check 'standard output closed' 1 "$status"
status=$({ "$@" time now 2>/dev/null >/dev/full; echo $?; })
check 'standard output full' 1 "$status"
status=$({ "$@" time parse - 2>/dev/null >&3 </; echo $?; })
check 'standard input a folder' 1 "$status"

# The input has no end: only the failing write ends the program.
exec 4>&1
status=$({ { yes 2013-03-28T00Z | { timeout 60 "$@" time parse - 2>&4; echo $? >&3; } | head -n 1 >&4; } 3>&1; } 4>&1)
check 'a reader that has seen enough' "$good 1" "$(echo "$status" | xargs)"

[ "$failures" -eq 0 ]
