#!/usr/bin/python3
"""Makes nonparametric.xlsx, an example of the nonparametric tests, from three files.

plant-growth.csv: dried weights of plants under a control and two treatments, ten plants each.
A. J. Dobson, An Introduction to Statistical Modelling, Chapman and Hall (1983); R's datasets::PlantGrowth.

depression.csv: Hamilton depression scale factor of nine patients before and after a therapy with
tranquilizers. M. Hollander and D. A. Wolfe, Nonparametric Statistical Methods, Wiley (1973), page 29; the
example of R's help on wilcox.test.

morley.csv: Michelson's measurements of the speed of light in 1879, in km/s less 299,000, five experiments
of 20 runs. S. M. Stigler, Do robust estimators work with real data?, The Annals of Statistics 5 (1977);
R's datasets::morley.

Needs Debian's python3-openpyxl. `./dev run` then stores the results in the workbook.
"""

import csv
import pathlib

from openpyxl import Workbook
from openpyxl.styles import Font
from openpyxl.workbook.defined_name import DefinedName

from sheets import head, put_list, save

FOLDER = pathlib.Path(__file__).parent
P_FORMAT = "0.00000"


def title(sheet, text, source):
    sheet["A1"] = text
    sheet["A1"].font = Font(bold=True, size=14)
    sheet["A2"] = source
    sheet["A2"].font = Font(italic=True)
    sheet.column_dimensions["A"].width = 44
    for column in "BCD":
        sheet.column_dimensions[column].width = 16


def fill_data(book, name, file_name):
    """A sheet with a file's columns, each a defined name of the workbook."""
    sheet = book.create_sheet(name)
    with open(FOLDER / file_name, newline="", encoding="utf-8") as file:
        rows = list(csv.reader(file))
    headings = [heading.capitalize() for heading in rows[0]]
    head(sheet, 1, headings)
    for line, row in enumerate(rows[1:], start=2):
        for column, text in enumerate(row, start=1):
            sheet.cell(line, column, float(text) if text[0].isdigit() else text)
    for letter, heading in zip("ABC", headings):
        book.defined_names.append(
            DefinedName(heading, attr_text=f"{name}!${letter}$2:${letter}${len(rows)}"))
    sheet.freeze_panes = "A2"


def fill_mann_whitney(sheet):
    title(sheet, "Two samples: the test of Mann and Whitney", "Dobson (1983); Michelson (1879)")
    head(sheet, 4, ["Plants, control and treatment 2", "Weights"])
    plants = "(ZavDestack(Weight,Group,\"ctrl\"),ZavDestack(Weight,Group,\"trt2\"))"
    put_list(sheet, 5, [
        ("Plants of the control", "=ZavCount(ZavDestack(Weight,Group,\"ctrl\"))", "0"),
        ("Plants of treatment 2", "=ZavCount(ZavDestack(Weight,Group,\"trt2\"))", "0"),
        ("Rank sum of the control", f"=ZavMWRankSum1{plants}", "0.0"),
        ("Rank sum of treatment 2", f"=ZavMWRankSum2{plants}", "0.0"),
        ("U of the control", f"=ZavMWRankSum1{plants}-B5*(B5+1)/2", "0.0"),
        ("Groups of equal weights", f"=ZavMWTies{plants}", "0"),
        ("By normal approximation?", "=ZavMWUsingNormalApproximation(B5,B6)", "General"),
        ("p-value, two-sided", "=ZavMWpValue(B5,B6,B7,0)", P_FORMAT),
        ("p-value, control lighter", "=ZavMWpValue(B5,B6,B7,-1)", P_FORMAT),
        ("p-value, control heavier", "=ZavMWpValue(B5,B6,B7,1)", P_FORMAT),
    ])
    head(sheet, 16, ["Speed of light, experiments 1 and 2", "km/s"])
    runs = "(ZavDestack(Speed,Experiment,1),ZavDestack(Speed,Experiment,2))"
    put_list(sheet, 17, [
        ("Rank sum of experiment 1", f"=ZavMWRankSum1{runs}", "0.0"),
        ("Groups of equal speeds", f"=ZavMWTies{runs}", "0"),
        ("Tie-correction term", f"=ZavMWTieCorrectionTerm{runs}", "0"),
        ("Variance, corrected for ties", f"=20*20/12*(41-ZavMWTieCorrectionTerm{runs}/(40*39))", "0.000"),
        ("z with continuity correction", f"=(ZavMWRankSum1{runs}-20*41/2-0.5)/SQRT(B20)", "0.0000"),
        ("p-value, two-sided, corrected for ties", "=2*ZavNormal(0,1,\"xtoq\",B21)", P_FORMAT),
    ])


def fill_signed_ranks(sheet):
    title(sheet, "Signed ranks: the test of Wilcoxon", "Hollander and Wolfe (1973); Michelson (1879)")
    head(sheet, 4, ["Pairs: depression before less after", "Scale"])
    put_list(sheet, 5, [
        ("Negative rank sum", "=ZavWSRPairNegative(Before,After,0)", "0.0"),
        ("Positive rank sum", "=ZavWSRPairPositive(Before,After,0)", "0.0"),
        ("Differences other than 0", "=ZavPairCount(Before,After)-ZavPairCountRange(Before,After,0,0)", "0"),
        ("Groups of equal differences", "=ZavWSRPairTies(Before,After,0)", "0"),
        ("Tie-correction term", "=ZavWSRPairTieCorrectionTerm(Before,After,0)", "0"),
        ("p-value, two-sided", "=ZavWSRpValue(B7,B6,0)", P_FORMAT),
        ("p-value, less depressed after", "=ZavWSRpValue(B7,B6,1)", P_FORMAT),
        ("p-value, more depressed after", "=ZavWSRpValue(B7,B6,-1)", P_FORMAT),
    ])
    head(sheet, 14, ["One sample: speed of light against its value", "km/s"])
    speed = "(Speed,792.458)"
    put_list(sheet, 15, [
        ("Negative rank sum", f"=ZavWSRNegative{speed}", "0.0"),
        ("Positive rank sum", f"=ZavWSRPositive{speed}", "0.0"),
        ("Differences other than 0", "=ZavCount(Speed)-ZavCountRange(Speed,792.458,792.458)", "0"),
        ("Groups of equal differences", f"=ZavWSRTies{speed}", "0"),
        ("Tie-correction term", f"=ZavWSRTieCorrectionTerm{speed}", "0"),
        ("Largest sample with an exact p-value", "=ZavWSRExactPValMaxSample()", "0"),
        ("Variance, corrected for ties", f"=B17*(B17+1)*(2*B17+1)/24-ZavWSRTieCorrectionTerm{speed}/48", "0.000"),
        ("z with continuity correction", f"=(ZavWSRPositive{speed}-B17*(B17+1)/4-0.5)/SQRT(B21)", "0.0000"),
        ("p-value, two-sided, corrected for ties", "=2*ZavNormal(0,1,\"xtoq\",B22)", "0.000E+00"),
    ])


def fill_kruskal_wallis(sheet):
    title(sheet, "Several groups: the test of Kruskal and Wallis", "Dobson (1983)")
    head(sheet, 4, ["Plants, control and two treatments", "All", "First five each"])
    groups = {
        "B": ",".join(f"ZavDestack(Weight,Group,\"{name}\")" for name in ("ctrl", "trt1", "trt2")),
        "C": "Plants!A2:A6,Plants!A12:A16,Plants!A22:A26",
    }
    rows = [
        ("H, corrected for ties", "=ZavKWData(0,{groups})", "0.0000"),
        ("H, uncorrected", "=ZavKWData(1,{groups})", "0.0000"),
        ("Degrees of freedom", "=ZavKWData(2,{groups})", "0"),
        ("Plants", "=ZavKWData(3,{groups})", "0"),
        ("Groups of equal weights", "=ZavKWData(4,{groups})", "0"),
        ("Divisor for ties", "=ZavKWData(5,{groups})", "0.000000"),
        ("Rank sum of the control", "=ZavKWData(101,{groups})", "0.0"),
        ("Rank sum of treatment 1", "=ZavKWData(102,{groups})", "0.0"),
        ("Rank sum of treatment 2", "=ZavKWData(103,{groups})", "0.0"),
        ("p-value", "=ZavKWpValue(0,{groups})", P_FORMAT),
        ("p-value by chi-square", "=ZavKWpValue(1,{groups})", P_FORMAT),
        ("p-value, exact", "=IFERROR(ZavKWpValue(2,{groups}),\"too many arrangements\")", P_FORMAT),
    ]
    for column, (letter, arguments) in enumerate(groups.items(), start=2):
        for line, (label, formula, number_format) in enumerate(rows, start=5):
            sheet.cell(line, 1, label)
            sheet.cell(line, column, formula.format(groups=arguments)).number_format = number_format
    sheet["A17"] = "Method of the p-value (1 chi-square, 2 exact)"
    sheet["B17"] = "=ZavKWpValueComputationMethod({10,10,10})"
    sheet["C17"] = "=ZavKWpValueComputationMethod({5,5,5})"


def main():
    book = Workbook()
    mann_whitney = book.active
    mann_whitney.title = "Mann-Whitney"
    signed_ranks, kruskal_wallis = (book.create_sheet(name) for name in
                                    ["Signed ranks", "Kruskal-Wallis"])
    fill_data(book, "Plants", "plant-growth.csv")
    fill_data(book, "Patients", "depression.csv")
    fill_data(book, "Light", "morley.csv")
    fill_mann_whitney(mann_whitney)
    fill_signed_ranks(signed_ranks)
    fill_kruskal_wallis(kruskal_wallis)
    save(book, FOLDER / "nonparametric.xlsx")


if __name__ == "__main__":
    main()
