#!/bin/sh
# Registry text between the two targets: a file that the native program wrote is imported by the platform's own tool
# and read through the library, and what that tool exports is read by the native program.
#
#   interop.sh NATIVE-PROGRAM SCRATCH EMULATOR PROGRAM
set -u
native=$1 scratch=$2 emulator=$3 program=$4
if [ ! -x "$native" ]; then
  echo "SKIPPED: there is no native program $native; set VLHOSTKIT_NATIVE_PROGRAM."
  exit 77
fi
rm -rf "$scratch" && mkdir -p "$scratch" && cd "$scratch" || exit 1
key='HKCU\Software\VlHostkitInterop'
failures=0

must() { # COMMAND...
  "$@" >log.txt 2>&1 || { echo "failed: $*"; cat log.txt; failures=$((failures + 1)); }
}
here() { "$native" --state "$1" --json reg read "$key" "$2" 2>&1; }
there() { "$emulator" "$program" --json reg read "$key" "$1" 2>&1; }
check() { # NAME EXPECTED ACTUAL
  if [ "$2" != "$3" ]; then
    printf '%s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    failures=$((failures + 1))
  fi
}
same() { # FILE NAME PART: both print the same, and PART is in it
  check "$1, '$2' is read on both targets" "$(there "$2")" "$(here "$1" "$2")"
  contains "$(here "$1" "$2")" "$3"
}
contains() { # ACTUAL PART
  case $1 in *"$2"*) ;; *) check 'a part' "$2" "$1" ;; esac
}
# Values of all kinds, by name and what is shown of each.
same_all() { # FILE
  same "$1" '' '"text":"ünnamed €"'
  same "$1" 'quote " back\slash' '"text":"say \"hi\" C:\\dir\\ 𝄞 end\\"'
  same "$1" lines '"text":"one\r\ntwo\n"'
  same "$1" empty '"text":""'
  same "$1" list '"texts":["eins","zwei 2","ü\"\\"]'
  same "$1" 'no list' '"texts":[]'
  same "$1" dword '"number":4294967295'
  same "$1" qword '"number":"18364758544493064720"'
  same "$1" bytes '"hex":"00ff0d0a5c22000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f"'
  same "$1" 'no bytes' '"hex":""'
  same "$1" expand '"text":"%PATH%\\ü","error":"the value has another type; it is stored as REG_EXPAND_SZ'
  same "$1" 'type 17' '"error":"the value has another type; it is stored as type 17","code":-4'
}
write() { must "$native" --state native.reg reg write "$key" "$@"; }

printf '%s\n' 'Windows Registry Editor Version 5.00' '' '[HKEY_CURRENT_USER\Software\VlHostkitInterop]' \
  '"qword"=hex(b):10,32,54,76,98,ba,dc,fe' '"expand"=hex(2):25,00,50,00,41,00,54,00,48,00,25,00,5c,00,fc,00,00,00' \
  '"open list"=hex(7):61,00,62,00,00,00,63,00' '"odd"=hex(1):61,00,62,00,00,00,63' \
  '"open"=hex(1):61,00,62,00' '"type 17"=hex(11):01,02' >native.reg
lines=$(printf 'one\r\ntwo\n.')
lines=${lines%.}
write '' 'ünnamed €' --type string
# shellcheck disable=SC1003  # backslashes at the end of texts
write 'quote " back\slash' 'say "hi" C:\dir\ 𝄞 end\' --type string
write lines "$lines" --type string
write empty '' --type string
# shellcheck disable=SC1003  # backslashes at the end of texts
write list eins 'zwei 2' 'ü"\' --type multi
write 'no list' --type multi
write dword 4294967295 --type dword
write bytes 00ff0d0a5c22000102030405060708090a0b0c0d0e0f101112131415161718191a1b1c1d1e1f --type binary
write 'no bytes' '' --type binary

"$emulator" "$program" reg delete "$key" --recursive >log.txt 2>&1
must "$emulator" reg import native.reg
same_all native.reg
same native.reg odd '"text":"ab","remarks":["a part of a character at its end"]'
# Where a terminator is missing, the platform may add one on the way in.
for name in open 'open list'; do
  contains "$(here native.reg "$name")" '"remarks":["no terminator"'
  contains "$(there "$name")" '"ab"'
done

must "$emulator" reg export "$key" windows.reg /y
same_all windows.reg
must "$emulator" "$program" reg delete "$key" --recursive
[ "$failures" -eq 0 ]
