#!/usr/bin/env python3
"""Works the drive mode itself: delays, commands in the meantime, silent servers, lines that are no commands, and ends.

    meanwhile.py PROGRAM DATABASE
"""
import json
import os
import signal
import subprocess
import sys
import tempfile
import time

from replay import Program

OPEN = {"do": "incarca", "kind": "Import", "date": "2026-03-15", "soc": ""}
RUN = {"do": "click", "control": "Raport"}
STATE = {"do": "state"}
ESC = {"do": "key", "key": "Esc"}
LONG = {"do": "delay", "seconds": 60}


class Script(Program):
    def __init__(self, program, database, *options):
        self.process = subprocess.Popen([program, "drive", "--db", database, *options], stdin=subprocess.PIPE,
                                        stdout=subprocess.PIPE, env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))

    def do(self, command):
        answer = self.answer(command)
        assert answer is not None and answer["ok"], f"{command}: {answer}"
        return answer

    def hold(self, seconds):
        self.do({"do": "delay", "seconds": seconds})

    def meanwhile(self, command, *nested, after=0):
        """The answer to a command, with the answers to what was given meanwhile."""
        self.do({"do": "during", "commands": list(nested), "after": after})
        return self.do(command)

    def controls(self):
        return self.do(STATE)["state"]["controls"]


def vias(answer):
    return [statement["via"] for statement in answer["sql"]]


def setup_that_waits(script):
    """While the setup waits for the server, the window is locked and a second call is refused."""
    script.hold(1)
    second = dict(OPEN, kind="Export")
    answer = script.meanwhile(OPEN, STATE, {"do": "key", "key": "Tab"}, {"do": "click", "control": "chkTotale"}, second)
    state, key, click, refused = answer["during"]
    assert answer["left"] == 0 and answer["error"] is None, answer
    assert state["state"]["window"]["loaded"], state["state"]["window"]
    assert key["focus"] == click["focus"] == "cmbTipRaport", "input reached the window"
    assert refused["error"]["number"] == 5 and refused["sql"] == [], refused
    assert vias(answer) == ["execute", "recordset"], answer["sql"]
    controls = script.controls()
    assert not controls["chkTotale"]["value"], "a click reached the window"


def lookup_that_is_stopped(script):
    script.do({"do": "focus", "control": "txtTipClient"})
    script.do(LONG)
    start = time.monotonic()
    answer = script.meanwhile({"do": "key", "key": "Enter"}, {"do": "focus", "control": "chkTotale"}, ESC, STATE)
    assert time.monotonic() - start < 30, "the delay outlived the stop"
    assert [each["focus"] for each in answer["during"]] == ["txtTipClient"] * 2, answer["during"]
    assert answer["left"] == 1, "what was stopped has ended when the next command comes"
    assert answer["messages"] == [] and answer["focus"] == "txtTipClient", answer
    assert script.do({"do": "key", "key": "Enter"})["focus"] == "Grid", "the next lookup does not wait"
    script.do(ESC)


def report_that_loads(script):
    script.hold(1)
    start = time.monotonic()
    answer = script.meanwhile(RUN, STATE, {"do": "key", "key": "Tab"}, STATE, after=0.2)
    assert time.monotonic() - start >= 1, "the report did not wait"
    assert answer["left"] == 0 and vias(answer) == ["command"] and answer["focus"] == "CRW", answer
    first, last = answer["during"][0]["state"], answer["during"][2]["state"]
    for state in (first, last):
        assert state["controls"]["CRW"]["busy"] and state["controls"]["fraMesaj"]["visible"], state["controls"]["CRW"]
        assert state["window"]["pointer"] == "hourglass", state["window"]
    assert script.do({"do": "wait"})["seconds"] < 1, "the command is answered when its report has loaded"
    assert script.do({"do": "report"})["report"] is not None
    script.do({"do": "click", "control": "cmdViz"})


def report_that_loads_at_once(script):
    """However fast it loads, the window has not seen its end before it dispatches."""
    for _ in range(20):
        assert len(script.meanwhile(RUN, STATE)["during"]) == 1
        script.do({"do": "click", "control": "cmdViz"})


def report_that_is_stopped(script):
    for stop in (ESC, {"do": "viewer", "action": "stop"}):
        script.do(LONG)
        answer = script.meanwhile(RUN, stop, STATE)
        assert answer["left"] == 1 and answer["messages"] == [], answer
        controls = script.controls()
        assert not controls["CRW"]["busy"] and controls["Raport"]["enabled"], "the wait state stayed"
        script.do({"do": "click", "control": "cmdViz"})


def report_whose_window_closes(script):
    script.do(LONG)
    answer = script.meanwhile(RUN, {"do": "close"}, STATE)
    assert answer["left"] == 1 and answer["focus"] is None, answer
    assert not script.do(STATE)["state"]["window"]["loaded"]
    script.do(OPEN)


def nothing_that_runs(script):
    """Without a statement of its own a command leaves them all; a report that loads from before is not its own."""
    answer = script.meanwhile({"do": "focus", "control": "txtTipClient"}, ESC, STATE)
    assert answer["during"] == [] and answer["left"] == 2, answer
    script.hold(1)
    script.do(RUN)
    assert script.meanwhile(STATE, ESC)["left"] == 1
    answer = script.meanwhile({"do": "wait"}, ESC)
    assert answer["left"] == 0 and not answer["timedOut"], answer
    assert "during" not in script.do({"do": "click", "control": "cmdViz"}), "they are for one command"


def lines_that_are_refused(script):
    for line in ("", "hello", "[]", "{}", '{"do":"fly"}', '{"do":"key","key":"F13"}', '{"do":"click","control":"x"}',
                 '{"do":"during","commands":[{"do":"wait"}]}', '{"do":"during","commands":[{"do":"key"}]}',
                 '{"do":"click","control":"cmbDepozit","row":1}', '{"do":"delay","seconds":-1}'):
        script.process.stdin.write(line.encode() + b"\n")
        script.process.stdin.flush()
        answer = json.loads(script.process.stdout.readline())
        assert not answer["ok"] and answer["why"], f"{line}: {answer}"
    script.do(STATE)


def silent_server(program, database):
    script = Script(program, database, "--timeout", "0.3")
    script.do(LONG)
    answer = script.do(OPEN)
    assert "no answer for 0.3 seconds" in answer["error"]["description"], answer["error"]
    assert script.do(OPEN)["error"] is None, "the connection is no longer usable"
    script.do(LONG)
    script.do(RUN)
    script.do({"do": "wait"})
    assert script.do({"do": "report"})["report"] is None
    failure = script.controls()["CRW"]["failure"]
    assert failure["number"] == -2147217900 and "no answer for 0.3 seconds" in failure["description"], failure
    assert script.end() == 0


def silent_export(program):
    """A report whose rows come too late: status 1, the reason in one line, the old file as it was."""
    with tempfile.TemporaryDirectory() as folder:
        database, out = os.path.join(folder, "sample.db"), os.path.join(folder, "report.csv")
        surroundings = dict(os.environ, QT_QPA_PLATFORM="offscreen")
        subprocess.check_call([program, "sample-db", database, "--documents", "50000"], env=surroundings)
        with open(out, "w", encoding="utf-8") as old:
            old.write("old")
        ended = subprocess.run([program, "export", "--db", database, "--kind", "Import", "--from", "2026-01-01", "--to",
                                "2026-12-31", "--out", out, "--timeout", "0.01"], env=surroundings, check=False,
                               stderr=subprocess.PIPE, text=True)
        words = [line for line in ended.stderr.splitlines() if line.startswith("velcoran-host:")]
        assert ended.returncode == 1 and len(words) == 1, ended
        assert "no answer for 0.01 seconds" in words[0], words
        with open(out, encoding="utf-8") as old:
            assert old.read() == "old", "the old file was touched"


def ends_at_once(program, database):
    lookup = ({"do": "focus", "control": "txtTipClient"}, LONG, {"do": "key", "key": "Enter"})
    waits = {
        "nothing": ((), None),
        "a setup": ((LONG,), OPEN),
        "a lookup": ((OPEN, *lookup[:-1]), lookup[-1]),
        "a report": ((OPEN, LONG, RUN), {"do": "wait"}),
    }
    ends = {"SIGTERM": (lambda process: process.send_signal(signal.SIGTERM), 128 + signal.SIGTERM),
            "a closed output": (lambda process: process.stdout.close(), 1)}
    for how, (end, status) in ends.items():
        for what, (before, last) in waits.items():
            script = Script(program, database)
            script.do({"do": "formats"})
            for command in before:
                script.do(command)
            if last is not None:
                script.process.stdin.write(json.dumps(last).encode() + b"\n")
                script.process.stdin.flush()
                time.sleep(0.5)  # so that it waits
            start = time.monotonic()
            end(script.process)
            got = script.process.wait(60)
            assert got == status, f"{how} during {what}: status {got}"
            assert time.monotonic() - start < 10, f"{how} during {what} took {time.monotonic() - start} s"


def main(program, database):
    script = Script(program, database)
    for step in (setup_that_waits, lookup_that_is_stopped, report_that_loads, report_that_loads_at_once,
                 report_that_is_stopped, report_whose_window_closes, nothing_that_runs, lines_that_are_refused):
        try:
            step(script)
        except AssertionError as failure:
            sys.exit(f"{step.__name__}: {failure}")
    assert script.end() == 0, "the program ended with a failure"
    silent_server(program, database)
    silent_export(program)
    ends_at_once(program, database)
    print("commands meanwhile, silence and ends: as they are described")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
