"""What the example workbooks have in common: heads of tables and lists of formulas."""

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
