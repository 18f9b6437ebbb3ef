#!/usr/bin/env python3
"""Fails when a plug-in exports or imports anything but what it should.

    check-plugin.py OBJDUMP PLUGIN

It exports exactly the two names that hosts look up and needs no DLL but those of the system.
"""

import re
import subprocess
import sys

EXPORTS = {"PlugInMain", "_DissolveProc@16"}
SYSTEM_DLLS = {
    "advapi32.dll", "comctl32.dll", "comdlg32.dll", "gdi32.dll", "imm32.dll", "kernel32.dll", "msimg32.dll",
    "msvcrt.dll", "ntdll.dll", "ole32.dll", "oleaut32.dll", "shell32.dll", "shlwapi.dll", "user32.dll",
    "version.dll", "winmm.dll",
}


def main():
    objdump, plugin = sys.argv[1:]
    text = subprocess.run([objdump, "-p", plugin], check=True, capture_output=True, text=True).stdout
    imports = set(re.findall(r"^\s*DLL Name: (\S+)", text, re.MULTILINE))
    table = text.partition("[Ordinal/Name Pointer] Table")[2].partition("\n\n")[0]
    exports = set(re.findall(r"^\s*\[\s*\d+\]\s+(?:\+base\[\s*\d+\]\s+)?(?:[0-9a-f]+ )?(\S+)$", table, re.MULTILINE))
    failed = False
    if exports != EXPORTS:
        failed = True
        print(f"check-plugin: error: exports {sorted(exports)}, expected {sorted(EXPORTS)}", file=sys.stderr)
    for name in sorted(imports):
        if name.lower() not in SYSTEM_DLLS:
            failed = True
            print(f"check-plugin: error: imports {name}, which is not part of the system", file=sys.stderr)
    if not failed:
        print(f"check-plugin: exports {', '.join(sorted(exports))}; imports {', '.join(sorted(imports))}")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
