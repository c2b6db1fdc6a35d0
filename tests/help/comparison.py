"""Executes the comparisons of help/equivalents.ini: in the add-in, in R, and Excel's formulas in LibreOffice Calc."""

import pathlib
import re
import subprocess
import sys

from openpyxl import Workbook, load_workbook

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "help"), str(ROOT / "examples")]
from check_examples import calculate  # noqa: E402
from sheets import cell_value, enter_array, save  # noqa: E402
from tools import equivalents, pages  # noqa: E402

FIRST_COLUMN = 10  # of the formulas: no data reach it
ROWS = 12  # of an array formula that is no example; no result is longer
NOT_IN_CALC = {"FILTER", "SEQUENCE", "SORT", "TOCOL", "UNIQUE", "VSTACK"}
PRINT = r"""show <- function(v) cat(if (is.numeric(v)) sprintf("%.17g", if (is.matrix(v)) t(v) else v) else as.character(v),
  sep = "\t", fill = FALSE)
options(warn = -1)
"""


def data_of(function):
    name = equivalents.data(function) or pages.function_pages()[function].header.get("data")
    return pages.data_rows(name) if name else []


def shape(function, comparison):
    """The rows and columns of the result."""
    if not comparison.is_array:
        return 1, 1
    for example in pages.function_pages()[function].examples:
        if example.shown_formula == comparison.formula:
            return len(example.rows), len(example.rows[0])
    return ROWS, 1


def enter(sheet, function, entries, all_arrays):
    """Enters the data and the formulas, as pairs of text and comparison, in a sheet. Gives each one's first cell."""
    for row in data_of(function):
        sheet.append([cell_value(text) for text in row])
    cells = []
    at = 1
    for formula, comparison in entries:
        rows, columns = shape(function, comparison)
        if all_arrays or comparison.is_array:
            cells.append(enter_array(sheet, at, FIRST_COLUMN, formula, rows, columns))
        else:
            cells.append(sheet.cell(at, FIRST_COLUMN, formula).coordinate)
        at += rows
    return cells


def plain(cell):
    """A cell's value as a number or text."""
    if isinstance(cell, dict):
        return cell["error"]
    if cell is None:
        return ""
    return cell if isinstance(cell, str) else float(cell)


def flat(rows, is_array):
    """A result as a list; cells of an array formula beyond its array are left out."""
    cells = [plain(cell) for row in rows for cell in row]
    return [cell for cell in cells if not (is_array and cell == "#N/A")]


def add_in(runner, zavhost, folder, comparisons):
    """The add-in's results, by function and comparison."""
    book = Workbook()
    book.remove(book.active)
    placed = {}
    for function, listed in comparisons.items():
        if listed:
            cells = enter(book.create_sheet(function), function,
                          [(one.formula[1:-1] if one.is_array else one.formula, one) for one in listed], False)
            placed |= {(function, cell): one for cell, one in zip(cells, listed)}
    save(book, folder / "comparisons.xlsx")
    values = calculate(runner, zavhost, folder / "comparisons.xlsx")
    return {(place[0], one.formula): flat(values[place], one.is_array) for place, one in placed.items()}


def cells_of(text, rows):
    """The texts of the cells of a range or of an array, by row; None for anything else."""
    if match := re.fullmatch(r"([A-Z])(\d+):([A-Z])(\d+)", text):
        first, top, last, bottom = match.groups()
        columns = range(ord(first) - ord("A"), ord(last) - ord("A") + 1)
        return [[row[column] for column in columns] for row in rows[int(top) - 1:int(bottom)]]
    if text.startswith("{"):
        return [row.split(",") for row in text[1:-1].split(";")]
    return None


def r_value(text, rows):
    kind, _, rest = text.partition(" ")
    cells = cells_of(rest if kind in ("numbers", "texts") else text, rows)
    if cells is None:
        return text
    shown = [[repr(cell) if kind == "texts" else cell if re.fullmatch(r"-?[\d.]+", cell) else "NA_real_" for cell in row]
             for row in cells]
    if len(cells) > 1 and len(cells[0]) > 1:
        return f"rbind({', '.join('c(' + ', '.join(row) + ')' for row in shown)})"
    vector = f"c({', '.join(cell for row in shown for cell in row)})"
    return f"as.vector(na.omit({vector}))" if kind == "numbers" else vector


def r_program(function, comparison, code):
    rows = data_of(function)
    variables = "; ".join(f"{name} <- {r_value(text, rows)}" for name, text in comparison.variables.items())
    package = re.match(r"(\w+)::", code)
    condition = f"requireNamespace('{package[1]}', quietly = TRUE)" if package else "TRUE"
    return f"if ({condition}) local({{{variables}; show({code})}}) else cat('skipped'); cat('\\n')\n"


def in_r(tasks):
    """What R computes for each (function, comparison, code); None where a package is missing."""
    program = PRINT + "".join(r_program(*task) for task in tasks)
    run = subprocess.run(["Rscript", "-"], input=program, capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(run.stderr)
    results = [line.split("\t") for line in run.stdout.split("\n")[:-1]]
    return [None if result == ["skipped"] else [number(cell) for cell in result] for result in results]


def number(text):
    """The number that a text says, 1 and 0 for logical values; any other text as it is."""
    if text in ("TRUE", "FALSE"):
        return float(text == "TRUE")
    try:
        return float(text) if re.match(r"-?\d", text) else text
    except ValueError:
        return text


def excel_formula(comparison, code):
    """The code with the ranges, arrays and numbers of its variables, as Excel stores it."""
    values = {name: re.sub("^(numbers|texts) ", "", text) for name, text in comparison.variables.items()}
    names = "|".join(map(re.escape, values))
    code = re.sub(rf'("[^"]*")|(?<![\w.])({names})(?![\w.(])', lambda match: match[1] or values[match[2]], code)
    return "=" + re.sub(r"(?<![\w.])(?=[A-Z]+\.[A-Z.]+\()", "_xlfn.", code)


def can_be_in_calc(code):
    return not NOT_IN_CALC & set(re.findall(r"[A-Z.]+(?=\()", code))


def in_calc(folder, tasks):
    """What LibreOffice Calc computes for each (function, comparison, code), every formula as an array formula."""
    book = Workbook()
    book.remove(book.active)
    places = []
    for function in dict.fromkeys(function for function, *_ in tasks):
        entries = [(excel_formula(one, code), one) for name, one, code in tasks if name == function]
        places += [(function, cell) for cell in enter(book.create_sheet(function), function, entries, True)]
    book.save(folder / "equivalents.xlsx")
    subprocess.run(["soffice", "--headless", f"-env:UserInstallation=file://{folder.resolve()}/profile", "--convert-to",
                    "xlsx:Calc MS Excel 2007 XML", "--outdir", str(folder / "calc"), str(folder / "equivalents.xlsx")],
                   check=True, capture_output=True)
    calculated = load_workbook(folder / "calc/equivalents.xlsx", data_only=True)
    results = []
    for (function, cell), (_, one, _) in zip(places, tasks):
        rows, columns = shape(function, one)
        start = calculated[function][cell]
        block = calculated[function].iter_rows(start.row, start.row + rows - 1, start.column, start.column + columns - 1)
        results.append(flat([[found.value for found in row] for row in block], one.is_array))
    return results
