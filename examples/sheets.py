"""What the example workbooks have in common: heads of tables, lists of formulas, and files as Excel writes them."""

import io
import re
import zipfile
from decimal import Decimal

from openpyxl.styles import Alignment, Font, PatternFill

HEAD_FONT = Font(bold=True, color="FFFFFF")
HEAD_FILL = PatternFill("solid", fgColor="1F4E79")


def head(sheet, row, texts):
    for column, text in enumerate(texts, start=1):
        cell = sheet.cell(row, column, text)
        cell.font, cell.fill = HEAD_FONT, HEAD_FILL
        cell.alignment = Alignment(horizontal="left" if column == 1 else "right")


def put_list(sheet, first, rows):
    """Labels, formulas and formats in the columns A and B; the row after them."""
    for line, (label, formula, number_format) in enumerate(rows, start=first):
        sheet.cell(line, 1, label)
        sheet.cell(line, 2, formula).number_format = number_format
    return first + len(rows)


def cell_value(text):
    """What a cell holds whose text is this; nothing for an empty one."""
    if text in ("TRUE", "FALSE"):
        return text == "TRUE"
    try:
        return Decimal(text)
    except ArithmeticError:
        return text or None


def enter_array(sheet, row, column, formula, rows, columns):
    """An array formula over so many cells; gives the name of its first one."""
    first, last = sheet.cell(row, column), sheet.cell(row + rows - 1, column + columns - 1)
    first.value = formula
    sheet.formula_attributes[first.coordinate] = {"t": "array", "ref": f"{first.coordinate}:{last.coordinate}"}
    return first.coordinate


def as_stored(formula):
    """A formula as Excel stores it: with _xll. before the functions of the add-in, outside texts and sheets' names."""
    return re.sub(r"""("[^"]*"|'[^']*')|(?<![\w.!])(?=Zav\w+\s*\()""", lambda found: found[1] or "_xll.", formula)


def save(book, file):
    """Formulas as Excel stores them, and the same bytes for the same workbook: no time in it, and no writer."""
    for sheet in book:
        for cell in sheet._cells.values():  # iter_rows would make the empty ones
            if cell.data_type == "f":
                cell.value = as_stored(cell.value)
    for name in book.defined_names.definedName:
        name.attr_text = as_stored(name.attr_text)
    written = io.BytesIO()
    book.save(written)
    with zipfile.ZipFile(written) as parts, zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED) as package:
        for part in parts.namelist():
            content = parts.read(part)
            if part == "docProps/core.xml":
                content = re.sub(rb"<(dcterms:created|dcterms:modified|dc:creator).*?</\1>", b"", content)
            package.writestr(zipfile.ZipInfo(part), content, zipfile.ZIP_DEFLATED)
