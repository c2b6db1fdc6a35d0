#!/usr/bin/python3
"""Makes self-test.xlsx, a workbook that says whether the add-in calculates what it should.

Sheet Self-test: the examples of every function's help page, the statistics of air-quality.xlsx as R has them,
tails and quantiles of distributions and ranks as exact arithmetic has them, and three of NIST's univariate data
sets. Each line has its formula, what came of it, what should have, and whether the two agree; one cell counts.
The comparisons use functions of Excel alone, so that they judge the add-in without its help.

Sheet Macros: what only macros can call. ZavrelRunSelfTest of companions/macro/ZavrelSelfTest.bas fills its results
in; the sheet compares them in the same way.

Needs Debian's python3-openpyxl.
"""

import csv
import dataclasses
import json
import pathlib
import re
import sys
from decimal import Decimal

from openpyxl import Workbook, load_workbook
from openpyxl.formatting.rule import CellIsRule, FormulaRule
from openpyxl.formula import Tokenizer
from openpyxl.styles import Alignment, Font, PatternFill
from openpyxl.utils import get_column_letter
from openpyxl.workbook.defined_name import DefinedName

from sheets import cell_value, enter_array, head, save

FOLDER = pathlib.Path(__file__).parent
ROOT = FOLDER.parent
sys.path.insert(0, str(ROOT / "help"))
from tools import pages  # noqa: E402

HEADINGS = ["Function", "Formula", "Result", "Expected", "Within", "Agrees"]
RESULT, EXPECTED, WITHIN, AGREES = "CDEF"
FIRST_ROW = 7
ERROR_TYPES = {"#DIV/0!": 2, "#VALUE!": 3, "#REF!": 4, "#NAME?": 5, "#NUM!": 6, "#N/A": 7}
GREEN, RED = (PatternFill("solid", bgColor=color) for color in ("C6EFCE", "FFC7CE"))
# Excel reads that many digits of a number in a formula.
DIGITS_OF_FORMULAS = 15


@dataclasses.dataclass
class Check:
    function: str
    formula: str  # as Excel shows it
    rows: list  # of lists of the expected cells' texts
    is_array: bool = False
    within: float | None = None  # else half of the last digit that is shown


def tolerance(text):
    """Half of the last digit that is shown; whole numbers are meant as they stand."""
    exponent = Decimal(text).as_tuple().exponent
    return float(Decimal(1).scaleb(exponent) / 2) if exponent < 0 else 1e-9 * max(1.0, abs(float(text)))


# --- What is checked ---


def of_sheet(formula, sheet):
    """The formula with its cells on that sheet."""
    tokens = Tokenizer(formula).items
    return "=" + "".join(f"{sheet}!{token.value}" if token.subtype == "RANGE" else token.value for token in tokens)


def of_help():
    """Every example of the functions' pages, and the data that they calculate with, by sheet."""
    checks, data = [], {}
    for page in [*pages.function_pages().values(), *pages.topics().values()]:
        sheet = page.header.get("data")
        if sheet is not None and page.examples:
            data[sheet] = pages.data_rows(sheet)
        for example in page.examples:
            formula = of_sheet(example.formula, sheet) if sheet else example.formula
            checks.append(Check(function_of(formula, page.name), formula, example.rows, example.is_array))
    return checks, data


def function_of(formula, page):
    """The page's function where the formula calls it, else the first one in it."""
    named = re.findall(r"Zav\w+(?=\()", formula)
    return page if page in named else named[0]


def of_air_quality(book):
    """What R says of the statistics in air-quality.xlsx. Copies the data, under the names that they have there."""
    example = load_workbook(FOLDER / "air-quality.xlsx")
    data = book.create_sheet("air-quality")
    for row in example["Data"].iter_rows(values_only=True):
        data.append(row)
    for name in example.defined_names.definedName:
        book.defined_names.append(
            DefinedName(name.name, attr_text=name.attr_text.replace("Data!", "'air-quality'!")))
    for line in csv.reader(open(ROOT / "tests/integration/data/air_quality_reference.csv", encoding="utf-8")):
        sheet, cell, value = line
        formula = example[sheet][cell].value
        formula = formula.replace("_xll.", "").replace("Data!", "'air-quality'!")
        if cell in example[sheet].formula_attributes or re.search(r"(?<![!:$\w])\$?[A-Z]{1,2}\$?\d", formula):
            continue  # needs other cells of that sheet, or stands for several
        yield Check(function_of(formula, ""), formula, [[value]], within=1e-13 * max(1.0, abs(float(value))))


SELECTORS = {"2": "xtoy", "3": "xtop", "4": "ptox", "6": "xtoq", "7": "qtox"}


def fits_formula(text):
    return float(text) == float(f"{float(text):.{DIGITS_OF_FORMULAS}g}")


def of_distributions():
    """Some of each distribution's requests; those that a formula can say, where they do not lose digits."""
    seen = {}
    for row in csv.DictReader(open(ROOT / "tests/pdflib/data/accuracy.csv", encoding="utf-8")):
        name, selector = row["distribution"].capitalize(), SELECTORS[row["request"]]
        parameters = [text for text in (row["a"], row["b"]) if text]
        whole = {"Student": 1, "Chisq": 1, "F": 2, "Binomial": 1}.get(name, 0)
        if any(float(text) != int(float(text)) for text in parameters[:whole]):
            continue
        parameters[:whole] = [str(int(float(text))) for text in parameters[:whole]]
        if not all(fits_formula(text) for text in [*parameters, row["argument"]]):
            continue
        if not 1e-290 < abs(float(row["value"])) < 1e290 or float(row["condition"] or 0) > 1e4:
            continue
        number = seen[name, selector] = seen.get((name, selector), -1) + 1
        if number % 4 == 0:
            within = abs(float(row["value"])) * 1e-13 * max(1.0, float(row["condition"] or 0))
            argument = row["argument"].upper().removesuffix(".0")
            arguments = ",".join([text.upper().removesuffix(".0") for text in parameters])
            yield Check(f"Zav{name}", f"=Zav{name}({arguments},\"{selector}\",{argument})", [[row["value"]]],
                        within=within)


def of_ranks():
    """Exact p-values of rank sums, counted in whole numbers."""
    for number, line in enumerate(open(ROOT / "tests/nonparametric/data/exact.csv", encoding="utf-8")):
        kind, *values = line.strip().split(",")
        if number % 8:
            continue
        *arguments, less, greater = values
        name = "ZavMWpValue" if kind == "u" else "ZavWSRpValue"
        for side, p in ((-1, less), (1, greater)):
            yield Check(name, f"={name}({','.join(arguments)},{side})", [[p]], within=1e-12 * float(p))


def of_nist(book):
    """NumAcc2 to 4 of NIST's Statistical Reference Datasets: small steps upon ever larger numbers."""
    sheet = book.create_sheet("NIST")
    head(sheet, 1, ["NumAcc2", "NumAcc3", "NumAcc4"])
    bases = ["1", "1000000", "10000000"]
    sheet.append([Decimal(base) + Decimal("0.2") for base in bases])
    for _ in range(500):
        sheet.append([Decimal(base) + Decimal("0.1") for base in bases])
        sheet.append([Decimal(base) + Decimal("0.3") for base in bases])
    # The numbers in the cells are as near to the data as doubles can be, which bounds the digits of the rest.
    for column, base, digits in zip("ABC", bases, (14, 9, 8)):
        cells = f"NIST!{column}2:{column}1002"
        mean = str(Decimal(base) + Decimal("0.2"))
        yield Check("ZavMean", f"=ZavMean({cells})", [[mean]], within=1e-14 * float(mean))
        yield Check("ZavStdDev", f"=ZavStdDev({cells})", [["0.1"]], within=0.1 * 10.0**-digits)
        yield Check("ZavAutocorrelation", f"=ZavAutocorrelation({cells},1)", [["-0.999"]], within=10.0**-digits)


# --- What only macros call ---

NUMBERS = "2, 4, 4, 4, 5, 5, 7, 9"
SERIES = "1, 2, 3 and 2, 4, 7"
CELLS = "north, south, North, 25"
ROOT_HALF = "0.7071067811865476"
# Entry point, what is called, what should come of it.
MACROS = [
    ("ZavrelFuncsVersion", "", "8"),
    ("ZavrelGetExceptionInfoVB", "Is a failure explained?", "TRUE"),
    ("ZavrelMinVB", NUMBERS, "2"),
    ("ZavrelMaxVB", NUMBERS, "9"),
    ("ZavrelMeanVB", NUMBERS, "5"),
    ("ZavrelStdDevVB", NUMBERS, "2.138089935299395"),
    ("ZavrelStdDevPVB", NUMBERS, "2"),
    ("ZavrelVarianceVB", NUMBERS, "4.571428571428571"),
    ("ZavrelVariancePVB", NUMBERS, "4"),
    ("ZavrelSkewnessVB", NUMBERS, "0.818487553356799"),
    ("ZavrelSkewnessPVB", NUMBERS, "0.65625"),
    ("ZavrelKurtosisVB", NUMBERS, "3.940625"),
    ("ZavrelKurtosisPVB", NUMBERS, "2.78125"),
    ("ZavrelSumSqVB", NUMBERS, "232"),
    ("ZavrelSumDevSqVB", NUMBERS, "32"),
    ("ZavrelModeVB", f"{NUMBERS}; discrete", "4"),
    ("ZavrelPercentileVB", f"{NUMBERS}; 0.9, method 0", "7.6"),
    ("ZavrelQuartileVB", f"{NUMBERS}; third, method 0", "5.5"),
    ("ZavrelMedianVB", f"{NUMBERS}; method 0", "4.5"),
    ("ZavrelStandardizeVB", "9, mean 5, standard deviation 2", "2"),
    ("ZavrelCovarianceVB", SERIES, "2.5"),
    ("ZavrelCovariancePVB", SERIES, "1.666666666666667"),
    ("ZavrelCorrelationCoeffVB", SERIES, "0.993399267798783"),
    ("CalculateCovarianceMatrixVB", f"Columns {SERIES}; row 1, column 2", "2.5"),
    ("CalculateCorrelationMatrixVB", f"Columns {SERIES}; row 1, column 2", "0.993399267798783"),
    ("MatrixAddVB", "{1,2;3,4}, twice; row 2, column 2", "8"),
    ("MatrixMultiplyVB", "{1,2;3,4}, squared; row 2, column 2", "22"),
    ("MatrixInverseVB", "{1,2;3,4}; row 1, column 1", "-2"),
    ("MatrixDeterminantVB", "{1,2;3,4}", "-2"),
    ("CalculateEigenvaluesVB", "{2,1;1,2}; the first", "3"),
    ("CalculateEigenvectorsVB", "{2,1;1,2}; row 1, column 1, without its sign", ROOT_HALF),
    ("CalculateEigendataVB", "{2,1;1,2}; the second value, and row 2, column 2 without its sign", "1.707106781186548"),
    ("CalculatePCAScoresVB", "{1,2;3,4;5,6}; row 1, column 1, without its sign", "2.18941839"),
    ("ZavrelNormalVB", "Standard; probability of at most 1.96", "0.975002104851780"),
    ("ZavrelStudentVB", "9 degrees of freedom; 0.975 quantile", "2.262157162798205"),
    ("ZavrelChisqVB", "3 degrees of freedom; 0.95 quantile", "7.814727903251178"),
    ("ZavrelFVB", "3 and 20 degrees of freedom; 0.95 quantile", "3.098391212140780"),
    ("ZavrelBinomialVB", "10 trials at 0.5; probability of at most 3", "0.171875"),
    ("ZavrelRandVB", "From 0 to below 1?", "TRUE"),
    ("ZavrelShowHelpVB", "A name that no page can have; a failure?", "TRUE"),
    ("ZavrelWriteRangeVB", "{1,2;3,4} into J7:K8; then K8", "4"),
    ("ZavrelWriteRangeValuesVB", "{1,text} into J10:K10; then K10", "text"),
    ("ZavrelBeginProgressVB", "Begun", "0"),
    ("ZavrelStepProgressVB", "Half is done; has the user cancelled?", "0"),
    ("ZavrelEndProgressVB", "Done", "0"),
    ("ZavrelWriteFormulasVB", "=1+2 and text into a new workbook; what its cells show", "3text"),
    ("ZavrelWriteArrayFormulaVB", "={1;2}*2 into two cells of a new workbook; the second", "4"),
    ("ZavrelStoreInWorkbookVB", "2.5 into a new workbook; sheets that were added, a hidden one", "1"),
    ("ZavrelReadFromWorkbookVB", "2.5, after it was stored", "2.5"),
    ("ZavrelRemoveFromWorkbookVB", "2.5, after it was stored; is it gone?", "TRUE"),
    ("ZavrelLiftProtectionVB", "Of a protected sheet; is it protected now?", "FALSE"),
    ("ZavrelPutBackProtectionVB", "After it was lifted; is the sheet protected again?", "TRUE"),
    ("ZavrelRunAnalysisVB", "Percentiles of a new workbook; sheets that were added, with a hidden one", "2"),
    ("ZavrelRepeatAnalysisVB", "The same, repeated; sheets that were added", "3"),
    ("ZavrelAskForAnalysisVB", "An analysis that there is not; a failure?", "TRUE"),
    ("ZavrelAnalysesMenuVB", "Has it box plots?", "TRUE"),
    ("ZavrelTranslateFormulaVB", "SUM(A1,2.5) in German", "SUMME(A1;2,5)"),
    ("ZavrelGetCellValueCategory", "H7", "north"),
    ("ZavrelGetCellValueCategoryW", "H7", "north"),
    ("VariantIdString", f"{CELLS}; ZavCategoryNamesPrivate2", "25;north;south"),
    ("ZavCategoryNamesPrivate2", f"{CELLS}; how many", "3"),
    ("ZavCategoryIndicesPrivate2", f"{CELLS}; those of north", "1;3"),
    ("ZavGetCellValuesPrivate2", f"{CELLS}; the number and its position", "25 at 4"),
    ("ZavGetCellValuesCategoryPrivate2", CELLS, "north;south;North;25"),
    ("ZavGetCellValuesNumericPrivate2", f"{CELLS}; -1 for texts", "-1;-1;-1;25"),
    ("ZavrelGetCellValuesSetArrayVB", f"{CELLS}; the number and its position", "25 at 4"),
    ("ZavrelGetCellValuesSetArrayPrivateVB", f"{CELLS}; the number and its position", "25 at 4"),
    ("ZavGetCellValuesPrivate", f"{CELLS}; how many numbers", "1"),
    ("ZavrelGetCellValuesCategorySetArrayPrivateVB", CELLS, "north;south;North;25"),
    ("ZavrelGetCellValuesNumericSetArrayPrivateVB", f"{CELLS}; -1 for texts", "-1;-1;-1;25"),
    ("ZavrelCategoryNamesGetArrayVB", CELLS, "25;north;south"),
    ("ZavrelCategoryNamesSetArrayPrivateVB", CELLS, "25;north;south"),
    ("ZavrelCategoryNamesSetArrayPrivateWVB", CELLS, "25;north;south"),
    ("ZavCategoryNamesPrivate", f"{CELLS}; how many", "3"),
    ("ZavrelCategoryIndicesSetArrayVB", f"{CELLS}; those of north", "1;3"),
    ("ZavrelCategoryIndicesSetArrayPrivateVB", f"{CELLS}; those of north", "1;3"),
    ("ZavCategoryIndicesPrivate", f"{CELLS}; how many of north", "2"),
    # Last, since they register the functions afresh.
    ("InitializeXlaInformationVB", "Announce an application 8; then =ZavMean(1,2,3)", "2"),
    ("InitializeXlaInformationW", "Announce an application 9; then =ZavMean(1,2,3)", "2"),
    ("UninitializeXlaInformation", "Withdraw both; then =ZavMean(1,2,3)", "2"),
]


# --- How it stands in the sheets ---


def put_text(sheet, row, column, text):
    """A text that stays one, whatever it begins with."""
    cell = sheet.cell(row, column)
    cell.value = text
    cell.data_type = "s"
    cell.quotePrefix = True
    return cell


def agreement(text, row):
    """Whether the result is what is expected: 1 or 0."""
    result, expected, within = f"{RESULT}{row}", f"{EXPECTED}{row}", f"{WITHIN}{row}"
    if text in ERROR_TYPES:
        return f"=IFERROR(IF(ERROR.TYPE({result})={ERROR_TYPES[text]},1,0),0)"
    if text == "(empty text)":
        return f"=IF(ISTEXT({result}),IF(LEN({result})=0,1,0),0)"
    if text == "(blank)":  # which Excel shows as 0
        return f"=IFERROR(IF({result}=0,1,0),0)"
    if isinstance(cell_value(text), Decimal):
        return f"=IF(ISNUMBER({result}),IF(ABS({result}-{expected})<={within},1,0),0)"
    return f"=IFERROR(IF({result}={expected},1,0),0)"


def put_line(sheet, row, function, shown, result, text, within):
    sheet.cell(row, 1, function)
    put_text(sheet, row, 2, shown)
    sheet[f"{RESULT}{row}"] = result
    value = cell_value(text)
    if isinstance(value, Decimal):
        sheet[f"{EXPECTED}{row}"] = value if value == 0 or abs(value.adjusted()) < 15 else float(value)
        sheet[f"{WITHIN}{row}"] = tolerance(text) if within is None else within
    elif isinstance(value, bool):
        sheet[f"{EXPECTED}{row}"] = value
    else:
        put_text(sheet, row, 4, text)
    sheet[f"{AGREES}{row}"] = agreement(text, row)
    sheet[f"{AGREES}{row}"].number_format = '"yes";"yes";"NO"'
    for column in (RESULT, EXPECTED, WITHIN, AGREES):
        sheet[f"{column}{row}"].alignment = Alignment(horizontal="right")


def put_frame(sheet, title, how, last, causes):
    """Title, verdict and headings over lines that end in row `last`. `causes`: what a condition says is wrong."""
    agrees = f"{AGREES}{FIRST_ROW}:{AGREES}{last}"
    verdict = f'ROWS({agrees})-SUM({agrees})&" of "&ROWS({agrees})&" differ: look for NO in column {AGREES}"'
    for condition, cause in reversed(causes):
        verdict = f'IF({condition},"{cause}",{verdict})'
    sheet["A1"], sheet["A2"] = title, how
    sheet["A1"].font, sheet["A2"].font = Font(bold=True, size=14), Font(italic=True)
    sheet["A4"] = "Verdict"
    sheet["B4"] = f'=IF(SUM({agrees})=ROWS({agrees}),"All "&ROWS({agrees})&" agree",{verdict})'
    sheet["A4"].font = sheet["B4"].font = Font(bold=True, size=14)
    good = f"SUM(${AGREES}${FIRST_ROW}:${AGREES}${last})=ROWS(${AGREES}${FIRST_ROW}:${AGREES}${last})"
    sheet.conditional_formatting.add("B4", FormulaRule([good], fill=GREEN, stopIfTrue=True))
    sheet.conditional_formatting.add("B4", FormulaRule(["TRUE"], fill=RED))
    sheet.conditional_formatting.add(agrees, CellIsRule("equal", ["0"], fill=RED))
    head(sheet, FIRST_ROW - 1, HEADINGS)
    for column, width in zip("ABCDEF", (44, 70, 24, 24, 12, 10)):
        sheet.column_dimensions[column].width = width
    sheet.freeze_panes = f"A{FIRST_ROW}"


def fill_checks(sheet, arrays, checks):
    """A line for each cell of a result; array formulas stand on a sheet of their own."""
    row = FIRST_ROW
    at = 1
    for check in checks:
        places = None
        if check.is_array:
            arrays.cell(at, 1, check.function)
            enter_array(arrays, at, 2, check.formula, len(check.rows), len(check.rows[0]))
            places = at
            at += len(check.rows) + 1
        for down, cells in enumerate(check.rows):
            for across, text in enumerate(cells):
                shown, result = check.formula, check.formula
                if places is not None:
                    shown = "{" + check.formula + "}"
                    if len(check.rows) * len(cells) > 1:
                        shown += f"  row {down + 1}, column {across + 1}"
                    result = f"=Arrays!{get_column_letter(2 + across)}{places + down}"
                put_line(sheet, row, check.function, shown, result, text, check.within)
                row += 1
    arrays.column_dimensions["A"].width = 24
    return row - 1


def fill_macros(sheet):
    for row, (name, what, text) in enumerate(MACROS, start=FIRST_ROW):
        is_number = isinstance(cell_value(text), Decimal)
        put_line(sheet, row, name, what, None, text, max(tolerance(text), 1e-12) if is_number else None)
    last = FIRST_ROW + len(MACROS) - 1
    results = f"{RESULT}{FIRST_ROW}:{RESULT}{last}"
    put_frame(sheet, "What only macros call", "Run the macro ZavrelRunSelfTest (Alt+F8, type the name): it is part of "
              "the companion workbook, and in macro\\ZavrelSelfTest.bas.", last,
              [(f"COUNTA({results})=0", "Not run yet: run the macro ZavrelRunSelfTest")])
    sheet.cell(FIRST_ROW - 1, 8, "Cells")
    for row, text in enumerate(CELLS.split(", "), start=FIRST_ROW):
        sheet.cell(row, 8, cell_value(text))
    sheet.cell(FIRST_ROW - 1, 10, "Written")


def main():
    book = Workbook()
    front = book.active
    front.title = "Self-test"
    macros, arrays = book.create_sheet("Macros"), book.create_sheet("Arrays")
    checks, data = of_help()
    for name, rows in data.items():
        sheet = book.create_sheet(name)
        for row in rows:
            sheet.append([cell_value(text) for text in row])
    # Without a companion the version is the only function that Excel knows.
    checks.sort(key=lambda check: check.function != "ZavrelFuncsVersion")
    checks += [*of_air_quality(book), *of_distributions(), *of_ranks(), *of_nist(book)]
    last = fill_checks(front, arrays, checks)

    def unknown(row):
        return f"IFERROR(ERROR.TYPE({RESULT}{row})=5,FALSE)"

    functions = json.loads((ROOT / "src/functions/functions.json").read_text(encoding="utf-8"))["tables"]
    visible = {function["name"] for table in functions.values() for function in table["functions"]
               if not function.get("macros_only")}
    missing = visible - {check.function for check in checks}
    if missing:
        sys.exit(f"functions without a check: {sorted(missing)}")
    put_frame(front, f"Self-test of Zavrel Functions: {len(visible)} functions",
              "Column C is calculated by the add-in; column D comes from R, from exact arithmetic, from NIST and from "
              "the help. F9 calculates anew.", last,
              [(unknown(FIRST_ROW), "Excel has not loaded the add-in: no function is known"),
               (unknown(FIRST_ROW + 1), "Only ZavrelFuncsVersion is known: the companion workbook is not open")])
    fill_macros(macros)
    save(book, FOLDER / "self-test.xlsx")


if __name__ == "__main__":
    main()
