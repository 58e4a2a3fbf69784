#!/usr/bin/env python3
"""Compiles and runs every block of code of the hosting guide against an installation.

    guide.py PREFIX [COMPILER FLAG ...]

A block's first line names its file. The first example is built with the guide's own command and runs as it is; the
others are linked with guide_host.cpp, which calls them.
"""
import os
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile

HERE = os.path.dirname(os.path.abspath(__file__))
WORK = """
bool doOwnWork() {
    static int rounds = 0;
    return ++rounds < 20;
}
"""


def blocks(text):
    """(language, code) of each block, in order."""
    found = re.findall(r"^```(\w+)\n(.*?)^```$", text, re.S | re.M)
    assert text.count("```") == 2 * len(found), "a block without a language"
    return found


def run(command, folder, environment, **more):
    done = subprocess.run(command, cwd=folder, env=environment, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                          text=True, timeout=120, check=False, **more)
    if done.returncode != 0:
        sys.exit(f"{command}: status {done.returncode}\n{done.stdout}")
    return done.stdout


def find(prefix, name):
    for folder, _, files in os.walk(prefix):
        if name in files:
            return os.path.join(folder, name)
    sys.exit(f"{name} is not installed")


def write_sources(folder, code):
    names = []
    for language, text in code:
        name = re.match(r"// (\S+)\n", text)
        if language == "cpp":
            assert name, f"a block without a name: {text[:60]}"
            names.append(name[1])
            with open(os.path.join(folder, name[1]), "w", encoding="utf-8") as file:
                file.write(text)
    return names


def check_example(folder, environment, code, flags):
    """The first example, with the guide's own command."""
    commands = [text for language, text in code if language == "sh"]
    assert len(commands) == 1
    with open(os.path.join(folder, "connection.cpp"), "a", encoding="utf-8") as file:
        file.write(WORK)
    command = commands[0].strip().replace("c++ ", f"c++ {' '.join(flags)} ", 1)
    run(["bash", "-c", command], folder, environment)
    assert "error" not in run(["./open"], folder, environment)
    without = dict(environment, XDG_DATA_HOME="/nowhere", XDG_DATA_DIRS="/nowhere")
    said = subprocess.run(["./open"], cwd=folder, env=without, stderr=subprocess.PIPE, text=True, check=False)
    assert said.returncode == 1 and "/nowhere/velcoran/registry.ini" in said.stderr, said.stderr


def check_host(folder, environment, names, flags):
    """All other blocks in one host."""
    shutil.copy(os.path.join(HERE, "guide_host.cpp"), folder)
    sources = [name for name in names if name != "open.cpp"] + ["guide_host.cpp"]
    include = run(["pkg-config", "--cflags", "velcoran"], folder, environment).split()
    for standard in ("c++17", "c++20"):
        run(["c++", "-std=" + standard, "-Wall", "-Wextra", "-Werror", *flags, *include, *sources, "-ldl", "-o", "host"],
            folder, environment)
    said = run(["./host", os.path.join(folder, "registry.ini")], folder, environment)
    assert "closed\nreleased\n" in said, said


def check_indexes(folder, code, host, environment):
    """The indexes on the sample."""
    path = os.path.join(folder, "sample.db")
    run([host, "sample-db", path, "--documents", "50"], folder, environment)
    statements = [text for language, text in code if language == "sql"]
    assert statements
    with sqlite3.connect(path) as connection:
        connection.create_collation("velcoran", lambda one, other: (one > other) - (one < other))
        for text in statements:
            for number, statement in enumerate(filter(None, map(str.strip, text.split(";")))):
                connection.execute(statement.replace("INDEX ", f"INDEX guide{number}_", 1))


def main(prefix, flags):
    with open(find(prefix, "hosting.md"), encoding="utf-8") as file:
        code = blocks(file.read())
    assert {language for language, _ in code} == {"cpp", "sh", "ini", "sql"}, "a language that nothing here tries"
    folder = tempfile.mkdtemp()
    try:
        packages = os.path.dirname(find(prefix, "velcoran.pc"))
        data = os.path.join(folder, "home")
        os.mkdir(data)
        environment = dict(os.environ, PKG_CONFIG_PATH=packages, XDG_DATA_HOME=data,
                           XDG_DATA_DIRS=os.path.join(prefix, "share"))
        names = write_sources(folder, code)
        with open(os.path.join(folder, "registry.ini"), "w", encoding="utf-8") as file:
            file.writelines(text for language, text in code if language == "ini")
        check_host(folder, environment, names, flags)
        check_example(folder, environment, code, flags)
        check_indexes(folder, code, os.path.join(prefix, "bin", "velcoran-host"), environment)
        print(f"{len(code)} blocks of the guide work: {', '.join(names)}")
    finally:
        shutil.rmtree(folder)


if __name__ == "__main__":
    main(os.path.abspath(sys.argv[1]), sys.argv[2:])
