#!/usr/bin/env bash
# Runs a Windows program in the project's private Wine prefix (build/wine or $VM_WINEPREFIX):
#   scripts/wine-run.sh program.exe [arguments...]
# Returns the program's own exit code. Windows are shown on $DISPLAY if it is set.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
prefix=${VM_WINEPREFIX:-$root/build/wine}
[ -f "$prefix/ready" ] || "$root/scripts/wine-init.sh"
export WINEPREFIX=$prefix WINEARCH=win32 WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=d"
exec wine "$@"
