#!/bin/sh
# wine-start.sh FOLDER: starts the server and the services of the prefix in WINEPREFIX, with Wine's programs in FOLDER.
# They live on and would keep the output open that they inherit, so they get none.
exec >/dev/null 2>&1 </dev/null
wine=$1
mkdir -p "$WINEPREFIX"
# With the null driver windows are made without a display. It is chosen when a server's first window is made.
if ! grep -q '^"Graphics"="null"' "$WINEPREFIX/user.reg"; then
  "$wine/wineserver" -p
  "$wine/wine64" reg add 'HKCU\Software\Wine\Drivers' /v Graphics /d null /f
  "$wine/wineserver" -k
  "$wine/wineserver" -w
fi
"$wine/wineserver" -p
exec "$wine/wine64" wineboot -i
