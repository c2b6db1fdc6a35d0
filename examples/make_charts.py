#!/usr/bin/python3
"""Makes charts.xlsx, a box plot and a normal Q-Q plot on the helper columns that docs/charts.md
describes, from chickwts.csv.

The data: 71 newly hatched chicks, allocated at random to six groups of which each got another feed
supplement, and their weights in grams after six weeks. Anonymous, Biometrika 35 (1948), page 214; among
R's data sets (datasets::chickwts).

Needs Debian's python3-openpyxl. `./dev run` recalculates the workbook into build/run.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.chart import Reference, ScatterChart, Series
from openpyxl.styles import Alignment, Font, PatternFill
from openpyxl.utils import get_column_letter
from openpyxl.workbook.defined_name import DefinedName
from openpyxl.worksheet.properties import PageSetupProperties

from sheets import save

FOLDER = pathlib.Path(__file__).parent
HEAD_FONT = Font(bold=True, color="FFFFFF")
HEAD_FILL = PatternFill("solid", fgColor="1F4E79")
FEEDS = ["casein", "horsebean", "linseed", "meatmeal", "soybean", "sunflower"]
METHOD = 0

# Name, rows, line or marker, colour. The groups stand below each other in blocks, with an empty row
# between them, where a line ends.
BLOCK = 6
PARTS = [
    ("Box", 5, None, "1F4E79"),
    ("Lower whisker", 4, None, "1F4E79"),
    ("Upper whisker", 4, None, "1F4E79"),
    ("Median", 2, None, "C00000"),
    ("Mean", 1, "diamond", "1F4E79"),
    ("Lower extreme", 5, "star", "C00000"),
    ("Lower mild", 5, "circle", "C00000"),
    ("Upper mild", 5, "circle", "C00000"),
    ("Upper extreme", 5, "star", "C00000"),
]
FIRST_ROW = 3


def head(sheet, row, texts):
    for column, text in enumerate(texts, start=1):
        cell = sheet.cell(row, column, text)
        cell.font, cell.fill = HEAD_FONT, HEAD_FILL
        cell.alignment = Alignment(horizontal="left" if column == 1 else "right", wrap_text=True)


def array_formula(sheet, row, column, rows, formula):
    cell = sheet.cell(row, column)
    cell.value = formula
    last = f"{get_column_letter(column)}{row + rows - 1}"
    sheet.formula_attributes[cell.coordinate] = {"t": "array", "ref": f"{cell.coordinate}:{last}"}


def fill_data(book):
    sheet = book.create_sheet("Data")
    with open(FOLDER / "chickwts.csv", newline="", encoding="utf-8") as file:
        rows = [(float(row["weight"]), row["feed"]) for row in csv.DictReader(file)]
    head(sheet, 1, ["Weight (g)", "Feed"])
    for row in rows:
        sheet.append(row)
    for name, column in [("Weight", "A"), ("Feed", "B")]:
        book.defined_names.append(DefinedName(name, attr_text=f"Data!${column}$2:${column}${len(rows) + 1}"))
    sheet.column_dimensions["B"].width = 14
    sheet.freeze_panes = "A2"
    return len(rows)


def fill_box_plots(book):
    sheet = book.create_sheet("Box plot")
    head(sheet, 1, ["Feed", "Place", "Outlier rows"] + [name for name, *_ in PARTS for _ in "xy"])
    head(sheet, 2, ["", "", ""] + ["across", "along"] * len(PARTS))
    for index, feed in enumerate(FEEDS):
        row = FIRST_ROW + index * BLOCK
        sheet.cell(row, 1, feed)
        sheet.cell(row, 2, index + 1)
        data = f"ZavDestack(Weight,Feed,$A${row})"
        sheet.cell(row, 3, f"=ZavBoxPlotCountOutliers({data},{METHOD})")
        for series, (_, rows, _, _) in enumerate(PARTS, start=1):
            column = 2 + 2 * series
            array_formula(sheet, row, column, rows, f"=ZavBoxPlotY($B${row},{series})")
            array_formula(sheet, row, column + 1, rows, f"=ZavBoxPlotX({data},{METHOD},{series})")
    sheet.column_dimensions["A"].width = 14
    sheet.freeze_panes = "D3"
    return sheet


def fill_quantiles(book, count):
    sheet = book.create_sheet("Q-Q plot")
    head(sheet, 1, ["Normal quantile", "Weight (g)", "z-score in sheet order"])
    array_formula(sheet, 2, 1, count, "=ZavQQPlotZValue(Weight,0)")
    array_formula(sheet, 2, 2, count, "=ZavQQPlotSort(Weight)")
    array_formula(sheet, 2, 3, count, "=ZavQQPlotStandardize(Weight)")
    for column in "ABC":
        sheet.column_dimensions[column].width = 18
    return sheet


def chart_of(title, x_title, y_title):
    chart = ScatterChart(scatterStyle="lineMarker")
    chart.title, chart.x_axis.title, chart.y_axis.title = title, x_title, y_title
    chart.x_axis.majorGridlines = None
    chart.x_axis.delete = chart.y_axis.delete = False
    chart.width, chart.height = 24, 12
    chart.display_blanks = "gap"
    return chart


def add_series(chart, sheet, x_column, rows, title, marker, color, from_row):
    def cells(column):
        return Reference(sheet, min_col=column, min_row=from_row, max_row=from_row + rows - 1)

    series = Series(cells(x_column + 1), cells(x_column), title=title)
    series.smooth = False
    if marker is None:
        series.marker.symbol = "none"
        series.graphicalProperties.line.solidFill = color
        series.graphicalProperties.line.width = 19050
    else:
        series.graphicalProperties.line.noFill = True
        series.marker.symbol, series.marker.size = marker, 7
        series.marker.graphicalProperties.line.solidFill = color
        if marker == "circle":
            series.marker.graphicalProperties.noFill = True
        else:
            series.marker.graphicalProperties.solidFill = color
    chart.series.append(series)


def add_charts(front, boxes, quantiles, count):
    places = ", ".join(f"{i} {feed}" for i, feed in enumerate(FEEDS, start=1))
    chart = chart_of("Chick weights by feed", places, "Weight (g)")
    for index, (name, _, marker, color) in enumerate(PARTS):
        add_series(chart, boxes, 4 + 2 * index, len(FEEDS) * BLOCK, name, marker, color, FIRST_ROW)
    chart.x_axis.scaling.min, chart.x_axis.scaling.max, chart.x_axis.majorUnit = 0, len(FEEDS) + 1, 1
    chart.y_axis.scaling.min = 50
    front.add_chart(chart, "A4")

    chart = chart_of("Normal Q-Q plot of the weights", "Normal quantile (g)", "Weight (g)")
    add_series(chart, quantiles, 1, count, "Weights", "circle", "1F4E79", 2)
    line = Series(
        Reference(quantiles, min_col=1, min_row=2, max_row=count + 1),
        Reference(quantiles, min_col=1, min_row=2, max_row=count + 1),
        title="Normal distribution",
    )
    line.marker.symbol, line.smooth = "none", False
    line.graphicalProperties.line.solidFill = "C00000"
    chart.series.append(line)
    chart.x_axis.scaling.min, chart.x_axis.scaling.max = 50, 500
    chart.y_axis.scaling.min, chart.y_axis.scaling.max = 50, 500
    front.add_chart(chart, "A30")


def main():
    book = Workbook()
    front = book.active
    front.title = "Charts"
    front["A1"] = "Weights of chicks after six weeks on six feeds"
    front["A1"].font = Font(bold=True, size=14)
    front.page_setup.orientation = "landscape"
    front.page_setup.fitToHeight = 1
    front.sheet_properties.pageSetUpPr = PageSetupProperties(fitToPage=True)
    front["A2"] = "The charts stand on the columns of the sheets Box plot and Q-Q plot."
    count = fill_data(book)
    boxes = fill_box_plots(book)
    quantiles = fill_quantiles(book, count)
    add_charts(front, boxes, quantiles, count)
    save(book, FOLDER / "charts.xlsx")


if __name__ == "__main__":
    main()
