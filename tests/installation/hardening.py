#!/usr/bin/env python3
"""Looks whether what an installation ships is hardened.

    hardening.py BUILD PROGRAM OR LIBRARY ...
"""
import json
import os
import platform
import re
import subprocess
import sys

FLAGS = ["-fstack-protector-strong", "-fstack-clash-protection", "-D_FORTIFY_SOURCE=2"]
# A file is marked for it only where everything linked into it is, the C library's own start files included.
FLAGS += {"x86_64": ["-fcf-protection"], "aarch64": ["-mbranch-protection=standard"]}.get(platform.machine(), [])


def read(option, file):
    return subprocess.check_output(["readelf", "-W", option, file], text=True, env=dict(os.environ, LC_ALL="C"))


def faults_of(file):
    dynamic, segments, symbols = (read(option, file) for option in ("-d", "-l", "--dyn-syms"))
    head = read("-h", file)
    if not re.search(r"Type:\s+DYN", head):
        yield "it is not position independent"
    if "GNU_RELRO" not in segments or not re.search(r"BIND_NOW|FLAGS_1.*NOW", dynamic):
        yield "its tables can be written to after it is loaded"
    if re.search(r"GNU_STACK.* RWE ", segments):
        yield "its stack can be executed"
    if "__stack_chk_fail" not in symbols:
        yield "its stack is not protected"
    if not re.search(r"__\w+_chk@", symbols):
        yield "none of its calls is checked"
    if re.search(r"R(UN)?PATH", dynamic):
        yield "it looks for libraries in a folder of its own"


def uncompiled(build):
    """Sources of the product that were compiled without a flag."""
    with open(os.path.join(build, "compile_commands.json"), encoding="utf-8") as file:
        for each in json.load(file):
            missing = [flag for flag in FLAGS if flag not in each["command"]]
            if missing and not re.search(r"/(tests|bench)/", each["file"]):
                yield f"{each['file']}: compiled without {' '.join(missing)}"


def main(build, files):
    faults = [f"{file}: {fault}" for file in files for fault in faults_of(file)] + list(uncompiled(build))
    print("\n".join(faults) or f"{len(files)} files are hardened")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
