#!/usr/bin/env python3
"""Pastes and stores hostile values and finds that none reaches the database, and every row afterwards.

    fence.py PROGRAM DATABASE
"""
import os
import shutil
import sqlite3
import sys
import tempfile

from replay import Program

OPEN = {"do": "incarca", "kind": "Import", "date": "2026-03-15", "soc": ""}
ENTER = {"do": "key", "key": "Enter"}
PASTED = ("');delete from Agenti;--", "');delete from Agenti where ('", "x' delete from Agenti--", "';DELETE FROM Agenti;--")
STORED = "x');delete from Depozite;--"
REFUSED = "Interogarea a fost oprită înainte de a ajunge la baza de date: "


def counts(database):
    with sqlite3.connect(database) as opened:
        tables = [name for (name,) in opened.execute("SELECT name FROM sqlite_master WHERE type='table'")]
        return {name: opened.execute(f"SELECT count(*) FROM [{name}]").fetchone()[0] for name in sorted(tables)}


def store(database):
    """Gives a product type, and its products, a hostile code."""
    with sqlite3.connect(database) as opened:
        (code,) = opened.execute("SELECT min(t.[Tip Produs]) FROM TipuriProduse t JOIN CoduriProdus c "
                                 "ON c.[Tip Produs]=t.[Tip Produs] WHERE t.Fel IN (0,3,7)").fetchone()
        for table in ("TipuriProduse", "CoduriProdus"):
            opened.execute(f"UPDATE {table} SET [Tip Produs]=? WHERE [Tip Produs]=?", (STORED, code))


def paste(script):
    script.answer({"do": "focus", "control": "txtCodAgent"})
    for text in PASTED:
        script.answer({"do": "paste", "text": text})
        answer = script.answer(ENTER)
        assert any(text in each["text"] for each in answer["sql"]), "a refused text is still seen"
        assert [each["text"] for each in answer["messages"]] == ["Nu s-au gasit Inregistrari !!"], answer
        assert answer["focus"] == "txtCodAgent", answer
        script.answer({"do": "key", "key": "End"})
        script.answer({"do": "key", "key": "Backspace", "repeat": len(text)})


def pick_and_run(script):
    script.answer({"do": "focus", "control": "txtTipProdus"})
    opened = script.answer(ENTER)
    assert opened["focus"] == "Grid", opened
    rows = script.answer({"do": "state"})["state"]["controls"]["Grid"]["rows"]
    row = [each[0] for each in rows].index(STORED) + 1
    script.answer({"do": "click", "control": "Grid", "row": row, "column": 1})
    assert script.answer({"do": "state"})["state"]["controls"]["txtTipProdus"]["text"] == STORED
    answer = script.answer({"do": "click", "control": "Raport"})
    assert len(answer["messages"]) == 1, answer
    words = answer["messages"][0]
    assert words["text"].startswith("-2147217900" + REFUSED) and words["style"] == 16, words


def check_trace(trace, refused):
    assert os.stat(trace).st_mode & 0o777 == 0o600
    with open(trace, encoding="utf-8") as told:
        lines = told.read().splitlines()
    found = sum(REFUSED in line for line in lines)
    assert found == refused, f"{found} texts refused, not {refused}:\n" + "\n".join(lines)
    assert any(" record " in line for line in lines), "no record of the driver"
    assert not any("geheim99" in line for line in lines), "a password in the trace"


def main(program, database):
    with tempfile.TemporaryDirectory() as folder:
        copy, trace = os.path.join(folder, "copy.db"), os.path.join(folder, "trace.txt")
        shutil.copy(database, copy)
        store(copy)
        before = counts(copy)
        # The driver has none of the server's functions: the list of warehouses stays empty, the lookups work.
        odbc = Program(program, f"Driver=SQLite3;Database={copy};PWD=geheim99", "--odbc", "--trace", trace)
        odbc.answer(OPEN)
        paste(odbc)
        assert odbc.end() == 0
        check_trace(trace, len(PASTED))
        file = Program(program, copy, "--db", "--trace", trace)
        file.answer(OPEN)
        paste(file)
        pick_and_run(file)
        assert file.end() == 0
        check_trace(trace, 2 * len(PASTED) + 1)
        assert counts(copy) == before, f"{before} before, {counts(copy)} afterwards"
        print(f"{2 * len(PASTED) + 1} hostile texts refused, every row still there")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(*sys.argv[1:])
