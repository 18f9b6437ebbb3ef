#!/usr/bin/env bash
# Creates the private 32-bit Wine prefix that all Windows programs of this project run in, unless it is there:
# build/wine, or $VM_WINEPREFIX. Runs without a display and asks nothing.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
prefix=${VM_WINEPREFIX:-$root/build/wine}
[ -f "$prefix/ready" ] && exit 0

command -v wine >/dev/null || { echo "wine-init: error: wine is not installed; run scripts/setup.sh" >&2; exit 1; }
mkdir -p "$prefix"
exec 9>"$prefix.lock"
flock 9
[ -f "$prefix/ready" ] && exit 0

export WINEPREFIX=$prefix WINEARCH=win32 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
unset DISPLAY
if ! timeout 180 wine wineboot --init >"$prefix.log" 2>&1 9>&-; then
  echo "wine-init: error: could not create the Wine prefix $prefix (see $prefix.log)" >&2
  exit 1
fi
timeout 60 wineserver -w 9>&- || true
touch "$prefix/ready"
