#!/usr/bin/env python3
"""Fails when an #include points against the order of the libraries.

    check-layers.py [ROOT]

Two rules:
  - A file under src/ includes, by quotes and from the root src/, only files of its own library and of those it
    stands on.
  - <windows.h> and the other headers of the Windows API are included under src/host and src/platform/os/win32
    (and by the samples and tests, outside src/), nowhere else.
"""

import os
import re
import sys

# What each library may include besides its own files. A library is the longest of these folders that a file lies in.
ALLOWED = {
    "foundation": [],
    "platform": ["foundation"],
    "image/pixels": ["foundation"],
    "persistence": ["foundation", "platform", "image/pixels"],
    "image": ["foundation", "platform", "image/pixels", "persistence"],
    "layers": ["foundation", "platform", "image/pixels", "persistence", "image"],
    "persistence/png": ["foundation", "platform", "image/pixels", "persistence", "image", "layers"],
    "host": ["foundation", "platform", "image/pixels", "persistence", "image", "layers", "persistence/png"],
}

WINDOWS_FOLDERS = ["host", "platform/os/win32"]
WINDOWS_HEADER = re.compile(
    r"^(windows|windowsx|winuser|winbase|wingdi|winnt|windef|winreg|commdlg|commctrl|shellapi|shlobj|shlwapi|objbase|"
    r"ole2|tlhelp32|imm|dde|ddeml|psapi|fileapi|synchapi|processthreadsapi|libloaderapi)\.h$",
    re.IGNORECASE,
)
INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^>"]+)[>"]')
SUFFIXES = (".h", ".hpp", ".inl", ".cpp", ".c", ".rc")


def inside(path, folder):
    return path == folder or path.startswith(folder + "/")


def library_of(path):
    found = [name for name in ALLOWED if inside(path, name)]
    return max(found, key=len) if found else None


def source_files(src):
    for folder, folders, names in os.walk(src):
        folders.sort()
        for name in sorted(names):
            if name.endswith(SUFFIXES):
                yield os.path.relpath(os.path.join(folder, name), src).replace(os.sep, "/")


def resolve(src, path, target):
    """The included file relative to src/, or None when it is not one of ours."""
    beside = os.path.normpath(os.path.join(os.path.dirname(path), target)).replace(os.sep, "/")
    for candidate in (beside, os.path.normpath(target).replace(os.sep, "/")):
        if not candidate.startswith("..") and os.path.isfile(os.path.join(src, candidate)):
            return candidate
    # Not there (yet): a path that starts with a library's folder is still judged.
    return target if library_of(target) else None


def complaints_of(src, path):
    own = library_of(path)
    if own is None:
        yield f"src/{path}: lies in no library's folder"
        return
    with open(os.path.join(src, path), encoding="utf-8", errors="replace") as file:
        for number, line in enumerate(file, 1):
            match = INCLUDE.match(line)
            if not match:
                continue
            bracket, target = match.groups()
            where = f"src/{path}:{number}"
            if WINDOWS_HEADER.match(target) and not any(inside(path, folder) for folder in WINDOWS_FOLDERS):
                yield f"{where}: includes {target}; only src/host and src/platform/os/win32 call Windows"
            if bracket == "<" and library_of(target) is None:
                continue
            included = resolve(src, path, target)
            if included is None:
                continue
            other = library_of(included)
            if other != own and other not in ALLOWED[own]:
                yield f"{where}: {own} must not include {target} (of {other})"


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "..")
    src = os.path.join(root, "src")
    count = 0
    complaints = []
    for path in source_files(src):
        count += 1
        complaints.extend(complaints_of(src, path))
    for complaint in complaints:
        print(f"check-layers: error: {complaint}", file=sys.stderr)
    if not complaints:
        print(f"check-layers: {count} files, all includes follow the layers")
    return 1 if complaints else 0


if __name__ == "__main__":
    sys.exit(main())
