#!/usr/bin/env bash
# Runs the example program: its tour of the library, on this machine's own data.
#
#   demo.sh                          the native build
#   demo.sh --windows                the Windows build, under Wine
#   demo.sh [--windows] -- ARG...    hostkit with these arguments in place of the tour
#
# Standard input and output are the program's own; what the script has to say goes to standard error. The exit code is
# the program's.
set -euo pipefail
invoked_from=$PWD
# shellcheck source=scripts/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh"

target=native
arguments=(tour)
while (($# != 0)); do
  case $1 in
    --windows) target=windows ;;
    --)
      shift
      arguments=("$@")
      break
      ;;
    *) die "usage: demo.sh [--windows] [-- ARGUMENT...]" ;;
  esac
  shift
done

if [[ $target == native ]]; then
  scripts/setup.sh --native
else
  scripts/setup.sh
  have_windows || die "The Windows demo needs the cross compiler and Wine."
fi
build "$target" hostkit

cd "$invoked_from"
if [[ $target == native ]]; then
  exec "$root/build/native/bin/hostkit" "${arguments[@]}"
fi

export WINEPREFIX=$root/build/windows/wine-prefix WINEDEBUG=-all WINEDLLOVERRIDES=winedbg.exe=d
mkdir -p "$WINEPREFIX"
# Wine's services inherit the output of whoever starts them and would keep a pipe open that somebody reads. So they
# are started first, without it. A server that is running already belongs to a test run and stays.
if "$wine_server" -p >/dev/null 2>&1 </dev/null; then
  trap '"$wine_server" -k >/dev/null 2>&1 </dev/null || true' EXIT
fi
"$wine_loader" wineboot -i >/dev/null 2>&1 </dev/null
status=0
"$wine_loader" "$root/build/windows/bin/hostkit.exe" "${arguments[@]}" || status=$?
exit "$status"
