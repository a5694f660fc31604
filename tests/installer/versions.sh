#!/usr/bin/env bash
# versions.sh WINE HOSTKIT: asks for Terminal Services on each system that Wine can play. Its suite test always says no,
# so the newer ones have one answer; the oldest look into the registry.
set -euo pipefail
wine=$1 program=$2 failures=0
options='HKLM\System\CurrentControlSet\Control\ProductOptions'
version="HKCU\\Software\\Wine\\AppDefaults\\$(basename "$program")"
windows() { timeout 60 "$wine" "$@" 2>/dev/null </dev/null; }
forget() {
  windows reg delete "$options" /v ProductSuite /f >/dev/null || true
  windows reg delete "$version" /f >/dev/null || true
}
trap forget EXIT
answers() {  # ANSWER VERSION...
  local answer=$1 one said
  for one in "${@:2}"; do
    windows reg add "$version" /v Version /d "$one" /f >/dev/null
    said=$(windows "$program" tse | tr -d '\r')
    if [[ $said != *"($answer)" ]]; then
      echo "$one: '$said', not $answer" && failures=1
    fi
  done
}
forget
answers -1 win98
answers 0 nt40 win2k winxp winxp64 vista win7 win8
windows reg add "$options" /v ProductSuite /t REG_MULTI_SZ /d 'Enterprise\0Terminal Server' /f >/dev/null
answers 1 nt40
answers 0 win2k
windows reg add "$options" /v ProductSuite /t REG_MULTI_SZ /d 'Enterprise\0terminal server\0Terminal Server2' /f >/dev/null
answers 0 nt40
exit $failures
