#!/usr/bin/env python3
"""Exports to names that are no UTF-8, in folders of such names, and through links to an open pipe.

    names.py PROGRAM DATABASE
"""
import os
import subprocess
import sys
import tempfile

NAMES = (b"simplu", b"\xef\xbb\xbfmarca", b"rap\xffort", b"\xc8\x99ir\xe9")


class Names:
    def __init__(self, program, database):
        self.command = [os.path.abspath(program), "export", "--db", os.path.abspath(database), "--kind", "Import",
                        "--from", "2026-01-01", "--to", "2026-12-31", "--out"]
        self.bad = 0

    def export(self, out, folder):
        return subprocess.run(self.command + [out], cwd=folder, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                              check=False)

    def expect(self, what, is_right, done):
        if not is_right:
            self.bad += 1
            print(what, done.returncode, done.stderr)

    def in_folder(self, folder):
        os.mkdir(folder)
        for name in NAMES:
            for ending in (b".csv", b".xlsx", b".pdf"):
                done = self.export(name + ending, folder)
                self.expect("written under another name", os.listdir(folder) == [name + ending], done)
                for found in os.listdir(folder):
                    os.unlink(os.path.join(folder, found))
        missing = os.path.join(folder, b"lips\xe3", b"raport.csv")
        done = self.export(missing, folder)
        self.expect("a message with another path", done.returncode == 1 and missing in done.stderr, done)
        os.symlink("/proc/self/fd/1", os.path.join(folder, b"iesire.csv"))
        done = self.export(b"iesire.csv", folder)
        self.expect("nothing for the open pipe", done.returncode == 0 and done.stdout.count(b"\n") > 10, done)


def main():
    names = Names(*sys.argv[1:])
    with tempfile.TemporaryDirectory() as root:
        for name in NAMES:
            names.in_folder(os.path.join(os.fsencode(root), name))
    return 1 if names.bad else 0


if __name__ == "__main__":
    sys.exit(main())
