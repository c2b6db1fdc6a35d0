#!/usr/bin/python3
"""Checks that LibreOffice opens a workbook that ZavHost wrote and finds the values ZavHost reports.

    opens_in_libreoffice.py WINE_RUN ZAVHOST WORKBOOK SCRATCH_FOLDER

In a workbook with formulas that leaves out what LibreOffice recalculates on load, knowing no function of the add-in:
array formulas, and formulas whose stored result is an error, an empty text or a truth value. A workbook of values
shows all of them.
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
    if isinstance(value, bool):
        return shown == str(value).upper()
    if isinstance(value, dict):
        return shown == value["error"]
    if isinstance(value, (int, float)):
        number = float(shown[:-1]) / 100 if shown.endswith("%") else float(shown or "nan")
        return abs(number - value) <= 1e-9 * max(1.0, abs(value))
    return shown == (value or "")


def is_recalculated(cell):
    return "array" in cell or cell["value"] == "" or isinstance(cell["value"], (bool, dict))


def first_value(cell):
    value = cell["value"]
    while isinstance(value, list):
        value = value[0]
    return value


def compared_cells(run, workbook, folder, options):
    """How many cells of the workbook that `run` writes have the same values in LibreOffice."""
    folder.mkdir(parents=True, exist_ok=True)
    written = folder / "written.xlsx"
    report = json.loads(subprocess.run([*run, "run", "--json", workbook, "-o", str(written), *options],
                                       check=True, capture_output=True).stdout)
    # Formatted as shown would round; the fields say: raw values, every sheet into a file of its own.
    subprocess.run(["soffice", f"-env:UserInstallation=file://{folder.resolve()}/profile", "--headless",
                    "--convert-to", 'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false,false,false,false,-1',
                    "--outdir", str(folder), str(written)], check=True, capture_output=True, timeout=180)
    compared = 0
    for sheet in dict.fromkeys(cell["sheet"] for cell in report["cells"]):
        with open(folder / f"written-{sheet}.csv", newline="", encoding="utf-8") as file:
            rows = list(csv.reader(file))
        for cell in report["cells"]:
            if cell["sheet"] != sheet or (not options and is_recalculated(cell)):
                continue
            shown = cell_of(rows, cell["cell"])
            if not same(shown, first_value(cell)):
                sys.exit(f"{sheet}!{cell['cell']}: LibreOffice has {shown!r}, ZavHost {cell['value']!r}")
            compared += 1
    return compared


def main():
    wine_run, zavhost, workbook, folder = sys.argv[1:]
    formulas = compared_cells([wine_run, zavhost], workbook, pathlib.Path(folder), [])
    values = compared_cells([wine_run, zavhost], workbook, pathlib.Path(folder) / "values", ["--values-only"])
    if formulas == 0 or values < formulas:
        sys.exit(f"only {formulas} and {values} cells were compared")
    print(f"{formulas} cells, and {values} of a workbook of values, have the same values in LibreOffice")


if __name__ == "__main__":
    main()
