#!/usr/bin/env python3
"""Exports a report in every format under a locale with decimal commas, and finds the same numbers as without it.

    locale_numbers.py PROGRAM DATABASE
"""
import os
import re
import subprocess
import sys
import tempfile
import zipfile

AMOUNT = re.compile(r"-?\d{1,3}(?:\.\d{3})*,\d{2}(?!\d)")


def numbers(path):
    if path.endswith(".xlsx"):
        with zipfile.ZipFile(path) as book:
            sheets = [name for name in sorted(book.namelist()) if name.startswith("xl/worksheets/sheet")]
            return [float(cell) for name in sheets for cell in re.findall(r"<v>([^<]*)</v>", book.read(name).decode())]
    if path.endswith(".odt"):
        with zipfile.ZipFile(path) as text:
            return AMOUNT.findall(re.sub(r"<[^>]*>", " ", text.read("content.xml").decode()))
    if path.endswith(".pdf"):
        return AMOUNT.findall(subprocess.check_output(["pdftotext", "-layout", path, "-"], text=True))
    with open(path, encoding="utf-8-sig") as file:
        return re.findall(r"-?\d+,\d{2,}", file.read()) if path.endswith(".csv") else AMOUNT.findall(file.read())


def export(program, database, folder, ending, environment):
    path = os.path.join(folder, "raport." + ending)
    subprocess.run([program, "export", "--db", database, "--kind", "Import", "--from", "2026-01-01", "--to",
                    "2026-12-31", "--out", path], env=dict(os.environ, **environment), check=True)
    return numbers(path)


def main():
    program, database = sys.argv[1:]
    bad = 0
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run(["localedef", "-i", "ro_RO", "-f", "UTF-8", os.path.join(folder, "ro_RO.UTF-8")], check=True)
        romanian = {"LOCPATH": folder, "LC_ALL": "ro_RO.UTF-8"}
        shown = subprocess.check_output(["locale", "decimal_point"], env=dict(os.environ, **romanian), text=True)
        assert shown.strip() == ",", "the compiled locale is not in force"
        for ending in ("pdf", "xlsx", "csv", "html", "odt", "txt"):
            plain = export(program, database, folder, ending, {"LC_ALL": "C.UTF-8"})
            found = export(program, database, folder, ending, romanian)
            if len(plain) < 100 or plain != found:
                print(f"{ending}: {len(plain)} numbers without the locale, {len(found)} with it, or others")
                bad += 1
    return 1 if bad else 0


if __name__ == "__main__":
    sys.exit(main())
