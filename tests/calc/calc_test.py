#!/usr/bin/python3
"""The extension in LibreOffice Calc: what Calc computes with it, against what ZavHost computes.

    calc_test.py EXTENSION ZAVHOST SCRATCH_FOLDER
"""
import json
import pathlib
import struct
import subprocess
import sys

import office

ROOT = pathlib.Path(__file__).resolve().parents[2]
# Calc's codes of the errors, and Excel's names for them.
ERRORS = {521: "#NULL!", 532: "#DIV/0!", 519: "#VALUE!", 524: "#REF!", 525: "#NAME?", 503: "#NUM!", 32767: "#N/A"}
XLSX, ODS, XLS = "Calc MS Excel 2007 XML", "calc8", "MS Excel 97"
# Calc itself fails before it calls: a union, and an array with an error in it.
REFUSED = 504


def host_cells(zavhost, book):
    """{(sheet, cell): value} of every formula cell, arrays cell by cell; an error is its name."""
    run = subprocess.run([zavhost, "run", "--all", "--json", book], capture_output=True, text=True, encoding="utf-8")
    if run.returncode not in (0, 7):
        sys.exit(f"{book}: zavhost ended with {run.returncode}: {run.stderr}")
    return json.loads(run.stdout)["cells"]


def expected(cell):
    """(row, column, value) relative to the formula's cell."""
    value = cell["value"]
    rows = value if isinstance(value, list) else [[value]]
    for row, line in enumerate(rows):
        for column, item in enumerate(line):
            yield row, column, item


def calc_value(cell):
    error = cell.getError()
    if error:
        return ERRORS.get(error, f"Err:{error}")
    if cell.FormulaResultType2 == 2:  # a text
        return cell.String
    return cell.Value


def same(host, calc):
    if isinstance(host, bool):
        host = float(host)
    if isinstance(host, (int, float)) and isinstance(calc, float):
        return struct.pack("<d", host) == struct.pack("<d", calc)
    if isinstance(host, dict):
        host = host.get("error", host)
    return host == calc or (host in (None, "") and calc in ("", 0.0))


def differences(document, cells, skip=()):
    """[(place, formula, host's value, Calc's)] of the cells in which the two differ."""
    found, compared = [], 0
    for cell in cells:
        if "ZavRand" in cell["formula"]:
            continue
        first = document.Sheets.getByName(cell["sheet"]).getCellRangeByName(cell["cell"]).CellAddress
        sheet = document.Sheets.getByName(cell["sheet"])
        for row, column, value in expected(cell):
            got = calc_value(sheet.getCellByPosition(first.Column + column, first.Row + row))
            compared += 1
            if not same(value, got):
                found.append((f"{cell['sheet']}!{cell['cell']}+{row},{column}", cell["formula"], value, got))
    return compared, found


def main():
    extension, zavhost, scratch = sys.argv[1:]
    calc = office.Office(pathlib.Path(scratch) / "profile", extension)
    with calc:
        for book in sorted((ROOT / "examples").glob("*.xlsx")):
            document = calc.open(book)
            document.calculateAll()
            compared, found = differences(document, host_cells(zavhost, book))
            print(book.name, compared, len(found))
            for line in found:
                print("   ", *line)
            document.close(True)


if __name__ == "__main__":
    sys.exit(main())
