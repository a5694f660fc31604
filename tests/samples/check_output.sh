#!/bin/sh
# check_output.sh EXPECTED PROGRAM...: the program succeeds and prints what the file says.
set -eu
expected=$1
shift
actual=$("$@")
if [ "$(printf '%s' "$actual" | tr -d '\r')" != "$(cat "$expected")" ]; then
  printf 'It printed\n%s\nand not\n' "$actual"
  cat "$expected"
  exit 1
fi
