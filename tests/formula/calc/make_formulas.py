"""The formulas by which the host's worksheet functions are held against another spreadsheet.

templates/*.txt has one template a line; "#" begins a remark. A template is a formula with
alternatives in brackets: "LEFT([C1|"abc"],[0|2])" stands for four formulas. Of many combinations,
every alternative appears at least once, and a fixed sample brings them to 10. Marks in front of a
template change that:

    @40 FORMULA     at most 40 combinations
    2x3 FORMULA     an array formula for two rows and three columns

Every formula has its own cell on the first sheet, right of the cells in cells.txt: normal formulas
in the first rows, so that a column beside them has an implicit intersection, array formulas below.
"""

import itertools
import random
import re
import sys
from pathlib import Path
from typing import NamedTuple

HERE = Path(__file__).parent
FIRST_COLUMN = 30
ROWS_OF_FORMULAS = 12
FIRST_ARRAY_ROW = 21
ARRAY_ROWS, ARRAY_COLUMNS = 13, 6  # room for each array formula
ARRAYS_BELOW_EACH_OTHER = 20
SAMPLE = 10


class Case(NamedTuple):
    row: int  # of the top left cell, from 1
    column: int
    rows: int  # 0 for a normal formula
    columns: int
    formula: str

    @property
    def cells(self):
        first = column_name(self.column) + str(self.row)
        if self.rows == 0:
            return first
        return f"{first}:{column_name(self.column + self.columns - 1)}{self.row + self.rows - 1}"


def column_name(column):
    name = ""
    while column:
        column, letter = divmod(column - 1, 26)
        name = chr(ord("A") + letter) + name
    return name


def expand(template, most):
    """The formulas of a template, at most as many as given unless it has more alternatives."""
    parts = re.split(r"\[([^\[\]]*\|[^\[\]]*)\]", template)
    choices = [part.split("|") if i % 2 else [part] for i, part in enumerate(parts)]
    combinations = list(itertools.product(*choices))
    if len(combinations) > most:
        sample = random.Random(template)
        sample.shuffle(combinations)
        combinations = covering(combinations, most)
    return ["".join(combination) for combination in combinations]


def covering(combinations, most):
    """Those combinations that bring in an alternative not met before, then others up to most."""
    met, first, rest = set(), [], []
    for combination in combinations:
        alternatives = set(enumerate(combination))
        (rest if alternatives <= met else first).append(combination)
        met |= alternatives
    return first + rest[:max(0, most - len(first))]


def templates():
    """(file, rows, columns, most, template) of every line; rows is 0 for a normal formula."""
    for file in sorted((HERE / "templates").glob("*.txt")):
        for line in file.read_text(encoding="utf-8").splitlines():
            mark = re.match(r"(?:@(\d+) )?(?:(\d)x(\d) )?", line)
            if line and not line.startswith("#"):
                most, rows, columns = (int(group or 0) for group in mark.groups())
                yield file.stem, rows, columns, most or SAMPLE, line[mark.end():]


def formulas():
    """Every formula once, in the order of the files, with its place."""
    seen = set()
    count, arrays = 0, 0
    for _, rows, columns, most, template in templates():
        for formula in expand(template, most):
            if (rows, columns, formula) in seen:
                continue
            seen.add((rows, columns, formula))
            if rows:
                across, down = divmod(arrays, ARRAYS_BELOW_EACH_OTHER)
                arrays += 1
                row = FIRST_ARRAY_ROW + down * ARRAY_ROWS
                column = FIRST_COLUMN + across * ARRAY_COLUMNS
            else:
                across, down = divmod(count, ROWS_OF_FORMULAS)
                count += 1
                row, column = 1 + down, FIRST_COLUMN + across
            yield Case(row, column, rows, columns, formula)


if __name__ == "__main__":
    for case in formulas():
        print(case.cells, "{=" + case.formula + "}" if case.rows else "=" + case.formula, sep="\t")
    print(sum(1 for _ in formulas()), "formulas", file=sys.stderr)
