#!/bin/sh
# screenshot_toast.sh HOSTKIT PICTURE WINE...: shows a toast of the Windows hostkit on a display of its own and takes a
# picture of it. Ends with 77 where Xvfb or import is missing, and fails if the toast's corner has one colour only.
set -eu
program=$1 picture=$2
shift 2
for tool in Xvfb import identify; do
  command -v "$tool" >/dev/null || exit 77
done
work=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1024x768x24 3>"$work/display" >/dev/null 2>&1 &
server=$!
export WINEPREFIX="$work/prefix" WINEDEBUG=-all
trap '"$(dirname "$1")/wineserver" -k || :; kill "$server"; wait "$server" || :; rm -rf "$work"' EXIT
while [ ! -s "$work/display" ]; do
  sleep 0.1
done
DISPLAY=:$(cat "$work/display")
export DISPLAY
"$@" "$program" winrt >/dev/null 2>&1 </dev/null
"$@" "$program" toast show "Password" "Your password expires today. A longer text goes on in further lines." \
  --stay --seconds 8 >/dev/null 2>&1 </dev/null &
toast=$!
sleep 5
import -window root -crop 400x200+624+568 "$picture"
wait "$toast"
[ "$(identify -format %k "$picture")" -gt 2 ]
