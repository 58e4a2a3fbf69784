#!/usr/bin/env python3
"""Times the window from outside, through drive mode, each measurement beside its floor in the same run.

    window_bench.py PROGRAM BARE_STATEMENT DOCUMENTS...

For each size: opening the window above its two statements; the first page of a report against the bare statement, and
the memory that its rows take; then the keys of a picker over 200,000 suppliers.
"""
import json
import os
import sqlite3
import subprocess
import sys
import tempfile
import time

ROUNDS = 3
SUPPLIERS = 200_000
MANY_ROWS = 1_000_000


class Window:
    def __init__(self, program, database):
        self.process = subprocess.Popen([program, "drive", "--db", database], stdin=subprocess.PIPE, text=True,
                                        stdout=subprocess.PIPE, stderr=subprocess.DEVNULL,
                                        env={**os.environ, "QT_QPA_PLATFORM": "offscreen"})

    def do(self, **command):
        """Answers with the answer and the seconds it took."""
        start = time.perf_counter()
        self.process.stdin.write(json.dumps(command) + "\n")
        self.process.stdin.flush()
        answer = json.loads(self.process.stdout.readline())
        assert answer["ok"] and not answer["error"] and not answer["messages"], answer
        return answer, time.perf_counter() - start

    def memory(self):
        with open(f"/proc/{self.process.pid}/status", encoding="ascii") as status:
            return next(int(line.split()[1]) * 1024 for line in status if line.startswith("RssAnon"))

    def end(self):
        self.process.stdin.close()
        self.process.wait()


def line(what, measured, floor, value, limit, unit=""):
    verdict = "" if value <= limit else "   MISSED"
    print(f"{what:<44} {measured:>10} {floor:>10} {value:>8.2f}{unit} (limit {limit}{unit}){verdict}", flush=True)


def milliseconds(seconds):
    return f"{seconds * 1000:.1f} ms"


def run_bare(bare, database, text):
    done = subprocess.run([bare, database], input=text, capture_output=True, text=True, check=True)
    rows, seconds = done.stdout.split()
    return int(rows), float(seconds)


def opening(program, bare, database):
    best = []
    for _ in range(ROUNDS):
        window = Window(program, database)
        window.do(do="state")  # the process is up
        answer, seconds = window.do(do="incarca", kind="Import", date="2026-03-31", soc="")
        floor = sum(run_bare(bare, database, statement["text"])[1] for statement in answer["sql"])
        best.append((seconds, floor))
        window.end()
    seconds, floor = min(best)
    line("open the window (above its statements)", milliseconds(seconds), milliseconds(floor),
         (seconds - floor) * 1000, 60, " ms")


def first_page(program, bare, database, documents):
    window = Window(program, database)
    window.do(do="incarca", kind="Import", date="2026-03-31", soc="")
    window.do(do="date", control="Deladata", value="2026-01-01")
    window.do(do="date", control="Ladata", value="2027-01-31")
    empty = window.memory()
    taken, floors = [], []
    for number in range(ROUNDS):
        if number:
            window.do(do="click", control="cmdViz")
        answer, clicked = window.do(do="click", control="Raport")
        text = next(statement["text"] for statement in answer["sql"] if statement["via"] == "command")
        _, waited = window.do(do="wait", seconds=600)
        taken.append(clicked + waited)
        if number == 0:
            memory = window.memory() - empty
        rows, floor = run_bare(bare, database, text)
        floors.append(floor)
    got = window.do(do="report")[0]["report"]
    assert got["rows"] == rows, f"{got['rows']} rows, {rows} wanted"
    window.end()
    line(f"first page of {rows:,} rows ({documents:,} documents)", milliseconds(min(taken)), milliseconds(min(floors)),
         min(taken) / min(floors), 1.2)
    if rows >= MANY_ROWS:  # below, pictures of pages and the database's cache weigh more than the rows
        line(f"memory of {rows:,} rows", f"{memory / 2**20:.1f} MiB", "", memory / rows, 160, " B/row")


def picker(program, folder):
    database = os.path.join(folder, "suppliers.db")
    subprocess.run([program, "sample-db", database], check=True, stdout=subprocess.DEVNULL)
    connection = sqlite3.connect(database)
    columns = [row[1] for row in connection.execute("PRAGMA table_info(Furnizori)")]
    values = ", ".join({"Furnizor": "printf('X%06d', n)", "Denumire Furnizor": "printf('FIRMA %d SRL', n * 7919 % 200000)",
                        "Inactiv": "0"}.get(name, "NULL") for name in columns)
    connection.execute(f"WITH RECURSIVE s(n) AS (SELECT 1 UNION ALL SELECT n + 1 FROM s LIMIT {SUPPLIERS}) "
                       f"INSERT INTO Furnizori SELECT {values} FROM s")
    connection.commit()
    connection.close()
    window = Window(program, database)
    window.do(do="incarca", kind="Import", date="2026-03-31", soc="")
    window.do(do="focus", control="txtCodClient")
    _, opened = window.do(do="key", key="Enter")
    window.do(do="cell", row=1, column=2)
    keys = [window.do(do="type", text=character)[1] for character in "FIRMA 1234"]
    keys += [window.do(do="type", text="#")[1]]  # matches nothing: the whole list again
    keys += [window.do(do="key", key=key)[1] for key in ("End", "Home", "PageDown")]
    floor = min(window.do(do="focus", control="Grid")[1] for _ in range(ROUNDS))
    window.end()
    line(f"a key in the picker of {SUPPLIERS:,} rows, slowest", milliseconds(max(keys)), milliseconds(floor),
         max(keys) * 1000, 50, " ms")
    print(f"    the picker itself opened in {milliseconds(opened)}")


def main(program, bare, *sizes):
    print(f"{'':<44} {'measured':>10} {'floor':>10}")
    with tempfile.TemporaryDirectory() as folder:
        for documents in map(int, sizes):  # about a quarter of the documents are rows of the report
            database = os.path.join(folder, f"{documents}.db")
            subprocess.run([program, "sample-db", database, "--documents", str(documents)], check=True,
                           stdout=subprocess.DEVNULL)
            opening(program, bare, database)
            first_page(program, bare, database, documents)
            os.remove(database)
        picker(program, folder)


if __name__ == "__main__":
    if len(sys.argv) < 4:
        sys.exit(__doc__)
    main(*sys.argv[1:])
