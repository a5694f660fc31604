# Shared by the scripts beside it, which source it: where things are, and quiet builds.
# shellcheck shell=bash
# shellcheck disable=SC2034  # The variables are for those scripts.

cd "$(dirname "${BASH_SOURCE[0]}")/.." || exit
root=$PWD
jobs=${JOBS:-$(nproc)}

wine_loader=/usr/lib/wine/wine64
wine_server=/usr/lib/wine/wineserver

say() { printf '%s\n' "$*" >&2; }

die() {
  say "$*"
  exit 1
}

have_windows() { [[ -x $wine_loader ]] && command -v x86_64-w64-mingw32-g++-posix >/dev/null; }
have_x86() { command -v i686-w64-mingw32-g++-posix >/dev/null; }

# quietly LOG COMMAND...: the command's output goes to LOG, and is shown if the command fails.
quietly() {
  local log=$1 status=0
  shift
  mkdir -p "$(dirname "$log")"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if ((status != 0)); then
    cat "$log" >&2
    say "failed ($status): $*"
  fi
  return "$status"
}

# build PRESET [TARGET...]: configures build/PRESET if that was not done yet, and builds.
build() {
  local preset=$1
  shift
  if [[ ! -f build/$preset/build.ninja ]]; then
    say "$preset: first build, this takes a while"
    quietly "build/$preset/configure.log" cmake --preset "$preset" || return
  fi
  quietly "build/$preset/build.log" cmake --build "build/$preset" -j "$jobs" ${1:+--target "$@"}
}

# run_in_wine PRESET PROGRAM [ARG...]: runs a program of build/PRESET and ends with its exit code.
run_in_wine() {
  local preset=$1 program=$2 status=0
  shift 2
  export WINEPREFIX=$root/build/$preset/wine-prefix WINEDEBUG=-all WINEDLLOVERRIDES=winedbg.exe=d LC_ALL=C.UTF-8
  mkdir -p "$WINEPREFIX"
  # Wine's services inherit the output of whoever starts them and would keep a pipe open that somebody reads. So they
  # are started first, without it. A server that is running already belongs to a test run and stays.
  if "$wine_server" -p >/dev/null 2>&1 </dev/null; then
    trap '"$wine_server" -k >/dev/null 2>&1 </dev/null || true' EXIT
  fi
  "$wine_loader" wineboot -i >/dev/null 2>&1 </dev/null
  "$wine_loader" "$root/build/$preset/bin/$program.exe" "$@" || status=$?
  return "$status"
}
