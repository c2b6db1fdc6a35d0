#!/usr/bin/python3
"""Makes air-quality.xlsx from air-quality.csv.

The data are the daily air quality measurements of New York, May to September 1973 (New York State
Department of Conservation and the National Weather Service), 153 days with gaps: mean ozone in parts
per billion, solar radiation in langleys, mean wind speed in miles per hour, highest temperature in
degrees Fahrenheit. A missing ozone value is an empty cell here, a missing radiation value the text
"n/a", so that the workbook shows how the functions treat both.

Needs Debian's python3-openpyxl. `./dev run` then stores the results in the workbook.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.styles import Alignment, Font
from openpyxl.workbook.defined_name import DefinedName

from sheets import head, save

FOLDER = pathlib.Path(__file__).parent
HEADINGS = ["Month", "Day", "Ozone", "Solar", "Wind", "Temp"]


def fill_data(sheet):
    head(sheet, 1, HEADINGS)
    with open(FOLDER / "air-quality.csv", newline="", encoding="utf-8") as file:
        rows = list(csv.DictReader(file))
    for line, row in enumerate(rows, start=2):
        values = [row["Month"], row["Day"], row["Ozone"], row["Solar.R"], row["Wind"], row["Temp"]]
        for column, value in enumerate(values, start=1):
            if value != "NA":
                sheet.cell(line, column, float(value) if "." in value else int(value))
            elif column == 4:
                sheet.cell(line, column, "n/a").alignment = Alignment(horizontal="right")
    sheet.freeze_panes = "A2"
    return len(rows) + 1


def fill_order_statistics(sheet, first, last):
    head(sheet, first, ["Order statistics", "Ozone (ppb)", "Solar (langleys)", "Wind (mph)", "Temp (°F)"])
    # The definitions differ between their methods; the workbook shows the ones that are met most.
    statistics = [
        ("Lower quartile", "=ZavQuartile({name},1,0)", "0.000"),
        ("Median", "=ZavMedian({name},0)", "0.000"),
        ("Upper quartile", "=ZavQuartile({name},3,0)", "0.000"),
        ("90th percentile", "=ZavPercentile({name},0.9,0)", "0.000"),
        ("90th percentile, method 4", "=ZavPercentile({name},0.9,4)", "0.000"),
        ("90th percentile, method 5", "=ZavPercentile({name},0.9,5)", "0.000"),
        ("90th percentile, automatic", "=ZavPercentile({name},0.9)", "0.000"),
        ("Most frequent value", "=ZavMode({name},TRUE)", "0.0"),
        ("Mode as of continuous data", "=ZavMode({name},FALSE)", "0.000"),
    ]
    for line, (label, formula, number_format) in enumerate(statistics, start=first + 1):
        sheet.cell(line, 1, label)
        for column, name in enumerate(["Ozone", "Solar", "Wind", "Temp"], start=2):
            sheet.cell(line, column, formula.format(name=name)).number_format = number_format

    line = first + len(statistics) + 1
    sheet.cell(line, 1, "First four radiation texts")
    cell = sheet.cell(line, 2)
    cell.value = f"=ZavGetCellValues(Data!D2:D{last},3)"
    sheet.formula_attributes[cell.coordinate] = {"t": "array", "ref": f"B{line}:E{line}"}


def fill_summary(sheet, last):
    sheet["A1"] = "Air quality in New York, May to September 1973"
    sheet["A1"].font = Font(bold=True, size=14)

    head(sheet, 3, ["Statistic", "Ozone (ppb)", "Solar (langleys)", "Wind (mph)", "Temp (°F)"])
    statistics = [
        ("Days", "=ZavCountCellsByType({name},0)", "0"),
        ("Values", "=ZavCount({name})", "0"),
        ("Empty cells", "=ZavCountCellsByType({name},4)", "0"),
        ("Texts and errors", "=ZavCountCellsByType({name},3)", "0"),
        ("Mean", "=ZavMean({name})", "0.000"),
        ("Mean of complete data", '=IF(ZavMeanI({name})="","incomplete",ZavMeanI({name}))', "0.000"),
        ("Standard deviation", "=ZavStdDev({name})", "0.000"),
        ("Variance", "=ZavVariance({name})", "0.000"),
        ("Variance (population)", "=ZavVarianceP({name})", "0.000"),
        ("Skewness", "=ZavSkewness({name})", "0.000"),
        ("Kurtosis", "=ZavKurtosis({name})", "0.000"),
        ("Minimum", "=ZavMin({name})", "0.0"),
        ("Maximum", "=ZavMax({name})", "0.0"),
        ("Range", "=ZavRange({name})", "0.0"),
        ("Mean absolute deviation", "=ZavAveDev({name})", "0.000"),
        ("Standard error of the mean", "={sd}/SQRT({n})", "0.000"),
    ]
    for line, (label, formula, number_format) in enumerate(statistics, start=4):
        sheet.cell(line, 1, label)
        for column, name in enumerate(["Ozone", "Solar", "Wind", "Temp"], start=2):
            text = formula.format(name=name, sd=f"ZavStdDev({name})", n=f"ZavCount({name})")
            sheet.cell(line, column, text).number_format = number_format

    first = 4 + len(statistics) + 1
    head(sheet, first, ["Mean by month", "Ozone (ppb)", "Solar (langleys)", "Wind (mph)", "Temp (°F)"])
    for line, month in enumerate([5, 6, 7, 8, 9], start=first + 1):
        sheet.cell(line, 1, month).alignment = Alignment(horizontal="left")
        for column, name in enumerate(["Ozone", "Solar", "Wind", "Temp"], start=2):
            cell = sheet.cell(line, column)
            text = f"=ZavMean(IF(Data!$A$2:$A${last}=$A{line},{name},\"\"))"
            cell.value = text
            sheet.formula_attributes[cell.coordinate] = {"t": "array", "ref": cell.coordinate}
            cell.number_format = "0.000"

    first = first + 7
    head(sheet, first, ["More ways to ask", "Result"])
    others = [
        ("May and September together", f"=ZavMean((Data!C2:C32,Data!C125:C{last}))"),
        ("A whole column", "=ZavMean(Data!F:F)"),
        ("Several arguments", "=ZavMax(Data!C2:C32,Data!D2:D32,100)"),
        ("An array constant", "=ZavSumSq({1,2,3;4,5,6})"),
        ("Coefficient of variation (%)", "=100*ZavStdDev(Ozone)/ZavMean(Ozone)"),
        ("Mean temperature in °C", "=ROUND((ZavMean(Temp)-32)/1.8,2)"),
        ("Of nothing at all", "=IFERROR(ZavMean(Data!H2:H9),\"no data\")"),
    ]
    for line, (label, formula) in enumerate(others, start=first + 1):
        sheet.cell(line, 1, label)
        sheet.cell(line, 2, formula).number_format = "0.000"
    fill_order_statistics(sheet, first + len(others) + 2, last)

    sheet.column_dimensions["A"].width = 30
    for column in "BCDE":
        sheet.column_dimensions[column].width = 17


def main():
    book = Workbook()
    summary = book.active
    summary.title = "Summary"
    data = book.create_sheet("Data")
    last = fill_data(data)
    for column, name in zip("CDEF", ["Ozone", "Solar", "Wind", "Temp"]):
        book.defined_names.append(DefinedName(name, attr_text=f"Data!${column}$2:${column}${last}"))
    fill_summary(summary, last)
    save(book, FOLDER / "air-quality.xlsx")


if __name__ == "__main__":
    main()
