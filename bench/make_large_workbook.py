#!/usr/bin/env python3
"""make_large_workbook.py FILE: a workbook as large as people have them, the same at every run.

1,000,000 data cells (sheet Data: eight columns of numbers, two of texts, 100,000 rows) and 20,000 formulas (sheet
Formulas) over windows of 50 rows of a column.
"""
import random
import sys
import zipfile

ROWS, NUMBERS, TEXTS, FORMULAS, WINDOW = 100_000, 8, 2, 20_000, 50
LABELS = [f"Region {i}" for i in range(1000)]
FUNCTIONS = ("ZavMean({})", "ZavStdDev({})", "ZavMedian({})", "ZavPercentile({},0.9)")
MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
DECLARATION = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'


def sheet(rows):
    yield f'{DECLARATION}<worksheet xmlns="{MAIN}"><sheetData>'
    yield from rows
    yield "</sheetData></worksheet>"


def data_rows():
    generator = random.Random(7)
    for row in range(1, ROWS + 1):
        cells = [f'<c r="{"ABCDEFGHIJ"[i]}{row}"><v>{generator.gauss(100, 15):.6f}</v></c>' for i in range(NUMBERS)]
        cells += [f'<c r="{"ABCDEFGHIJ"[NUMBERS + i]}{row}" t="s"><v>{generator.randrange(len(LABELS))}</v></c>'
                  for i in range(TEXTS)]
        yield f'<row r="{row}">{"".join(cells)}</row>'


def formula_rows():
    for row in range(1, FORMULAS + 1):
        first = 1 + row * 5 % (ROWS - WINDOW)
        column = "ABCDEFGH"[row % NUMBERS]
        formula = FUNCTIONS[row % len(FUNCTIONS)].format(f"Data!{column}{first}:{column}{first + WINDOW - 1}")
        yield f'<row r="{row}"><c r="A{row}"><f>_xll.{formula}</f><v>0</v></c></row>'


def parts():
    kind = "application/vnd.openxmlformats-officedocument.spreadsheetml"
    yield "[Content_Types].xml", [
        f'{DECLARATION}<Types xmlns="{PACKAGE}/content-types">'
        '<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>'
        '<Default Extension="xml" ContentType="application/xml"/>'
        f'<Override PartName="/xl/workbook.xml" ContentType="{kind}.sheet.main+xml"/>'
        f'<Override PartName="/xl/sharedStrings.xml" ContentType="{kind}.sharedStrings+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet1.xml" ContentType="{kind}.worksheet+xml"/>'
        f'<Override PartName="/xl/worksheets/sheet2.xml" ContentType="{kind}.worksheet+xml"/></Types>']
    relationships = f'{DECLARATION}<Relationships xmlns="{PACKAGE}/relationships">'
    yield "_rels/.rels", [relationships + f'<Relationship Id="rId1" Type="{OFFICE}/officeDocument" '
                          'Target="xl/workbook.xml"/></Relationships>']
    yield "xl/workbook.xml", [f'{DECLARATION}<workbook xmlns="{MAIN}" xmlns:r="{OFFICE}"><sheets>'
                              '<sheet name="Data" sheetId="1" r:id="rId1"/>'
                              '<sheet name="Formulas" sheetId="2" r:id="rId2"/></sheets></workbook>']
    yield "xl/_rels/workbook.xml.rels", [
        relationships + "".join(
            f'<Relationship Id="rId{i}" Type="{OFFICE}/{kind}" Target="{target}"/>' for i, (kind, target) in enumerate(
                (("worksheet", "worksheets/sheet1.xml"), ("worksheet", "worksheets/sheet2.xml"),
                 ("sharedStrings", "sharedStrings.xml")), 1)) + "</Relationships>"]
    yield "xl/sharedStrings.xml", [f'{DECLARATION}<sst xmlns="{MAIN}" uniqueCount="{len(LABELS)}">',
                                   *(f"<si><t>{label}</t></si>" for label in LABELS), "</sst>"]
    yield "xl/worksheets/sheet1.xml", sheet(data_rows())
    yield "xl/worksheets/sheet2.xml", sheet(formula_rows())


def write(file):
    with zipfile.ZipFile(file, "w") as book:
        for name, texts in parts():
            # A fixed date, so that the file is the same at every run.
            info = zipfile.ZipInfo(name, (2026, 1, 1, 0, 0, 0))
            info.compress_type = zipfile.ZIP_DEFLATED
            with book.open(info, "w") as part:
                for text in texts:
                    part.write(text.encode())


if __name__ == "__main__":
    write(sys.argv[1])
