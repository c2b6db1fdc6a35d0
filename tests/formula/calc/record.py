#!/usr/bin/python3
"""Records what LibreOffice Calc gives for the formulas of make_formulas.py, in values.tsv.

Run it by hand after a change of the templates or of cells.txt. It needs the Debian packages
libreoffice-calc-nogui and python3-openpyxl, takes a few seconds, and calculates everything anew:

    /usr/bin/python3 tests/formula/calc/record.py

The workbook has formulas without stored values, so Calc must calculate them; a new profile takes
care that no user's settings count. Calc writes what it calculated into another workbook, with all
the 15 digits that it writes anywhere. Errors that only Calc has, such as Err:502 for an invalid
argument, are #VALUE! there, so their names come from a CSV file. values.tsv has a line for each
formula: its cells (several for an array formula), the formula, and the value as formulas write it,
an array row by row; an error that only Calc has is a text.

Settings that differ from a new installation's: texts are converted to numbers as in Excel, also
those that only an American reads as a date.
"""

import argparse
import csv
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
import zipfile
from pathlib import Path

import openpyxl
from openpyxl.utils import FORMULAE, coordinate_to_tuple
from openpyxl.workbook.defined_name import DefinedName

import make_formulas

HERE = Path(__file__).parent
MAIN = "{http://schemas.openxmlformats.org/spreadsheetml/2006/main}"
CONSTANT = re.compile(r'"[^"]*"|[^,;]+|[,;]')
FUNCTION = re.compile(r'"[^"]*"|([A-Z][A-Z0-9.]*)(?=\()')
# Names that openpyxl lacks in its list of old functions, and one that Calc's files abbreviate.
OLD_FUNCTIONS = FORMULAE | {"ADDRESS", "STDEV", "STDEVA", "STDEVPA", "STEYX", "TRUE", "WORKDAY"}
NAMES_IN_FILES = {"BINOM.DIST.RANGE": "B"}
PROFILE = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry">
<item oor:path="/org.openoffice.Office.Calc/Formula/Load">
<prop oor:name="OOXMLRecalcMode" oor:op="fuse"><value>0</value></prop></item>
<item oor:path="/org.openoffice.Office.Calc/Formula/Syntax">
<prop oor:name="StringConversion" oor:op="fuse"><value>3</value></prop></item>
<item oor:path="/org.openoffice.Setup/L10N">
<prop oor:name="ooSetupSystemLocale" oor:op="fuse"><value>en-US</value></prop></item>
</oor:items>
"""


def constant(text):
    if text.startswith('"'):
        return text[1:-1] or None
    if text in ("TRUE", "FALSE"):
        return text == "TRUE"
    return text if text.startswith("#") else float(text)


def fill(book):
    """Puts cells.txt into a workbook."""
    sheet = None
    for line in (HERE / "cells.txt").read_text(encoding="utf-8").splitlines():
        word, _, rest = line.partition(" ")
        if not line or word == "#":
            continue
        if word == "sheet":
            sheet = book.create_sheet(rest)
        elif word == "hide":
            sheet.row_dimensions[int(rest)].hidden = True
        elif word == "name":
            name, _, text = rest.partition(" ")
            book.defined_names.append(DefinedName(name, attr_text=text))
        else:
            first_row, first_column = row, column = coordinate_to_tuple(word)
            for part in CONSTANT.findall(rest.strip("{}")):
                if part == ",":
                    column += 1
                elif part == ";":
                    row, column = row + 1, first_column
                else:
                    cell = sheet.cell(row, column)
                    cell.value = constant(part)
                    if part.startswith('"') and cell.value is not None:
                        cell.data_type = "s"  # also of a text such as "#N/A"


def as_in_file(formula):
    """The formula with the prefixes that files have before the names of newer functions."""
    def prefixed(match):
        name = match.group(1)
        if name is None or name in OLD_FUNCTIONS:
            return match.group()
        return NAMES_IN_FILES.get(name, "_xlfn." + name)
    return "=" + FUNCTION.sub(prefixed, formula)


def write_workbook(path, cases):
    book = openpyxl.Workbook()
    book.remove(book.active)
    fill(book)
    sheet = book.worksheets[0]
    for case in cases:
        text = as_in_file(case.formula)
        cell = sheet.cell(case.row, case.column)
        cell.value = text
        if case.rows:
            sheet.formula_attributes[cell.coordinate] = {"t": "array", "ref": case.cells}
    book.save(path)


def calculate(path, folder):
    """The paths of the workbook and of the CSV file that Calc makes of this workbook."""
    profile = folder / "profile" / "user"
    profile.mkdir(parents=True, exist_ok=True)
    (profile / "registrymodifications.xcu").write_text(PROFILE)
    results = folder / "results"
    for kind in ("xlsx", "csv:Text - txt - csv (StarCalc):44,34,76"):
        subprocess.run(["soffice", f"-env:UserInstallation={(folder / 'profile').as_uri()}",
                        "--headless", "--convert-to", kind, "--outdir", results, path],
                       check=True, stdout=subprocess.DEVNULL, timeout=1200)
    return results / path.name, results / (path.stem + ".csv")


def quoted(text):
    if not text.isprintable():
        raise ValueError(f"values.tsv cannot hold the text {text!r}")
    return '"' + text.replace('"', '""') + '"'


def read_values(book, errors):
    """The values of the first sheet by cell, as text: 1.5, "text", TRUE, #N/A."""
    with open(errors, encoding="utf-8", newline="") as file:
        shown_cells = list(csv.reader(file))
    with zipfile.ZipFile(book) as package:
        strings = ["".join(text.text or "" for text in item.iter(MAIN + "t")) for item in
                   xml.fromstring(package.read("xl/sharedStrings.xml")).iter(MAIN + "si")]
        sheet = xml.fromstring(package.read("xl/worksheets/sheet1.xml"))
    values = {}
    for cell in sheet.iter(MAIN + "c"):
        value = cell.findtext(MAIN + "v")
        if value is None:
            continue
        kind = cell.get("t", "n")
        if kind == "s":
            value = strings[int(value)]
        if kind in ("s", "str"):
            value = quoted(value)
        elif kind == "b":
            value = "TRUE" if value == "1" else "FALSE"
        elif kind == "e":
            row, column = coordinate_to_tuple(cell.get("r"))
            value = shown_cells[row - 1][column - 1]
            if not value.startswith("#"):
                value = quoted(value)
        values[cell.get("r")] = value
    return values


def shown(case, values):
    """What Calc shows for a formula; an empty text has no value in the file."""
    rows = [[values.get(f"{make_formulas.column_name(case.column + column)}{case.row + row}", '""')
             for column in range(max(case.columns, 1))] for row in range(max(case.rows, 1))]
    text = ";".join(",".join(row) for row in rows)
    return "{" + text + "}" if case.rows else text


def main():
    parser = argparse.ArgumentParser(description="Records Calc's values in values.tsv.")
    parser.add_argument("--keep", type=Path, help="leave the workbooks in this folder")
    keep = parser.parse_args().keep
    cases = list(make_formulas.formulas())
    with tempfile.TemporaryDirectory() as temporary:
        folder = keep or Path(temporary)
        folder.mkdir(exist_ok=True)
        write_workbook(folder / "formulas.xlsx", cases)
        values = read_values(*calculate(folder / "formulas.xlsx", folder))
    with open(HERE / "values.tsv", "w", encoding="utf-8") as file:
        for case in cases:
            print(case.cells, case.formula, shown(case, values), sep="\t", file=file)
    print(len(cases), "values recorded", file=sys.stderr)


if __name__ == "__main__":
    main()
