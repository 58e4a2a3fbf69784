#!/usr/bin/env python3
"""An installed velcoran-host under a scheduler: next to no environment, no display, nothing to say on success.

    quiet.py PROGRAM
"""
import os
import sqlite3
import subprocess
import sys
import tempfile


def run(program, *arguments, **environment):
    # A build with sanitizers knows by this which leaks are those of other libraries, and says nothing about them; no
    # program of a person reads it.
    known = os.environ.get("LSAN_OPTIONS")
    sanitizer = {"LSAN_OPTIONS": known + ":print_suppressions=0"} if known else {}
    given = {"PATH": "/usr/bin:/bin", **sanitizer, **environment}
    return subprocess.run([program, *arguments], env=given, cwd="/", stdin=subprocess.DEVNULL, text=True, timeout=120,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False)


def require(is_true, what, done):
    if not is_true:
        sys.exit(f"not so: {what}: status {done.returncode}, said {done.stdout!r} {done.stderr!r}")


def main(program):
    with tempfile.TemporaryDirectory() as folder:
        base, data = os.path.join(folder, "sample.db"), os.path.join(folder, "data")
        done = run(program, "sample-db", base, "--documents", "100", HOME=folder)
        require((done.returncode, done.stdout, done.stderr) == (0, "", ""), "a sample is made in silence", done)
        for form in ("pdf", "xlsx", "csv"):
            path = os.path.join(folder, "raport." + form)
            done = run(program, "export", "--db", base, "--kind", "Import", "--from", "2026-01-01", "--to", "2026-12-31",
                       "--out", path, HOME=folder)
            require((done.returncode, done.stdout, done.stderr) == (0, "", ""), f"{form} is exported in silence", done)
            require(os.path.getsize(path) > 0, f"{form} stands", done)
        done = run(program, "export", "--db", base, "--kind", "Import", "--from", "2026-01-01", "--to", "2026-12-31",
                   "--out", "/proc/raport.pdf", HOME=folder)
        require(done.returncode == 1 and done.stderr.count("\n") == 1, "a failure has one line", done)
        with sqlite3.connect(base) as connection:
            connection.execute("ALTER TABLE CapDocIntE RENAME TO Altceva")
        done = run(program, "export", "--db", base, "--kind", "Import", "--from", "2026-01-01", "--to", "2026-12-31",
                   "--out", os.path.join(folder, "raport.pdf"), HOME=folder)
        require((done.returncode, done.stderr) == (1, "velcoran-host: no such table: CapDocIntE (-2147217865)\n"),
                "a report that fails says number and description", done)
        done = run(program, "demo", HOME=folder, XDG_DATA_HOME=data)
        named = done.stdout.splitlines()
        require(done.returncode == 0 and done.stderr == "" and len(named) == 6, "the demo names its files alone", done)
        require(all(name.startswith(data + "/velcoran/demo/") and os.path.getsize(name) for name in named),
                "the demo writes into the user's data", done)
        done = run(program, "--version")
        require(done.returncode == 0 and "Qt " in done.stdout and "SQLite " in done.stdout and "built: " in done.stdout,
                "the version names build and libraries", done)
    print("quiet")


if __name__ == "__main__":
    main(sys.argv[1])
