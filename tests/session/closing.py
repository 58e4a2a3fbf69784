#!/usr/bin/env python3
"""Closes the window before, during and after a report run, again and again, and looks at what is left behind.

    closing.py PROGRAM DATABASE ROUNDS
"""
import os
import sys

from replay import Program

OPEN = {"do": "incarca", "kind": "Import", "date": "2026-03-15", "soc": ""}
RUN = {"do": "click", "control": "Raport"}
WAIT = {"do": "wait", "seconds": 60}
CLOSE = {"do": "close"}
WAYS = {
    "before a run": (OPEN, CLOSE),
    "during a run": (OPEN, RUN, CLOSE),
    "after a run": (OPEN, RUN, WAIT, CLOSE),
    "by a second call during a run": (OPEN, RUN, OPEN, CLOSE),
    "by Esc after a run": (OPEN, RUN, WAIT, {"do": "click", "control": "cmdViz"}, {"do": "key", "key": "Esc"}),
}


def threads(played):
    return len(os.listdir(f"/proc/{played.process.pid}/task"))


def check(played, way):
    state = played.answer({"do": "state"})["state"]
    assert not state["window"]["loaded"], f"{way}: the window is still loaded"
    assert state["window"].get("pointer", "default") == "default", f"{way}: the hourglass stayed"
    assert state["members"]["rptFacturi"] is None and not state["members"]["priza"], f"{way}: a member was kept"


def main(program, database, rounds):
    played = Program(program, database)
    at_first = None
    for number in range(rounds):
        for way, commands in WAYS.items():
            for command in commands:
                answer = played.answer(command)
                assert answer is not None, f"{way}: the program ended at {command}"
                assert answer["ok"] and answer["error"] is None, f"{way}: {answer}"
                assert not answer["messages"], f"{way}: {answer['messages']}"
            check(played, way)
        if number == rounds // 10:
            at_first = threads(played)
    assert threads(played) <= at_first, f"{threads(played)} threads, {at_first} early on"
    played.answer(OPEN)
    played.answer(RUN)
    played.answer(WAIT)
    assert played.answer({"do": "report"})["report"] is not None, "the connection is no longer usable"
    assert played.end() == 0, "the program ended with a failure"
    print(f"{rounds} rounds of {len(WAYS)} ways to close: nothing left behind")


if __name__ == "__main__":
    if len(sys.argv) != 4:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2], int(sys.argv[3]))
