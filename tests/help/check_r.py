#!/usr/bin/python3
"""Runs the R code that the pages give as equivalent, and compares the results with the pages' examples, which
check_examples.py compares with the add-in. R code of packages that are not installed is not compared.

data/r_cases.txt has a line for each comparison: an example, the variables of the R code, and the number of the code
on the page if that is not 1. A2:A9 stands for the numbers in these cells of the page's data, "A2:A9" for their texts.
"""

import re
import subprocess
import sys
from decimal import Decimal
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "help"))
from tools import pages  # noqa: E402

RANGE = re.compile(r'("?)([A-Z])(\d+):\2(\d+)\1')
PRINT = "cat(format(as.vector(if (is.matrix(v)) t(v) else v), digits = 15, trim = TRUE), '\\n', sep = ' ')"


def vector(match, rows):
    quote, column, first, last = match.groups()
    texts = [row[ord(column) - ord("A")] for row in rows[int(first) - 1:int(last)]]
    shown = [repr(text) if quote else text if re.fullmatch(r"[-\d.]+", text) else "NA" for text in texts]
    return f"c({', '.join(shown)})"


def case(line):
    """The page, the example and the R code of a line."""
    formula, variables, *number = [part.strip() for part in line.split(" | ")]
    page = pages.function_pages()[re.match(r"\{?=(\w+)", formula)[1]]
    example = next((example for example in page.examples if example.shown_formula == formula), None)
    if example is None:
        sys.exit(f"r_cases.txt: {formula} is no example of {page.name}")
    rows = pages.data_rows(page.header["data"]) if "data" in page.header else []
    codes = re.findall("`([^`]+)`", page.header["r"])
    code = codes[int(number[0]) - 1 if number else 0]
    setup = RANGE.sub(lambda match: vector(match, rows), variables)
    package = re.match(r"(\w+)::", code)
    condition = f"requireNamespace('{package[1]}', quietly = TRUE)" if package else "TRUE"
    return page, example, f"if ({condition}) local({{{setup}; v <- {code}; {PRINT}}}) else cat('skipped\\n')"


def agrees(shown, computed, signs):
    if shown in ("TRUE", "FALSE") or computed in ("TRUE", "FALSE", "NA"):
        return shown == computed
    number, expected = Decimal(computed), Decimal(shown)
    if signs:
        number, expected = abs(number), abs(expected)
    return abs(number - expected) <= Decimal("1E-9") * max(1, abs(expected))


def main():
    cases = [case(line) for line in (HERE / "data/r_cases.txt").read_text(encoding="utf-8").splitlines()]
    program = "options(warn = -1)\n" + "\n".join(code for *_, code in cases) + "\n"
    run = subprocess.run(["Rscript", "-"], input=program, capture_output=True, text=True)
    if run.returncode != 0:
        sys.exit(run.stderr)
    wrong = []
    for (page, example, _), line in zip(cases, run.stdout.splitlines(), strict=True):
        shown = [cell for row in example.rows for cell in row if cell != "#N/A"]
        computed = line.split()
        signs = "signs" in page.header["r"]
        if computed != ["skipped"] and (len(shown) != len(computed) or
                                        not all(agrees(a, b, signs) for a, b in zip(shown, computed))):
            wrong.append(f"{example.shown_formula}: {' '.join(shown)}, but R computes {line}")
    print("\n".join(wrong) or f"{len(cases)} examples are as R computes them")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
