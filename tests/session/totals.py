#!/usr/bin/env python3
"""Compares a report over a large sample with sums of its own, made with another query over the same database.

    totals.py PROGRAM DOCUMENTS
"""
import collections
import decimal
import os
import sqlite3
import subprocess
import sys
import tempfile

from replay import Program

AMOUNTS = ("ValoareNeta", "ValoareTVA", "ValoareTaxe", "ValoareBruta")
# The supplier report without any filter over its whole period, one row a document.
DOCUMENTS = """
SELECT d.Furnizor, d.[Denumire Furnizor], d.[Tip Valuta], d.[Valoare Neta], d.[Valoare TVA], d.[Valoare Taxe]
FROM CapDocIntE d
WHERE d.EC = 63 AND d.Transferat IN ('F', 'T', 'S', 'R')
  AND d.[Data Documentului] BETWEEN '2026-01-01' AND '2026-12-31'
  AND EXISTS (SELECT 1 FROM Furnizori f WHERE f.Furnizor = d.Furnizor)
  AND EXISTS (SELECT 1 FROM [Linii DocIntE] l JOIN CoduriProdus p ON p.[Cod Produs] = l.[Cod Produs]
              JOIN TipuriProduse t ON t.[Tip Produs] = p.[Tip Produs]
              JOIN Subgrupeprodus s ON s.[Subgrupa Produs] = p.[Subgrupa Produs]
              JOIN GrupeProdus g ON g.[Grupa Produs] = s.[Grupa Produs]
              WHERE l.Document = d.Document AND t.Fel IN (0, 2, 3, 5, 6, 7))
"""


def exact(value):
    return decimal.Decimal(repr(value)) if value is not None else decimal.Decimal(0)


def expected(database):
    groups = collections.defaultdict(lambda: collections.defaultdict(lambda: [0] + [decimal.Decimal(0)] * 4))
    for code, name, currency, net, vat, taxes in sqlite3.connect(database).execute(DOCUMENTS):
        total = groups[(code, name or "")][currency]
        total[0] += 1
        for position, amount in enumerate((exact(net), exact(vat), exact(taxes), exact(net) + exact(vat) + exact(taxes))):
            total[position + 1] += amount
    return groups


def shown(report):
    return {tuple(group["key"]): {total["Moneda"]: [decimal.Decimal(total[name]) for name in AMOUNTS]
                                  for total in group["totals"]} for group in report["groups"]}


def main(program, documents):
    with tempfile.TemporaryDirectory() as folder:
        database = os.path.join(folder, "sample.db")
        subprocess.check_call([program, "sample-db", database, "--documents", documents, "--seed", "7"],
                              env=dict(os.environ, QT_QPA_PLATFORM="offscreen"))
        played = Program(program, database)
        for command in ({"do": "incarca", "kind": "Import", "date": "2026-01-15", "soc": ""},
                        {"do": "date", "control": "Ladata", "value": "2026-12-31"},
                        {"do": "click", "control": "Raport"}, {"do": "wait", "seconds": 600}):
            answer = played.answer(command)
            assert answer["ok"] and not answer.get("timedOut"), answer
        report = played.answer({"do": "report"})["report"]
        assert played.end() == 0
        wanted = expected(database)
    rows = sum(total[0] for group in wanted.values() for total in group.values())
    assert rows > int(documents) // 10, f"only {rows} documents fall under the filters"
    assert report["rows"] == rows, f"{report['rows']} rows, {rows} wanted"
    assert shown(report) == {key: {currency: total[1:] for currency, total in group.items()}
                             for key, group in wanted.items()}, "the groups or their totals differ"
    for total in report["totals"]:
        sums = [sum(group[total["Moneda"]][i + 1] for group in wanted.values() if total["Moneda"] in group)
                for i in range(4)]
        assert sums == [decimal.Decimal(total[name]) for name in AMOUNTS], f"{total} differs from {sums}"
    print(f"{rows} documents, {len(wanted)} groups, {len(report['totals'])} currencies: equal")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
