#!/usr/bin/python3
"""Makes iris.xlsx, an example of several variables at once, from iris.csv.

iris.csv: length and width of sepals and petals in centimetres of 150 irises, 50 of each of three species,
measured by E. Anderson, The irises of the Gaspé Peninsula, Bulletin of the American Iris Society 59 (1935);
published by R. A. Fisher, The use of multiple measurements in taxonomic problems, Annals of Eugenics 7
(1936). The data are among R's (datasets::iris).

Needs Debian's python3-openpyxl. `./dev run` then stores the results in the workbook.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.styles import Font

from sheets import head, save

FOLDER = pathlib.Path(__file__).parent
VARIABLES = ["Sepal length", "Sepal width", "Petal length", "Petal width"]
COMPONENTS = ["Component 1", "Component 2", "Component 3", "Component 4"]
LAST = 151
MEASUREMENTS = f"Data!A2:D{LAST}"


def put_array(sheet, where, formula):
    """An array formula over a range such as "B5:E8"."""
    first = where.split(":")[0]
    sheet[first] = formula
    sheet.formula_attributes[first] = {"t": "array", "ref": where}
    for row in sheet[where]:
        for cell in row:
            cell.number_format = "0.0000"


def put_matrix(sheet, row, caption, columns, rows, formula):
    """A square block under a line of headings, its rows named."""
    head(sheet, row, [caption] + columns)
    for line, name in enumerate(rows, start=row + 1):
        sheet.cell(line, 1, name)
    put_array(sheet, f"B{row + 1}:E{row + 4}", formula)


def fill_data(sheet):
    head(sheet, 1, VARIABLES + ["Species"])
    with open(FOLDER / "iris.csv", newline="", encoding="utf-8") as file:
        for line, row in enumerate(csv.reader(file)):
            if line > 0:
                sheet.append([float(value) for value in row[:4]] + [row[4]])
    assert sheet.max_row == LAST
    sheet.freeze_panes = "A2"


def fill_analysis(sheet):
    sheet["A1"] = "Measurements of three species of iris"
    sheet["A1"].font = Font(bold=True, size=14)
    sheet["A2"] = "E. Anderson (1935), R. A. Fisher (1936); lengths in centimetres"
    sheet["A2"].font = Font(italic=True)
    put_matrix(sheet, 4, "Correlation", VARIABLES, VARIABLES, f"=ZavCorrelationMatrix(0,1,0,{MEASUREMENTS})")
    put_matrix(sheet, 10, "Rank correlation", VARIABLES, VARIABLES,
               f"=ZavCorrelationMatrix(1,1,0,{MEASUREMENTS})")
    put_matrix(sheet, 16, "Covariance", VARIABLES, VARIABLES, f"=ZavCovarianceMatrix(0,1,0,{MEASUREMENTS})")

    head(sheet, 22, ["Of the correlations", "Eigenvalue", "Share of variance"])
    put_array(sheet, "B23:B26", "=ZavEigenvalues(B5:E8)")
    for line, name in enumerate(COMPONENTS, start=23):
        sheet.cell(line, 1, name)
        sheet.cell(line, 3, f"=B{line}/ZavSum($B$23:$B$26)").number_format = "0.0%"
    put_matrix(sheet, 28, "Eigenvectors", COMPONENTS, VARIABLES, "=ZavEigenvectors(B5:E8)")

    head(sheet, 34, ["Petal length and width", "Correlation", "Covariance"])
    for line, (species, first) in enumerate([("setosa", 2), ("versicolor", 52), ("virginica", 102)], start=35):
        pair = f"Data!C{first}:C{first + 49},Data!D{first}:D{first + 49}"
        sheet.cell(line, 1, species)
        sheet.cell(line, 2, f"=ZavCorrelationCoeff({pair})").number_format = "0.0000"
        sheet.cell(line, 3, f"=ZavCovariance({pair})").number_format = "0.0000"
    sheet.column_dimensions["A"].width = 26
    for column in "BCDE":
        sheet.column_dimensions[column].width = 17


def fill_scores(sheet):
    """Scores are taken of data as they are: these are centred and scaled first."""
    head(sheet, 1, ["Standardised:"] + VARIABLES + ["Scores:"] + COMPONENTS)
    for column, source in zip("BCDE", "ABCD"):
        variable = f"Data!{source}2:{source}{LAST}"
        put_array(sheet, f"{column}2:{column}{LAST}", f"=({variable}-ZavMean({variable}))/ZavStdDev({variable})")
    put_array(sheet, f"G2:J{LAST}", f"=ZavPCAScores(B2:E{LAST})")
    for column in "ABCDEFGHIJ":
        sheet.column_dimensions[column].width = 15
    sheet.freeze_panes = "A2"


def main():
    book = Workbook()
    book.active.title = "Analysis"
    fill_data(book.create_sheet("Data"))
    fill_scores(book.create_sheet("Scores"))
    fill_analysis(book["Analysis"])
    save(book, FOLDER / "iris.xlsx")


if __name__ == "__main__":
    main()
