#!/usr/bin/env python3
"""Works the window by keys alone: every filter through its list, a report, back to the filters, out.

    keys.py PROGRAM DATABASE

The values are those of one document of the database, so the report must show it.
"""
import sqlite3
import sys

from replay import Program

DOCUMENT = """
    SELECT C.Document, C.[Data Documentului], P.P, T.Fel, T.[Tip Produs], G.[Grupa Produs], S.[Subgrupa Produs],
           P.[Cod Produs], F.[Tip Furnizor], F.[Categorie Furnizor], F.Furnizor, C.Agent, C.Depozit, C.[Denumire Furnizor]
    FROM CapDocIntE C JOIN [Linii DocIntE] L ON L.Document = C.Document
         JOIN CoduriProdus P ON P.[Cod Produs] = L.[Cod Produs] JOIN TipuriProduse T ON T.[Tip Produs] = P.[Tip Produs]
         JOIN Subgrupeprodus S ON S.[Subgrupa Produs] = P.[Subgrupa Produs]
         JOIN GrupeProdus G ON G.[Grupa Produs] = S.[Grupa Produs] JOIN Furnizori F ON F.Furnizor = C.Furnizor
         JOIN Agenti A ON A.Agent = C.Agent JOIN CPP ON CPP.p = P.P
         JOIN [Tip Furnizor] TF ON TF.[Tip Furnizor] = F.[Tip Furnizor]
         JOIN [Categorie Furnizor] CF ON CF.[Categorie Furnizor] = F.[Categorie Furnizor]
    WHERE C.EC = 63 AND C.Transferat IN ('F', 'T', 'S', 'R') AND T.Fel = 3 AND F.Inactiv = 0 AND A.Inactiv = 0
          AND C.[Data Documentului] LIKE '2026-05-%'
    ORDER BY C.Document"""
FIELDS = ("document", "day", "producer", "category", "type", "group", "subgroup", "product", "partner type",
          "partner category", "partner", "agent", "warehouse", "partner name")


class Keyboard(Program):
    """A person who has no mouse."""

    def do(self, **command):
        answer = self.answer(command)
        assert answer["ok"] and answer["error"] is None, f"{command}: {answer}"
        assert not answer["messages"], f"{command}: {answer['messages']}"
        return answer

    def press(self, key, focus):
        got = self.do(do="key", key=key)["focus"]
        assert got == focus, f"{key}: the focus is on {got}, not on {focus}"

    def state(self):
        return self.do(do="state")["state"]

    def look_up(self, field, value, focus, length=2, end=""):
        """Types the beginning of a code, opens the list, types ahead to the whole code and picks."""
        self.do(do="type", text=str(value)[:length] + end)
        self.press("Enter", "Grid")
        self.do(do="type", text=str(value))
        grid = self.state()["controls"]["Grid"]
        assert grid["rows"] and all(row[0].lower().startswith(str(value).lower()) for row in grid["rows"]), grid["rows"]
        self.press("Enter", focus)
        box = self.state()["controls"][field]
        assert box["text"] and not box["dataChanged"], f"{field}: {box}"


def choose_filters(keys, wanted):
    for focus in ("chkTotale", "cmbSortare", "Deladata", "Ladata", "txtProducator"):
        keys.press("Enter", focus)
    keys.look_up("txtProducator", wanted["producer"], "cmbCategorie", length=0)  # searched by name
    keys.press("Down", "cmbCategorie")  # the finished products
    keys.press("Enter", "txtTipProdus")
    keys.look_up("txtTipProdus", wanted["type"], "txtGrupaProdus")
    keys.look_up("txtGrupaProdus", wanted["group"], "txtSubGrupaProdus")
    keys.look_up("txtSubGrupaProdus", wanted["subgroup"], "txtCodProdus", end="/")  # "/" stands for anything
    keys.look_up("txtCodProdus", wanted["product"], "txtTipClient", length=0)
    keys.look_up("txtTipClient", wanted["partner type"], "txtCatClient")
    keys.look_up("txtCatClient", wanted["partner category"], "txtCodClient")
    keys.look_up("txtCodClient", wanted["partner"], "cmbDepozit", length=0)
    warehouses = keys.state()["controls"]["cmbDepozit"]["items"]
    row = [item.split(" - ")[0] for item in warehouses].index(str(wanted["warehouse"]))
    for _ in range(row):
        keys.press("Down", "cmbDepozit")
    keys.press("Space", "cmbDepozit")
    keys.press("Enter", "txtCodAgent")
    keys.look_up("txtCodAgent", wanted["agent"], "cmbSelectie", length=0)
    for focus in ("chkLohn", "Raport"):
        keys.press("Tab", focus)


def report(keys, wanted):
    keys.do(do="key", key="Enter")
    keys.do(do="wait", seconds=60)
    shown = keys.do(do="report")["report"]
    assert shown["groups"][0]["key"] == [wanted["partner"], wanted["partner name"]], shown["groups"]
    lines = keys.do(do="page", number=1)["lines"]
    assert any(wanted["document"] in line for line in lines), lines


def back_to_the_filters(keys):
    for _ in range(10):
        if keys.do(do="key", key="Tab")["focus"] == "cmdViz":
            break
    keys.press("Space", "cmbTipRaport")


def change_the_producer(keys, wanted):
    """A new producer resets the category and the product filters, and no other."""
    for focus in ("chkTotale", "cmbSortare", "Deladata", "Ladata", "txtProducator"):
        keys.press("Enter", focus)
    keys.do(do="key", key="Delete")
    keys.press("Enter", "Grid")
    keys.press("Down", "Grid")
    keys.press("Enter", "cmbCategorie")
    state = keys.state()
    emptied = [state["controls"][name]["text"] for name in
               ("cmbCategorie", "txtTipProdus", "txtGrupaProdus", "txtSubGrupaProdus", "txtCodProdus")]
    assert not any(emptied) and not state["members"]["sCodProdus"], emptied
    assert state["members"]["sCodClient"] == wanted["partner"], state["members"]


def main(program, database):
    found = sqlite3.connect(database).execute(DOCUMENT).fetchone()
    wanted = dict(zip(FIELDS, found))
    keys = Keyboard(program, database)
    keys.do(do="incarca", kind="Import", date=wanted["day"][:10], soc="")
    choose_filters(keys, wanted)
    report(keys, wanted)
    back_to_the_filters(keys)
    change_the_producer(keys, wanted)
    keys.do(do="key", key="Esc")
    assert not keys.state()["window"]["loaded"], "Esc left the window open"
    assert keys.end() == 0, "the program ended with a failure"
    print(f"{wanted['document']} found by keys alone")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
