#!/usr/bin/python3
"""What the extension costs in LibreOffice Calc, beside Calc's own functions in the same run.

    calc.py EXTENSION SCRATCH_FOLDER

SERIESSUM is a function of one of LibreOffice's own add-ins. It takes its range as numbers, the cheapest of the types
that an add-in may ask for, so with the powers of 1 it measures the reading. The best of several runs counts.
"""
import pathlib
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests/calc"))
import calc_test  # noqa: E402
import office  # noqa: E402

MILLION = 1_000_000
FORMULAS = 10_000
PLAIN_NAMES = 20_000


def seconds(action):
    start = time.perf_counter()
    action()
    return time.perf_counter() - start


def set_numbers(sheet, column, numbers):
    sheet.getCellRangeByPosition(column, 0, column, len(numbers) - 1).setDataArray(tuple((n,) for n in numbers))


def one_formula(sheet, formula):
    """Milliseconds of one calculation, with the call from here."""
    cell = sheet.getCellByPosition(3, 0)

    def enter():
        cell.Formula = formula
        return cell.Value
    best = min(seconds(enter) for _ in range(9)) * 1e3
    cell.String = ""
    return best


def many_formulas(document, sheet, formula):
    """Microseconds of each of many formulas, of which none equals another."""
    cells = sheet.getCellRangeByPosition(4, 0, 4, FORMULAS - 1)
    cells.setFormulaArray(tuple((formula.format(row, row + 9),) for row in range(1, FORMULAS + 1)))
    best = min(seconds(document.calculateAll) for _ in range(5)) / FORMULAS * 1e6
    cells.clearContents(1023)
    return best


def opening(calc, scratch):
    """Seconds to open a workbook of plain names, and the same one with the prefix, which needs no second look."""
    document = calc.new()
    sheet = document.Sheets.getByIndex(0)
    set_numbers(sheet, 0, [float(number) for number in range(20)])
    rows = sheet.getCellRangeByPosition(1, 0, 1, PLAIN_NAMES - 1)
    rows.setFormulaArray((("=_xll.ZavMean($A$1:$A$9)",),) * PLAIN_NAMES)
    book = scratch / "prefix.xlsx"
    calc.save(document, book, calc_test.XLSX)
    document.close(True)
    for file in (calc_test.with_plain_names(book, scratch / "plain.xlsx"), book):
        yield min(seconds(lambda: calc.open(file).close(True)) for _ in range(3))


def main():
    extension, scratch = sys.argv[1], pathlib.Path(sys.argv[2])
    with office.Office(scratch / "profile", extension) as calc:
        document = calc.new()
        sheet = document.Sheets.getByIndex(0)
        set_numbers(sheet, 0, [float(row % 1000) + 2.5 for row in range(MILLION)])
        average, typed, mean = (one_formula(sheet, formula) for formula in (
            f"=AVERAGE(A1:A{MILLION})", f"=SERIESSUM(1;0;0;A1:A{MILLION})", f"=_xll.ZavMean(A1:A{MILLION})"))
        print(f"{MILLION} cells: AVERAGE {average:.0f} ms, reading as numbers {typed:.0f} ms, ZavMean {mean:.0f} ms, "
              f"{mean / typed:.2f} times the reading")
        sheet.getCellRangeByPosition(0, 0, 0, MILLION - 1).clearContents(1023)
        set_numbers(sheet, 0, [float(row % 1000) + 2.5 for row in range(FORMULAS + 9)])
        set_numbers(sheet, 1, [float(row * row % 7 % 2) for row in range(FORMULAS + 9)])
        for title, formula in (("AVERAGE of ten cells", "=AVERAGE(A{}:A{})"),
                               ("ZavMean of ten cells", "=_xll.ZavMean(A{}:A{})"),
                               ("ZavMean of ten cells that are 0 or 1", "=_xll.ZavMean(B{}:B{})"),
                               ("ZavNormal of a cell", "=_xll.ZavNormal(A{};100;9;0)")):
            print(f"{title}: {many_formulas(document, sheet, formula):.2f} us in each of {FORMULAS} formulas")
        document.close(True)
        plain, prefix = opening(calc, scratch)
        print(f"opening {PLAIN_NAMES} formulas: plain names {plain:.2f} s, with the prefix {prefix:.2f} s")


if __name__ == "__main__":
    main()
