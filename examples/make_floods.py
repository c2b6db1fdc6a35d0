#!/usr/bin/python3
"""Makes floods.xlsx from floods.csv: distributions fitted to annual floods, ranked, tested and drawn, and the floods
of return periods that follow from them.

The data: the greatest discharges of 48 years of the North Saskatchewan River at Edmonton, in thousands of cubic feet
per second, in ascending order. M. A. J. van Montfort, Journal of Hydrology 11 (1970), pages 421-427; among the data
sets of R's package evd (evd::sask).

Needs Debian's python3-openpyxl. `./dev run` recalculates the workbook into build/run.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.chart import Reference, ScatterChart, Series
from openpyxl.styles import Font
from openpyxl.workbook.defined_name import DefinedName
from openpyxl.worksheet.properties import PageSetupProperties

from sheets import enter_array, head, save

FOLDER = pathlib.Path(__file__).parent
UNIT = "1000 cubic feet per second"
BEST = 12
# Name, number of parameters.
FITTED = [("Gumbel", 2), ("generalised extreme value", 3), ("lognormal", 2), ("log-Pearson III", 3)]
PERIODS = [2, 5, 10, 25, 50, 100, 200]
ROWS_OF_CRITERIA = 4  # behind the parameters: log-likelihood, AIC, BIC, count


def fill_data(book):
    sheet = book.create_sheet("Data")
    with open(FOLDER / "floods.csv", newline="", encoding="utf-8") as file:
        values = [float(row["discharge"]) for row in csv.DictReader(file)]
    head(sheet, 1, ["Discharge"])
    for value in values:
        sheet.append([value])
    book.defined_names.append(DefinedName("Flood", attr_text=f"Data!$A$2:$A${len(values) + 1}"))
    sheet.freeze_panes = "A2"
    return len(values)


def fill_ranking(book):
    sheet = book.create_sheet("Ranking")
    head(sheet, 1, ["Distribution", "AIC", "BIC", "Log-likelihood", "Parameters"])
    enter_array(sheet, 2, 1, f"=ZavDistRank(Flood,{BEST})", BEST, 5)
    for row in sheet.iter_rows(min_row=2, max_row=BEST + 1, min_col=2, max_col=4):
        for cell in row:
            cell.number_format = "0.00"
    sheet.cell(BEST + 3, 1, "The smaller AIC and BIC are, the better the distribution fits for its number of parameters.")
    sheet.column_dimensions["A"].width = 30
    sheet.column_dimensions["D"].width = sheet.column_dimensions["E"].width = 15


def fill_fits(book):
    """The range of the parameters on this sheet, by distribution."""
    sheet = book.create_sheet("Fits")
    places, row = {}, 1
    for name, parameters in FITTED:
        head(sheet, row, [name, "Estimate", "Standard error"])
        rows = parameters + ROWS_OF_CRITERIA
        enter_array(sheet, row + 1, 1, f'=ZavDistFit("{name}",Flood)', rows, 3)
        for line in range(row + 1, row + rows):
            for column in (2, 3):
                sheet.cell(line, column).number_format = "0.0000"
        places[name] = f"Fits!$B${row + 1}:$B${row + parameters}"
        sheet.cell(row + rows + 1, 1, "Anderson-Darling, p-value by 199 samples")
        formula = f'=INDEX(ZavDistFitTest("{name}",Flood,"AD"),2,2)'
        sheet.cell(row + rows + 1, 2, formula).number_format = "0.000"
        row += rows + 3
    sheet.column_dimensions["A"].width = 40
    sheet.column_dimensions["B"].width = sheet.column_dimensions["C"].width = 16
    return places


def fill_return_periods(sheet, row, places):
    head(sheet, row, ["Return period (years)", *(name for name, _ in FITTED)])
    for line, period in enumerate(PERIODS, start=row + 1):
        sheet.cell(line, 1, period)
        for column, (name, _) in enumerate(FITTED, start=2):
            formula = f'=ZavDistUpperQuantile("{name}",1/$A{line},{places[name]})'
            sheet.cell(line, column, formula).number_format = "0.0"
    return row + len(PERIODS) + 1


def fill_quantiles(book, count):
    sheet = book.create_sheet("Q-Q plot")
    head(sheet, 1, ["Quantile", "Discharge", "Quantile", "Discharge"])
    for column, name in ((1, "generalised extreme value"), (3, "Gumbel")):
        enter_array(sheet, 2, column, f'=ZavDistQQ("{name}",Flood)', count, 2)
    return sheet


def chart(front, sheet, count, place):
    made = ScatterChart(scatterStyle="lineMarker")
    made.title = "Q-Q plot of the floods"
    made.x_axis.title, made.y_axis.title = f"Quantile ({UNIT})", f"Discharge ({UNIT})"
    made.x_axis.delete = made.y_axis.delete = False
    made.width, made.height = 24, 12
    for column, title, symbol, color in ((1, "generalised extreme value", "circle", "1F4E79"),
                                         (3, "Gumbel", "diamond", "7F7F7F")):
        x, y = (Reference(sheet, min_col=at, min_row=2, max_row=count + 1) for at in (column, column + 1))
        series = Series(y, x, title=title)
        series.graphicalProperties.line.noFill = True
        series.marker.symbol, series.marker.size, series.smooth = symbol, 6, False
        series.marker.graphicalProperties.line.solidFill = color
        series.marker.graphicalProperties.noFill = True
        made.series.append(series)
    x = Reference(sheet, min_col=1, min_row=2, max_row=count + 1)
    line = Series(x, x, title="perfect fit")
    line.marker.symbol, line.smooth = "none", False
    line.graphicalProperties.line.solidFill = "C00000"
    made.series.append(line)
    made.x_axis.scaling.min = made.y_axis.scaling.min = 0
    made.x_axis.scaling.max = made.y_axis.scaling.max = 250
    front.add_chart(made, place)


def main():
    book = Workbook()
    front = book.active
    front.title = "Return periods"
    front["A1"] = "Floods of the North Saskatchewan River at Edmonton"
    front["A1"].font = Font(bold=True, size=14)
    front["A2"] = f"Discharges ({UNIT}) that are exceeded once in so many years on average, by four distributions"
    count = fill_data(book)
    fill_ranking(book)
    places = fill_fits(book)
    after = fill_return_periods(front, 4, places)
    quantiles = fill_quantiles(book, count)
    chart(front, quantiles, count, f"A{after + 1}")
    front.column_dimensions["A"].width = 24
    for column in "BCDE":
        front.column_dimensions[column].width = 26
    for sheet in book:
        sheet.page_setup.orientation, sheet.page_setup.fitToHeight = "landscape", 0
        sheet.sheet_properties.pageSetUpPr = PageSetupProperties(fitToPage=True)
    save(book, FOLDER / "floods.xlsx")


if __name__ == "__main__":
    main()
