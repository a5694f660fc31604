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

run_in_wine windows hostkit "${arguments[@]}"
