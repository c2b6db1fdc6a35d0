#!/usr/bin/python3
"""Calculates self-test.xlsx with the real add-in: everything agrees, and faults that are planted in copies of it are
found, each by the line that it concerns and by the verdict.

    check_self_test.py WINE_RUN ZAVHOST SCRATCH_FOLDER
"""

import json
import pathlib
import subprocess
import sys

from openpyxl import load_workbook

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "examples"))
import make_self_test  # noqa: E402

BOOK = ROOT / "examples/self-test.xlsx"
FIRST = make_self_test.FIRST_ROW
wine_run, zavhost, scratch = sys.argv[1:]
problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


def calculate(book):
    """The values by sheet and cell."""
    run = subprocess.run([wine_run, zavhost, "run", "--all", "--json", str(book)], capture_output=True, text=True,
                         encoding="utf-8")
    if run.returncode != 0 or run.stderr:
        sys.exit(f"ZavHost run ended with {run.returncode}: {run.stderr}")
    cells = json.loads(run.stdout)["cells"]
    check(not any("_xll." in cell["formula"] for cell in cells), "the listing shows formulas as files have them")
    return {(cell["sheet"], cell["cell"]): cell["value"] for cell in cells}


def changed(name, change):
    """A copy of the workbook after change(book), calculated."""
    book = load_workbook(BOOK)
    change(book)
    file = pathlib.Path(scratch) / f"{name}.xlsx"
    book.save(file)
    return calculate(file)


def disagreeing(values):
    return [int(cell[1:]) for (sheet, cell), value in values.items()
            if sheet == "Self-test" and cell[0] == make_self_test.AGREES and value != 1]


def fill_macros(book):
    """What the macro should write, with one fault."""
    sheet = book["Macros"]
    for row in range(FIRST, FIRST + len(make_self_test.MACROS)):
        sheet[f"C{row}"] = sheet[f"D{row}"].value
    sheet[f"C{FIRST + 4}"] = 5.5


def main():
    pathlib.Path(scratch).mkdir(parents=True, exist_ok=True)
    sheet = load_workbook(BOOK)["Self-test"]
    count = sheet.max_row - FIRST + 1
    lines = {row: sheet[f"B{row}"].value for row in range(FIRST, sheet.max_row + 1)}

    values = calculate(BOOK)
    for row in disagreeing(values):
        problems.append(f"{lines[row]} is {values['Self-test', f'C{row}']}, not {sheet[f'D{row}'].value}")
    check(values["Self-test", "B4"] == f"All {count} agree", f"the verdict is: {values['Self-test', 'B4']}")
    check(values["Macros", "B4"].startswith("Not run yet"), f"of macros: {values['Macros', 'B4']}")

    # Expected values of each kind, each off by a little; and a cell of the data.
    planted = {}
    for row, formula in lines.items():
        cell = sheet[f"D{row}"]
        kind = "error" if str(cell.value).startswith("#") else type(cell.value).__name__
        if kind in ("int", "float", "bool", "str", "error") and "(" not in str(cell.value):
            planted[kind] = row
    other = {"int": lambda x: x + 1, "float": lambda x: x * (1 + 1e-6), "bool": lambda x: not x, "str": lambda x: x + "x"}
    kinds = [kind for kind in other if kind in planted]
    check(len(kinds) == 4, f"kinds of results: {kinds}")

    def plant(book):
        for kind in kinds:
            cell = book["Self-test"][f"D{planted[kind]}"]
            cell.value = other[kind](cell.value)

    values = changed("expected", plant)
    check(disagreeing(values) == sorted(planted[kind] for kind in kinds), f"found: {disagreeing(values)}")
    check(values["Self-test", "B4"].startswith(f"{len(kinds)} of {count} differ"), values["Self-test", "B4"])

    def spoil(book):
        book["air-quality"]["F30"] = 99

    found = [lines[row] for row in disagreeing(changed("data", spoil))]
    check(found and all("Temp" in line or "'air-quality'!F" in line for line in found), f"spoilt data: {found}")

    # A wrong function, an error in place of another, and no function at all.
    def misname(book):
        book["Self-test"][f"C{planted['error']}"] = "=1/0+_xll.ZavSum(1)" if sheet[
            f"D{planted['error']}"].value != "#DIV/0!" else "=_xll.ZavNoSuch(1)"
        book["Self-test"][f"C{FIRST + 1}"] = "=_xll.ZavNoSuch(1)"

    values = changed("unknown", misname)
    check(disagreeing(values) == sorted([FIRST + 1, planted["error"]]), f"unknown: {disagreeing(values)}")
    check("companion workbook is not open" in values["Self-test", "B4"], values["Self-test", "B4"])

    values = changed("macros", fill_macros)
    check(values["Macros", "B4"].startswith(f"1 of {len(make_self_test.MACROS)} differ"), values["Macros", "B4"])
    print("\n".join(problems))
    print(f"{count} lines of the self-test calculated, {len(problems)} problems")
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
