#!/usr/bin/env python3
"""Checks that includes and target links go down only.

The layers, from the bottom; a folder may use folders that stand before it, and those alone.
"""
import pathlib
import re
import subprocess
import sys

ORDER = [
    "base",
    "system",
    "platform/com",
    "db",
    "db/sqlite",
    "db/odbc",
    "platform/engine",
    "platform/desktop",
    "platform/printing",
    "platform/viewer",
    "platform/controls",
    "filters",
    "report",
    "lookup",
    "form",
    "component",
    "host/sample_data",
    "host",
]
# What a folder must not reach although it stands above it: the providers belong to hosts, the window to the component.
FORBIDDEN = {
    "form": ["db/sqlite", "db/odbc"],
    "component": ["db/sqlite", "db/odbc", "lookup", "report"],
    "lookup": ["report", "db/sqlite", "db/odbc", "platform/engine", "platform/viewer"],
    "report": ["platform/controls", "db/sqlite", "db/odbc"],
    "filters": ["db", "db/sqlite", "db/odbc", "platform/engine", "platform/viewer", "platform/controls"],
    "platform/engine": ["db/sqlite", "db/odbc"],
    "host": ["form", "component", "lookup", "report", "filters", "platform/controls", "platform/viewer", "platform/engine"],
}
INCLUDE = re.compile(r'^\s*#include\s+"([^"]+)"', re.MULTILINE)


def folder_of(path):
    best = ""
    for folder in ORDER:
        if path.startswith(folder + "/") and len(folder) > len(best):
            best = folder
    return best


def main():
    files = subprocess.check_output(["git", "ls-files", "*.h", "*.cpp"], text=True).split()
    bad = []
    for name in files:
        own = folder_of(name)
        if not own or name.startswith("tests/"):
            continue
        for included in INCLUDE.findall(pathlib.Path(name).read_text(encoding="utf-8")):
            if ".." in included:
                bad.append(f"{name}: {included}: a relative path upwards")
            other = folder_of(included)
            if not other or other == own:
                continue
            if ORDER.index(other) > ORDER.index(own) or other in FORBIDDEN.get(own, []):
                bad.append(f"{name}: {own} must not use {other}")
    print("\n".join(bad) or "includes go down only")
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
