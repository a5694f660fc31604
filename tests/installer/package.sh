#!/usr/bin/env bash
# package.sh WINE OBJDUMP DLL WXS SCRATCH: installs and removes the sample product with the platform's installer, and
# looks at what that does. Ends with 77 where there is no wixl to build the package.
set -euo pipefail
wine=$1 objdump=$2 dll=$3 wxs=$4 scratch=$5
failures=0
expect() { # WHAT COMMAND...: the command succeeds
  if ! "${@:2}"; then
    echo "not so: $1"
    failures=$((failures + 1))
  fi
}
imports=$("$objdump" -p "$dll" | awk '/DLL Name:/ { print tolower($3) }' | sort | xargs)
expect "system libraries only: $imports" [ "$imports" = "advapi32.dll kernel32.dll msvcrt.dll" ]
if ! command -v wixl >/dev/null; then
  echo "installer.package: SKIPPED, wixl is not installed: the package was neither built nor installed"
  exit $((failures ? 1 : 77))
fi

mkdir -p "$scratch"
cd "$scratch"
echo sample >sample.txt
wixl -a x64 -D ActionDll="$dll" -D SampleFile=sample.txt -o product.msi "$wxs"
c=$WINEPREFIX/drive_c session='HKLM\SYSTEM\CurrentControlSet\Control\Session Manager'
product="$c/Program Files/Velorin Sample" shared="$c/Program Files/Common Files/Velorin"
windows() { "$wine" "$@" 2>/dev/null </dev/null | tr -d '\r'; }
forget() { windows reg delete "$session" /v PendingFileRenameOperations /f >/dev/null || true; }
marked() { windows reg query "$session" /v PendingFileRenameOperations | grep -qF "$1"; }
trap 'exec 3>&-; forget; rm -rf "$product" "$shared" "$scratch"/*' EXIT
merge() {
  mkdir -p "$product/Resources/Merged/sub/deep" "$shared/Resources/Merged" outside
  touch "$product"/{session.cache,Resources/Merged/{a,sub/deep/b}} "$shared/Resources/Merged/c" outside/kept
  ln -sfn "$scratch/outside" "$product/Resources/Merged/link"
}
rm -rf "$product" "$shared"
forget

merge
windows msiexec /i product.msi /qn
expect "installed" [ -f "$product/Resources/base.txt" ]
expect "both Merged folders are empty" [ -z "$(ls -A "$product/Resources/Merged" "$shared/Resources/Merged" | grep -v :)" ]
expect "the link was not followed" [ -f outside/kept ]
expect "the cache is kept" [ -f "$product/session.cache" ]
expect "the answer is a property" grep -q 'REG_SZ *0$' <(windows reg query 'HKLM\SOFTWARE\Velorin\Sample' /v TerminalServices)

merge
mkfifo -m 600 input && exec 3<>input
# Holds its output file open until its input ends.
"$wine" cmd /c "cmd > \"C:\\Program Files\\Velorin Sample\\Resources\\Merged\\held\"" <input >/dev/null 2>&1 3>&- &
until [ -s "$product/Resources/Merged/held" ]; do sleep 0.1; done
forget
windows msiexec /x product.msi /qn
expect "the held file stays" [ -f "$product/Resources/Merged/held" ]
expect "all else of the tree is gone" [ ! -e "$product/Resources/Merged/sub" -a ! -e "$shared/Resources/Merged" ]
expect "the cache is gone" [ ! -e "$product/session.cache" ]
expect "the link was not followed" [ -f outside/kept ]
for path in '\Resources\Merged\held' '\Resources\Merged\' '\Resources\' ''; do
  expect "marked: $path" marked "\\??\\C:\\Program Files\\Velorin Sample$path"
done
exit $((failures != 0))
