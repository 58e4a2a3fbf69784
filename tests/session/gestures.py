#!/usr/bin/env python3
"""Works the window with held keys, open lists, double clicks and the other buttons, as hurried hands do.

    gestures.py PROGRAM DATABASE
"""
import sys

from replay import Program


class Hands(Program):
    def do(self, **command):
        answer = self.answer(command)
        assert answer["ok"] and answer["error"] is None and not answer["messages"], f"{command}: {answer}"
        return answer

    def control(self, name):
        return self.do(do="state")["state"]["controls"][name]

    def shown(self, name, *members):
        control = self.control(name)
        return tuple(control[member] for member in members)

    def expect(self, name, **members):
        got = self.control(name)
        got = {member: got[member] for member in members}
        assert got == members, f"{name}: {got}, wanted {members}"


def open_lists(hands):
    hands.do(do="focus", control="cmbCategorie")
    hands.do(do="key", key="F4")
    hands.expect("cmbCategorie", open=True, highlight=0, index=0)
    hands.do(do="key", key="Down", repeat=2)
    hands.expect("cmbCategorie", open=True, highlight=3, index=0)
    hands.do(do="click", control="cmbCategorie", row=9)
    hands.expect("cmbCategorie", open=True)
    hands.do(do="click", control="cmbCategorie", row=2)
    hands.expect("cmbCategorie", open=False, highlight=-1, index=2)
    hands.do(do="click", control="cmbCategorie", row=1)
    hands.expect("cmbCategorie", open=False, index=2)
    hands.do(do="key", key="Down", alt=True)
    hands.do(do="key", key="Esc", repeat=3)
    hands.expect("cmbCategorie", open=False, index=2)
    for _ in range(2):  # a press on the control closes its list and does not open it again
        hands.do(do="click", control="cmbCategorie")
    hands.expect("cmbCategorie", open=False)
    hands.do(do="click", control="cmbCategorie", double=True)
    hands.expect("cmbCategorie", open=False, index=2)
    hands.do(do="click", control="cmbCategorie")
    assert hands.do(do="click", control="chkLohn")["focus"] == "chkLohn"
    hands.expect("cmbCategorie", open=False, index=2)
    hands.expect("chkLohn", value=True)
    hands.do(do="click", control="cmbCategorie", button="right")
    hands.expect("cmbCategorie", open=False)


def double_clicks(hands):
    """What the first click closed does not let the second press through to what lies behind it."""
    for name, wanted in (("cmbSortare", 2), ("cmbTipRaport", 1), ("cmbCategorie", 3), ("cmbSelectie", 0)):
        before = hands.do(do="state")["state"]["controls"]
        hands.do(do="click", control=name)
        focus = hands.do(do="click", control=name, row=wanted, double=True)["focus"]
        assert focus == name, f"the second press on {name} gave the focus to {focus}"
        hands.expect(name, open=False, index=wanted)
        for box in ("chkTotale", "chkLohn"):
            hands.expect(box, value=before[box]["value"])
    hands.do(do="click", control="chkTotale", double=True)
    hands.expect("chkTotale", value=False)
    hands.do(do="focus", control="txtTipClient")
    assert hands.do(do="key", key="Enter", repeat=5)["focus"] == "Grid", "a held Enter picks"
    code = hands.control("Grid")["rows"][1][0]
    assert hands.do(do="click", control="Grid", row=2, column=1, double=True)["focus"] == "txtCatClient"
    hands.expect("txtTipClient", text=code)
    hands.expect("fraGrid", visible=False)


def covered_and_disabled(hands):
    hands.do(do="focus", control="txtCodAgent")
    assert hands.do(do="key", key="Enter")["focus"] == "Grid"
    for name in ("txtTipClient", "chkTotale", "cmbSortare"):
        assert hands.do(do="focus", control=name)["focus"] == "Grid", name
        hands.do(do="click", control=name)
    hands.expect("chkTotale", value=False)
    hands.expect("cmbSortare", open=False)
    for button in ("right", "middle"):
        assert hands.do(do="click", control="Grid", row=1, column=1, button=button)["focus"] == "Grid"
    assert hands.do(do="key", key="Esc", repeat=3)["focus"] == "txtCodAgent", "a held Esc closes the picker alone"


def typing(hands):
    hands.do(do="focus", control="txtGrupaProdus")
    hands.do(do="type", text=";x", alt=True)
    hands.expect("txtGrupaProdus", text="")
    hands.do(do="key", key="a", repeat=3)
    hands.do(do="key", key="b", shift=True)
    hands.do(do="key", key="7")
    hands.expect("txtGrupaProdus", text="aaaaB7", selStart=6)
    hands.do(do="key", key="Left", shift=True, repeat=1)
    hands.expect("txtGrupaProdus", selStart=4, selLength=2)
    hands.do(do="key", key="a", ctrl=True)
    hands.do(do="key", key="Plus")
    hands.expect("txtGrupaProdus", text="+")
    hands.do(do="key", key="Menu")
    hands.do(do="key", key="Esc")
    hands.do(do="key", key="Backspace", repeat=40)
    hands.expect("txtGrupaProdus", text="")


def dates(hands):
    hands.do(do="date", control="Deladata", value="2026-03-10")
    hands.do(do="key", key="F4")
    hands.do(do="key", key="Right", repeat=2)
    hands.do(do="key", key="Enter")
    hands.expect("Deladata", value="2026-03-13")


def accelerators(hands):
    answer = hands.do(do="key", key="r", alt=True)
    assert [each["via"] for each in answer["sql"]] == ["command"], answer
    assert hands.do(do="wait", seconds=60)["focus"] == "CRW"
    assert hands.do(do="type", text="d", alt=True)["focus"] == "cmbTipRaport", "Alt+D shows the filters"


def main(program, database):
    hands = Hands(program, database)
    hands.do(do="incarca", kind="Import", date="2026-03-15", soc="")
    hands.expect("Grid", columns=[], rows=[], row=0, column=0)  # before any lookup
    for step in (open_lists, double_clicks, covered_and_disabled, typing, dates, accelerators):
        try:
            step(hands)
        except AssertionError as failure:
            sys.exit(f"{step.__name__}: {failure}")
    assert hands.end() == 0, "the program ended with a failure"
    print("held keys, lists, double clicks and buttons: as a person has them")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit(__doc__)
    main(sys.argv[1], sys.argv[2])
