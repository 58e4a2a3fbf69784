"""Processes whose window lives on a thread of its own, ended in every order: each of them ends cleanly.

    endings.py HOST LIBRARY PROCESSES
"""
import collections
import os
import subprocess
import sys

from xvfb import xvfb

HOST, LIBRARY, PROCESSES = sys.argv[1], sys.argv[2], int(sys.argv[3])
TIMEOUT = 60
ENVIRONMENT = {**os.environ, "ASAN_OPTIONS": "detect_leaks=0"}  # a process that is ended leaves things behind


def failures_of(ending, surroundings):
    """What the failed processes of an ending said, with how often each said it."""
    said = collections.Counter()
    for _ in range(PROCESSES):
        ended = subprocess.run([HOST, LIBRARY, ending], env={**ENVIRONMENT, **surroundings}, timeout=TIMEOUT,
                               capture_output=True, text=True, check=False)
        if ended.returncode != 0:
            said[f"status {ended.returncode}: {ended.stderr.strip()}"] += 1
    return said


def main():
    endings = subprocess.run([HOST, LIBRARY, "?"], capture_output=True, text=True, check=False).stderr.split()
    has_failed = not endings
    with xvfb() as (number, _):
        # An X server's connection has a thread of its own, which a process without a display does not.
        for surroundings in ({"QT_QPA_PLATFORM": "xcb", "DISPLAY": f":{number}"}, {"QT_QPA_PLATFORM": "offscreen"}):
            for ending in endings:
                said = failures_of(ending, surroundings)
                has_failed = has_failed or bool(said)
                print(f"{surroundings['QT_QPA_PLATFORM']} {ending}: {PROCESSES - said.total()} of {PROCESSES} ended well")
                for words, count in said.items():
                    print(f"  {count} times {words}")
    return 1 if has_failed else 0


if __name__ == "__main__":
    sys.exit(main())
