#!/bin/sh
# screenshot.sh toast|dialog FOLDER PICTURE WINE...: lets hostkit show a toast, or logon its dialog, on a display of its
# own and takes a picture of it. FOLDER holds the Windows programs. Ends with 77 where Xvfb or import is missing, and
# fails if the picture has next to no colours.
set -eu
what=$1 folder=$2 picture=$3
shift 3
for tool in Xvfb import identify; do
  command -v "$tool" >/dev/null || exit 77
done
work=$(mktemp -d)
Xvfb -displayfd 3 -screen 0 1024x768x24 3>"$work/display" >/dev/null 2>&1 &
server=$!
export WINEPREFIX="$work/prefix" WINEDEBUG=-all LC_ALL=C.UTF-8
trap '"$(dirname "$1")/wineserver" -k || :; kill "$server"; wait "$server" || :; rm -rf "$work"' EXIT
while [ ! -s "$work/display" ]; do
  sleep 0.1
done
DISPLAY=:$(cat "$work/display")
export DISPLAY
"$@" "$folder/hostkit.exe" winrt >/dev/null 2>&1 </dev/null
case $what in
  toast)
    "$@" "$folder/hostkit.exe" toast show "Password" "Your password expires today. A longer text goes on in further lines." \
      --stay --seconds 8 >/dev/null 2>&1 </dev/null &
    area=400x200+624+568
    ;;
  dialog)
    # Ends with the display.
    "$@" "$folder/logon.exe" alice >/dev/null 2>&1 </dev/null &
    area=500x350+262+209
    ;;
esac
sleep 5
import -window root -crop "$area" "$picture"
[ "$(identify -format %k "$picture")" -gt 2 ]
