#!/usr/bin/env python3
"""chart_comparison.py FOLDER: the charts of every analysis that the tests of the services have written into the folder
twice, into an open workbook and as a report. Order, places, titles, series and looks must be the same."""
import pathlib
import re
import sys
import xml.etree.ElementTree as xml
import zipfile

folder = pathlib.Path(sys.argv[1])
# What a program adds for itself, and what the cells hold at the moment.
LEFT_OUT = {"strCache", "numCache", "cNvPr", "ext", "axId", "crossAx", "printSettings"}


def lines_of(element, indent=0):
    """The element and what is in it, a line each."""
    name = element.tag.rpartition("}")[2]
    is_default = element.get("sourceLinked") == "1" or (name == "gapWidth" and element.get("val") == "150")
    if name in LEFT_OUT or is_default:
        return
    if name == "ln" and any(child.tag.endswith("}noFill") for child in element):
        element.attrib.pop("w", None)  # of a line that is not drawn
    name = {"strRef": "reference", "numRef": "reference"}.get(name, name)  # by what the cells hold at the moment
    attributes = [f"{key.rpartition('}')[2]}={value}" for key, value in sorted(element.items())]
    yield " " * indent + " ".join([name, *attributes, (element.text or "").strip()]).rstrip()
    for child in element:
        yield from lines_of(child, indent + 1)


def charts_of(file):
    """The charts, and where they stand on the sheet."""
    with zipfile.ZipFile(file) as package:
        numbered = {int(found[1]): name for name in package.namelist()
                    if (found := re.fullmatch(r"xl/charts/chart(\d+)\.xml", name))}
        charts = [list(lines_of(xml.fromstring(package.read(numbered[number])))) for number in sorted(numbered)]
        drawings = [name for name in package.namelist() if re.fullmatch(r"xl/drawings/drawing\d+\.xml", name)]
        places = [line for name in drawings for line in lines_of(xml.fromstring(package.read(name)))]
    return charts, places


problems = []
reports = sorted(folder.glob("*.report.xlsx"))
for report in reports:
    name = report.name.partition(".")[0]
    expected, expected_places = charts_of(report)
    written, places = charts_of(folder / f"{name}.open.xlsx")
    if len(expected) != len(written):
        problems.append(f"{name}: {len(written)} charts in the workbook, {len(expected)} in the report")
    for number, (one, other) in enumerate(zip(written, expected), 1):
        problems += [f"{name}, chart {number}: {line}" for line in sorted(set(one) ^ set(other))]
        if set(one) == set(other) and one != other:
            problems.append(f"{name}, chart {number}: another order")
    problems += [f"{name}, places: {line}" for line in sorted(set(places) ^ set(expected_places))]
if len(reports) != 14:
    problems.append(f"{len(reports)} analyses")
print("\n".join(problems) or "the charts are the same")
sys.exit(1 if problems else 0)
