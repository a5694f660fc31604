#!/usr/bin/env bash
# package.sh WINE MSI SCRATCH: installs and removes the sample product, and looks at what that does. Ends with 77 where
# the package was not built.
set -euo pipefail
wine=$1 msi=$2 scratch=$3 failures=0
expect() { "${@:2}" || { echo "not so: $1" && failures=1; }; }  # WHAT COMMAND...: the command succeeds
if [ ! -f "$msi" ]; then
  echo "SKIPPED, there is no $msi (wixl builds it, with the examples): nothing was installed"
  exit 77
fi
mkdir -p "$scratch" && cd "$scratch" && cp "$msi" product.msi
c=$WINEPREFIX/drive_c session='HKLM\SYSTEM\CurrentControlSet\Control\Session Manager'
windows() { timeout 60 "$wine" "$@" >output 2>/dev/null </dev/null; }  # no pipe: services would keep it open
windows cmd /c 'echo %ProgramFiles%'  # 32-bit programs have a folder of their own where 64-bit ones run too
programs=$(tr -d '\r' <output) && programs=${programs#C:\\}
product="$c/$programs/Velorin Sample" shared="$c/$programs/Common Files/Velorin"
forget() { windows reg delete "$session" /v PendingFileRenameOperations /f || true; }
trap 'exec 3>&-; forget; rm -rf "$product" "$shared" "$scratch"/*' EXIT
merge() {
  mkdir -p "$product/Resources/Merged/sub/deep" "$shared/Resources/Merged" outside
  touch "$product"/{session.cache,Resources/Merged/{a,sub/deep/b}} "$shared/Resources/Merged/c" outside/kept
  ln -sfn "$scratch/outside" "$product/Resources/Merged/link"  # which Wine can't remove
}
rm -rf "$product" "$shared" && forget && merge
windows msiexec /i product.msi /qn
expect "installed, and the cache kept" [ -f "$product/Resources/base.txt" -a -f "$product/session.cache" ]
left=$(find "$product/Resources/Merged" "$shared/Resources/Merged" -mindepth 1)
expect "both Merged folders are empty: $left" [ "$left" = "$product/Resources/Merged/link" ]
windows reg query 'HKLM\SOFTWARE\Velorin\Sample' /v TerminalServices
expect "the answer is a property" grep -q 'REG_SZ *0' output
merge
cp "$c/windows/system32/cmd.exe" "$product/Resources/Merged/held" && mkfifo input && exec 3<>input
"$wine" "$product/Resources/Merged/held" <input >running 2>/dev/null 3>&- &  # in use until its input ends
for ((i = 0; i < 100; i++)); do [ -s running ] || sleep 0.1; done
forget
windows msiexec /x product.msi /qn
expect "what is in use stays" [ -f "$product/Resources/Merged/held" -a -f outside/kept ]
left=$(find "$product"/{session.cache,Resources/Merged/sub} "$shared/Resources/Merged" 2>/dev/null || true)
expect "all else is gone: $left" [ -z "$left" ]
windows reg query "$session" /v PendingFileRenameOperations
for path in Resources\\Merged\\{held,} Resources\\ ''; do
  expect "marked: $path" grep -qF "\\??\\C:\\$programs\\Velorin Sample\\$path" output
done
exit $failures
