#!/usr/bin/env python3
"""Runs the hosts in other toolkits on an X server of their own, and a host in Python itself.

    toolkits.py LIBRARY ROUNDS HOST ...
"""
import os
import subprocess
import sys

HERE = os.path.dirname(os.path.abspath(__file__))
sys.path.insert(0, os.path.join(HERE, "..", "hosts"))
from xvfb import xvfb  # noqa: E402  beside the other hosts


def main(library, rounds, programs):
    failed = 0
    with xvfb("-noreset") as (number, _):
        environment = dict(os.environ, DISPLAY=f":{number}", QT_QPA_PLATFORM="xcb", GDK_BACKEND="x11",
                           GSK_RENDERER="cairo", GTK_A11Y="none", NO_AT_BRIDGE="1", LC_ALL="C.UTF-8")
        environment.pop("WAYLAND_DISPLAY", None)
        for command in [*([program] for program in programs), [sys.executable, "-B", f"{HERE}/python_host.py"]]:
            done = subprocess.run([*command, library, rounds], env=environment, timeout=3000, text=True,
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False)
            print(f"{os.path.basename(command[-1])}: status {done.returncode}\n{done.stdout}")
            failed += done.returncode != 0
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
