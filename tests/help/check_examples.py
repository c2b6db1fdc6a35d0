#!/usr/bin/python3
"""Calculates every example of the help with the real add-in, and compares what the pages show.

    check_examples.py WINE_RUN ZAVHOST SCRATCH_FOLDER

The examples become the formulas of one workbook, a sheet for each page with the page's data from A1 on. A
shown number must be the calculated one to all digits that it has.
"""

import json
import pathlib
import subprocess
import sys
import zipfile
from decimal import Decimal
from xml.sax.saxutils import escape, quoteattr

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "help"))
from tools import pages  # noqa: E402

FIRST_COLUMN = 10  # of the formulas: no data reach it
_MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
_RELATIONS = "http://schemas.openxmlformats.org/package/2006/relationships"
_OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
_CONTENT = "application/vnd.openxmlformats-officedocument.spreadsheetml"


def cell_name(row, column):
    return chr(ord("A") + column - 1) + str(row)


def cell_xml(row, column, text):
    name = cell_name(row, column)
    if text == "":
        return ""
    if text in ("TRUE", "FALSE"):
        return f'<c r="{name}" t="b"><v>{int(text == "TRUE")}</v></c>'
    if text.startswith("#"):
        return f'<c r="{name}" t="e"><v>{escape(text)}</v></c>'
    try:
        Decimal(text)
        return f'<c r="{name}"><v>{text}</v></c>'
    except ArithmeticError:
        return f'<c r="{name}" t="inlineStr"><is><t xml:space="preserve">{escape(text)}</t></is></c>'


def formula_xml(row, example):
    name = cell_name(row, FIRST_COLUMN)
    last = cell_name(row + len(example.rows) - 1, FIRST_COLUMN + len(example.rows[0]) - 1)
    kind = f' t="array" ref="{name}:{last}"' if example.is_array else ""
    return f'<c r="{name}"><f{kind}>{escape(example.formula[1:])}</f></c>'


def sheet_xml(page):
    """The sheet's XML, and its examples by the cell of their formula."""
    rows, placed = {}, {}
    for i, texts in enumerate(pages.data_rows(page.header["data"]) if "data" in page.header else [], 1):
        rows[i] = "".join(cell_xml(i, column, text) for column, text in enumerate(texts, 1))
    at = 1
    for example in page.examples:
        rows[at] = rows.get(at, "") + formula_xml(at, example)
        placed[cell_name(at, FIRST_COLUMN)] = example
        at += len(example.rows)
    data = "".join(f'<row r="{row}">{cells}</row>' for row, cells in sorted(rows.items()))
    return f'<worksheet xmlns="{_MAIN}"><sheetData>{data}</sheetData></worksheet>', placed


def write_workbook(file, with_examples):
    """Gives the examples by sheet and cell."""
    parts, sheets, relations, types, placed = {}, [], [], [], {}
    for i, page in enumerate(with_examples, 1):
        xml, by_cell = sheet_xml(page)
        parts[f"xl/worksheets/sheet{i}.xml"] = xml
        placed |= {(page.name, cell): example for cell, example in by_cell.items()}
        sheets.append(f'<sheet name={quoteattr(page.name)} sheetId="{i}" r:id="rId{i}"/>')
        relations.append(f'<Relationship Id="rId{i}" Type="{_OFFICE}/worksheet" Target="worksheets/sheet{i}.xml"/>')
        types.append(f'<Override PartName="/xl/worksheets/sheet{i}.xml" ContentType="{_CONTENT}.worksheet+xml"/>')
    parts["xl/workbook.xml"] = f'<workbook xmlns="{_MAIN}" xmlns:r="{_OFFICE}"><sheets>{"".join(sheets)}</sheets></workbook>'
    parts["xl/_rels/workbook.xml.rels"] = f'<Relationships xmlns="{_RELATIONS}">{"".join(relations)}</Relationships>'
    parts["_rels/.rels"] = (f'<Relationships xmlns="{_RELATIONS}"><Relationship Id="rId1" Type="{_OFFICE}/officeDocument" '
                            'Target="xl/workbook.xml"/></Relationships>')
    parts["[Content_Types].xml"] = (
        '<Types xmlns="http://schemas.openxmlformats.org/package/2006/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{_CONTENT}.sheet.main+xml"/>{"".join(types)}</Types>')
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, text in parts.items():
            archive.writestr(name, '<?xml version="1.0" encoding="UTF-8"?>\n' + text)
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
    pending = {name for name, page in by_name.items() if "pending" in page.header}
    problems = []
    still_pending = set()
    for place, example in placed.items():
        rows = values.get(place)
        if right(example, rows):
            continue
        if place[0] in pending:
            still_pending.add(place[0])
        else:
            problems.append(f"{place[0]}: {example.shown_formula} shows {example.rows}, but is {rows}")
    problems += [f"{name}: its examples are right, and need not be marked as pending" for name in pending - still_pending]
    print("\n".join(sorted(problems)))
    print(f"{len(placed)} examples on {len(by_name)} pages calculated, {len(problems)} problems; "
          f"pending are {', '.join(sorted(still_pending)) or 'none'}")
    sys.exit(1 if problems or not placed else 0)


if __name__ == "__main__":
    main()
