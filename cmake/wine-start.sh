#!/bin/sh
# wine-start.sh LOADER: starts the server and the services of the prefix in WINEPREFIX, with Wine's loader and the server
# beside it.
# They live on and would keep the output open that they inherit, so they get none.
exec >/dev/null 2>&1 </dev/null
wine=$1 server=${1%/*}/wineserver
mkdir -p "$WINEPREFIX"
# With the null driver windows are made without a display. It is chosen when a server's first window is made.
if ! grep -q '^"Graphics"="null"' "$WINEPREFIX/user.reg"; then
  "$server" -p
  "$wine" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
  "$server" -k
  "$server" -w
fi
"$server" -p
exec "$wine" wineboot -i
