#!/usr/bin/python3
"""Calculates every example of the help with the real add-in, and compares what the pages show.

    check_examples.py WINE_RUN ZAVHOST SCRATCH_FOLDER

The examples become the formulas of one workbook, a sheet for each page with the page's data from A1 on. A
shown number must be the calculated one to all digits that it has. Beside them stands how many rows each function
gives a tall calling range: as many as that has, if its row of functions.json says so, and only then.
"""

import json
import pathlib
import subprocess
import sys
from decimal import Decimal

from openpyxl import Workbook

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "help"), str(ROOT / "examples")]
from sheets import cell_value, enter_array, save  # noqa: E402
from tools import pages, registration  # noqa: E402

FIRST_COLUMN = 10  # of the formulas: no data reach it
ROWS_COLUMN = 40  # no result reaches it
TALL = 60  # no result has as many rows


def fill(sheet, page):
    """The page's data, and its examples by the cell of their formula."""
    for row in pages.data_rows(page.header["data"]) if "data" in page.header else []:
        sheet.append([cell_value(text) for text in row])
    placed = {}
    at = 1
    for example in page.examples:
        if example.is_array:
            cell = enter_array(sheet, at, FIRST_COLUMN, example.formula, len(example.rows), len(example.rows[0]))
        else:
            cell = sheet.cell(at, FIRST_COLUMN, example.formula).coordinate
        placed[cell] = example
        at += len(example.rows)
    for number, example in enumerate(e for e in page.examples if e.formula.startswith(f"={page.name}(")):
        enter_array(sheet, 1, ROWS_COLUMN + number, f"=ROWS({example.formula[1:]})", TALL, 1)
    return placed


def write_workbook(file, with_examples):
    """Gives the examples by sheet and cell."""
    workbook = Workbook()
    workbook.remove(workbook.active)
    placed = {}
    for page in with_examples:
        by_cell = fill(workbook.create_sheet(page.name), page)
        placed |= {(page.name, cell): example for cell, example in by_cell.items()}
    save(workbook, file)
    return placed


def calculate(wine_run, zavhost, workbook):
    """The values by sheet and cell of the formula, as rows."""
    run = subprocess.run([wine_run, zavhost, "run", "--json", str(workbook)], capture_output=True, text=True,
                         encoding="utf-8")
    if run.returncode != 0:
        sys.exit(f"ZavHost run ended with {run.returncode}: {run.stderr}")
    values = {}
    for cell in json.loads(run.stdout)["cells"]:
        value = cell["value"]
        values[cell["sheet"], cell["cell"]] = value if isinstance(value, list) else [[value]]
    return values


def agrees(shown, value):
    if isinstance(value, bool):
        return shown == str(value).upper()
    if isinstance(value, (int, float)):
        try:
            number = Decimal(shown)
        except ArithmeticError:
            return False
        last_digit = Decimal(1).scaleb(number.as_tuple().exponent)
        return abs(Decimal(value) - number) <= last_digit / 2
    if value is None:
        return shown == "(blank)"
    if isinstance(value, dict):  # an error
        return shown == value["error"]
    return shown == (value or "(empty text)")


def right(example, rows):
    return (rows is not None and [len(row) for row in rows] == [len(row) for row in example.rows] and
            all(agrees(shown, value) for shown_row, row in zip(example.rows, rows)
                for shown, value in zip(shown_row, row)))


def main():
    wine_run, zavhost, folder = sys.argv[1:]
    folder = pathlib.Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    by_name = {page.name: page for page in [*pages.function_pages().values(), *pages.topics().values()] if page.examples}
    placed = write_workbook(folder / "examples.xlsx", by_name.values())
    values = calculate(wine_run, zavhost, folder / "examples.xlsx")
    problems = [f"{place[0]}: {example.shown_formula} shows {example.rows}, but is {values.get(place)}"
                for place, example in placed.items() if not right(example, values.get(place))]
    fill_range = {place[0] for place, rows in values.items() if place not in placed and rows[0][0] == TALL}
    said_to = {function.name for function in registration.functions() if function.fills_calling_range}
    problems += [f"{name}: fills_calling_range is wrong" for name in fill_range ^ said_to]
    print("\n".join(sorted(problems)))
    print(f"{len(placed)} examples on {len(by_name)} pages calculated, {len(problems)} problems")
    sys.exit(1 if problems or not placed else 0)


if __name__ == "__main__":
    main()
