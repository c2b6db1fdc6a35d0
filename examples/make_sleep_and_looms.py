#!/usr/bin/python3
"""Makes sleep-and-looms.xlsx, an example of paired and of categorical data, from two files.

sleep.csv: hours of sleep that ten patients gained with each of two drugs, stacked: ten rows of drug 1,
then the same patients with drug 2. A. R. Cushny and A. R. Peebles, The action of optical isomers: II
hyoscines, The Journal of Physiology 32 (1905); the paired data of Student, The probable error of the
mean, Biometrika 6 (1908).

warpbreaks.csv: breaks of the warp per loom, by type of wool (A, B) and tension (low, medium, high), nine
looms each. L. H. C. Tippett, Technological Applications of Statistics, Wiley (1950), page 106.

Both are among R's data sets (datasets::sleep, datasets::warpbreaks). Needs Debian's python3-openpyxl.
`./dev run` then stores the results in the workbook.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.styles import Alignment, Font
from openpyxl.utils import get_column_letter
from openpyxl.workbook.defined_name import DefinedName

from sheets import head, put_list, save

FOLDER = pathlib.Path(__file__).parent
TITLE_FONT = Font(bold=True, size=14)

# The picked values of a drug are paired by their order, which is that of the patients.
DRUG1 = "ZavDestack(Extra,Drug,1)"
DRUG2 = "ZavDestack(Extra,Drug,2)"


def title(sheet, text, source):
    sheet["A1"] = text
    sheet["A1"].font = TITLE_FONT
    sheet["A2"] = source
    sheet["A2"].font = Font(italic=True)


def put_array(sheet, where, formula, number_format="General"):
    """An array formula over a range such as "B4:B9"."""
    first = where.split(":")[0]
    sheet[first] = formula
    sheet.formula_attributes[first] = {"t": "array", "ref": where}
    for row in sheet[where] if ":" in where else [[sheet[where]]]:
        for cell in row:
            cell.number_format = number_format


def fill_data(sheet, file_name, columns):
    """Rows of a file under other headings; texts stay texts. Gives the last row."""
    head(sheet, 1, columns.values())
    with open(FOLDER / file_name, newline="", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    for line, row in enumerate(rows, start=2):
        for column, name in enumerate(columns, start=1):
            text = row[name]
            cell = sheet.cell(line, column, text if text.isalpha() else float(text))
            cell.alignment = Alignment(horizontal="right")
    sheet.freeze_panes = "A2"
    return len(rows) + 1


def fill_paired(sheet):
    title(sheet, "Hours of sleep gained with two drugs, ten patients",
          "Cushny and Peebles (1905), as paired by Student (1908)")
    head(sheet, 4, ["Drug 2 less drug 1", "Hours"])
    pair = f"({DRUG2},{DRUG1}"
    line = put_list(sheet, 5, [
        ("Complete pairs", f"=ZavPairCount{pair})", "0"),
        ("Mean difference", f"=ZavPairMean{pair})", "0.000"),
        ("Median difference", f"=ZavPairMedian{pair},0)", "0.000"),
        ("Standard deviation", f"=ZavPairStdDev{pair})", "0.000"),
        ("Standard error of the mean", f"=ZavPairStdDev{pair})/SQRT(ZavPairCount{pair}))", "0.000"),
        ("t statistic", f"=SQRT(ZavPairCount{pair}))*ZavPairMean{pair})/ZavPairStdDev{pair})", "0.000"),
        ("Slept longer with drug 2", f"=ZavPairCountRange{pair},0,,FALSE)", "0"),
        ("At most one hour apart", f"=ZavPairCountRange{pair},-1,1)", "0"),
        ("Largest difference, standardized", "=ZavStandardize(4.6,B6,B8)", "0.000"),
        ("Mean quotient", f"=IFERROR(ZavPairMeanQuotient{pair}),\"a patient gained nothing\")", "0.000"),
    ])

    head(sheet, line + 1, ["Each drug", "Drug 1", "Drug 2"])
    for row, (label, formula, number_format) in enumerate([
        ("Patients", "=ZavCategoryOccurrenceCount(Drug,{drug})", "0"),
        ("Mean", "=ZavMean(ZavDestack(Extra,Drug,{drug}))", "0.000"),
        ("Standard deviation", "=ZavStdDev(ZavDestack(Extra,Drug,{drug}))", "0.000"),
        ("Lower quartile", "=ZavQuartile(ZavDestack(Extra,Drug,{drug}),1,0)", "0.000"),
        ("Gained sleep", "=ZavCountRange(ZavDestack(Extra,Drug,{drug}),0,,FALSE)", "0"),
        ("Gained one to three hours", "=ZavCountRange(ZavDestack(Extra,Drug,{drug}),1,3)", "0"),
    ], start=line + 2):
        sheet.cell(row, 1, label)
        for drug in (1, 2):
            sheet.cell(row, 1 + drug, formula.format(drug=drug)).number_format = number_format
    line += 9
    put_list(sheet, line, [
        ("First five patients, both drugs", "=ZavMean(ZavMulti(0,Sleep!C2:C6,Sleep!C12:C16))", "0.000"),
        ("Patient 9, both drugs", "=ZavSum(ZavDestack(Extra,Patient,9))", "0.000"),
    ])
    sheet.column_dimensions["A"].width = 32
    for column in "BC":
        sheet.column_dimensions[column].width = 14


def fill_categories(sheet):
    title(sheet, "Breaks of the warp by wool and tension, nine looms each", "Tippett (1950)")
    sheet["A4"], sheet["B4"] = "Different tensions", "=ZavCountCategories(Tension)"
    head(sheet, 6, ["Tension", "Looms", "Mean", "Std. dev.", "Median", "Mean, wool A", "Mean, wool B"])
    put_array(sheet, "A7:A10", "=ZavCategoryNames(Tension)")  # the fourth cell shows that there is no more
    picked = "ZavDestack(Breaks,Tension,$A{row})"
    both = "ZavDestack(Breaks,Tension,$A{row},Wool,\"{wool}\")"
    for row in (7, 8, 9):
        for column, (formula, number_format) in enumerate([
            ("=ZavCategoryOccurrenceCount(Tension,$A{row})", "0"),
            (f"=ZavMean({picked})", "0.000"),
            (f"=ZavStdDev({picked})", "0.000"),
            (f"=ZavMedian({picked},0)", "0.000"),
            (f"=ZavMean({both.replace('{wool}', 'A')})", "0.000"),
            (f"=ZavMean({both.replace('{wool}', 'b')})", "0.000"),
        ], start=2):
            sheet.cell(row, column, formula.format(row=row)).number_format = number_format

    head(sheet, 12, ["Positions of a category", "1st", "2nd", "3rd", "4th"])
    sheet["A13"] = "Wool B"
    put_array(sheet, "B13:E13", "=ZavCategoryIndices(Wool,\"B\")", "0")
    head(sheet, 15, ["More ways to ask", "Result"])
    put_list(sheet, 16, [
        ("Is \" l \" the category L?", "=ZavCategoryNameCompare(\" l \",\"L\")", "General"),
        ("Looms with 20 to 30 breaks", "=ZavCountRange(Breaks,20,30)", "0"),
        ("Low tension, both wools", "=ZavMean(ZavMulti(0,Looms!A2:A10,Looms!A29:A37))", "0.000"),
        ("Mean of the common logarithms", "=ZavMean(ZavLog(Breaks,10))", "0.0000"),
        ("Geometric mean", "=10^ZavMean(ZavLog(Breaks,10))", "0.000"),
        ("Variance of the square roots", "=ZavVariance(ZavPower(Breaks,0.5))", "0.0000"),
        ("Breaks of wool A, low tension", "=ZavSum(ZavInteraction(Breaks,\"\",Wool,\"A\",Tension,\"L\"))", "0"),
        ("Logarithm of 54 looms", "=ZavLn(ZavCount(Breaks))", "0.0000"),
    ])
    sheet.column_dimensions["A"].width = 32
    for column in "BCDEFG":
        sheet.column_dimensions[column].width = 14


def fill_model(sheet, last):
    """The columns of a regression of breaks on wool and tension."""
    columns = [
        ("log10 breaks", "=ZavLog(Breaks,10)", "0.0000"),
        ("Wool B", "=ZavDummy(Wool,\"b\")", "0"),
        ("Tension M", "=ZavDummy(Tension,\"M\")", "0"),
        ("Tension H", "=ZavDummy(Tension,\"H\")", "0"),
        ("B and M", "=ZavInteraction(Wool,\"B\",Tension,\"M\")", "0"),
        ("B and H", "=ZavInteraction(Wool,\"B\",Tension,\"H\")", "0"),
    ]
    head(sheet, 1, [heading for heading, _, _ in columns])
    for column, (_, formula, number_format) in enumerate(columns, start=1):
        letter = get_column_letter(column)
        put_array(sheet, f"{letter}2:{letter}{last}", formula, number_format)
        sheet.column_dimensions[letter].width = 14
    sheet.freeze_panes = "A2"


def main():
    book = Workbook()
    paired = book.active
    paired.title = "Paired"
    categories, model, sleep, looms = (book.create_sheet(name) for name in
                                       ["Categories", "Model", "Sleep", "Looms"])
    last_sleep = fill_data(sleep, "sleep.csv", {"ID": "Patient", "group": "Drug", "extra": "Extra"})
    last_looms = fill_data(looms, "warpbreaks.csv", {"breaks": "Breaks", "wool": "Wool", "tension": "Tension"})
    for sheet, names, last in [("Sleep", ["Patient", "Drug", "Extra"], last_sleep),
                               ("Looms", ["Breaks", "Wool", "Tension"], last_looms)]:
        for column, name in zip("ABC", names):
            book.defined_names.append(DefinedName(name, attr_text=f"{sheet}!${column}$2:${column}${last}"))
    fill_paired(paired)
    fill_categories(categories)
    fill_model(model, last_looms)
    save(book, FOLDER / "sleep-and-looms.xlsx")


if __name__ == "__main__":
    main()
