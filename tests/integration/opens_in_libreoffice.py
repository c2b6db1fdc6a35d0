#!/usr/bin/python3
"""Checks that LibreOffice opens a workbook that ZavHost wrote and finds the values ZavHost reports.

    opens_in_libreoffice.py WINE_RUN ZAVHOST WORKBOOK SCRATCH_FOLDER

Left out is what LibreOffice recalculates on load, knowing no function of the add-in: array formulas, and
formulas whose stored result is an error, an empty text or a truth value.
"""

import csv
import json
import pathlib
import subprocess
import sys


def cell_of(rows, name):
    letters = name.rstrip("0123456789")
    column = 0
    for letter in letters:
        column = 26 * column + ord(letter) - 64
    row = rows[int(name[len(letters):]) - 1]
    return row[column - 1] if column <= len(row) else ""


def same(shown, value):
    if isinstance(value, (int, float)):
        number = float(shown[:-1]) / 100 if shown.endswith("%") else float(shown or "nan")
        return abs(number - value) <= 1e-9 * max(1.0, abs(value))
    return shown == (value or "")


def main():
    wine_run, zavhost, workbook, folder = sys.argv[1:]
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    written = folder / "written.xlsx"
    report = json.loads(subprocess.run([wine_run, zavhost, "run", "--json", workbook, "-o", str(written)],
                                       check=True, capture_output=True).stdout)
    sheets = list(dict.fromkeys(cell["sheet"] for cell in report["cells"]))
    # Formatted as shown would round; the fields say: raw values, every sheet into a file of its own.
    subprocess.run(["soffice", f"-env:UserInstallation=file://{folder.resolve()}/profile", "--headless",
                    "--convert-to", 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false,false,false,false,-1',
                    "--outdir", str(folder), str(written)], check=True, capture_output=True, timeout=180)
    compared = 0
    for sheet in sheets:
        with open(folder / f"written-{sheet}.csv", newline="", encoding="utf-8") as file:
            rows = list(csv.reader(file))
        for cell in report["cells"]:
            if cell["sheet"] != sheet or "array" in cell or cell["value"] == "":
                continue
            if isinstance(cell["value"], (bool, dict)):
                continue
            shown = cell_of(rows, cell["cell"])
            if not same(shown, cell["value"]):
                sys.exit(f"{sheet}!{cell['cell']}: LibreOffice has {shown!r}, ZavHost {cell['value']!r}")
            compared += 1
    if compared == 0:
        sys.exit("no cell was compared")
    print(f"{compared} cells have the same values in LibreOffice")


if __name__ == "__main__":
    main()
