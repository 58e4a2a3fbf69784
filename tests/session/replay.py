#!/usr/bin/env python3
"""Replays recorded sessions in drive mode and shows where the answers differ.

    replay.py PROGRAM DATABASE SESSION...

Each line of a session holds a command and what its answer must contain; what the answer holds besides is free. Groups
and totals are compared in any order, colours in any letter case, the dates of a period with any separator. Between a
click on Raport and the end of the next wait nothing is compared: how much of the report has arrived is chance.
"""
import json
import os
import re
import subprocess
import sys


def show(value):
    return json.dumps(value, ensure_ascii=False)[:300]


def by_key(entries):
    return {show(entry.get("key", entry.get("Moneda"))): entry for entry in entries or []}


def unordered(want, got, path):
    found = by_key(got)
    for key, entry in by_key(want).items():
        yield from differences(entry, found.get(key), f"{path}[{key}]")
    if len(want) != len(got or []):
        yield f"{path}: {len(want)} entries wanted, got {len(got or [])}"


def ordered(want, got, path):
    if not isinstance(got, list) or len(want) != len(got):
        yield f"{path}: wanted {show(want)}, got {show(got)}"
        return
    for position, (one, other) in enumerate(zip(want, got)):
        yield from differences(one, other, f"{path}[{position}]")


def differences(want, got, path=""):
    name = path.rsplit(".", 1)[-1]
    if isinstance(want, dict):
        if not isinstance(got, dict):
            yield f"{path}: an object is wanted, got {show(got)}"
            return
        for key, value in want.items():
            if key in got:
                yield from differences(value, got[key], f"{path}.{key}")
            else:
                yield f"{path}.{key}: missing"
    elif isinstance(want, list):
        yield from (unordered if name in ("groups", "totals") else ordered)(want, got, path)
    elif name.endswith("Color") and str(want).lower() == str(got).lower():
        return
    elif name == "period" and re.sub(r"(\d\d)[./-](\d\d)[./-](\d{4})", r"\1/\2/\3", str(got)) == want:
        return
    elif want != got:
        yield f"{path}: wanted {show(want)}, got {show(got)}"


class Program:
    def __init__(self, program, database, kind="--db", *options):
        self.process = subprocess.Popen([program, "drive", kind, database, *options], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))

    def answer(self, command):
        self.process.stdin.write((json.dumps(command, ensure_ascii=False) + "\n").encode())
        self.process.stdin.flush()
        line = self.process.stdout.readline()
        return json.loads(line) if line else None

    def end(self):
        self.process.stdin.close()
        return self.process.wait(60)


def replay(program, database, session):
    played, bad, loading = Program(program, database), 0, False
    with open(session, encoding="utf-8") as lines:
        for number, line in enumerate(lines, 1):
            step = json.loads(line)
            command = step["command"]
            answer = played.answer(command)
            if answer is None:
                print(f"{session}:{number}: the program ended at {show(command)}")
                return bad + 1
            if command == {"do": "click", "control": "Raport"}:
                loading = True
                continue
            if isinstance(command, dict) and command.get("do") == "wait":
                loading = False
                bad += 1 if answer.get("timedOut") else 0
                continue
            for difference in () if loading else differences(step["answer"], answer):
                print(f"{session}:{number}: {show(command)}: {difference}")
                bad += 1
    status = played.end()
    if status != 0:
        print(f"{session}: ended with status {status}")
    return bad + (status != 0)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    total = sum(replay(sys.argv[1], sys.argv[2], session) for session in sys.argv[3:])
    print(f"{total} differences")
    sys.exit(1 if total else 0)
