#!/usr/bin/python3
"""Holds what the help says about Excel and R against what the programs compute.

    check_equivalents.py RUNNER ZAVHOST FOLDER            compares the add-in with data/equivalents.csv, and R, if it
                                                          is installed, with its results there
    check_equivalents.py RUNNER ZAVHOST FOLDER --record   writes that file; needs Rscript and soffice

RUNNER is a program that starts ZAVHOST: cmake/wine-run, or env for one that is not built for Windows. The file has
a row for each comparison of help/equivalents.ini that a program executed. Excel's formulas are executed by LibreOffice
Calc, whose functions have the same names and definitions; Excel itself was not at hand.
"""

import argparse
import csv
import pathlib
import shutil
import subprocess
import sys

import comparison
from tools import equivalents

RECORD = pathlib.Path(__file__).resolve().parent / "data/equivalents.csv"
FIELDS = ("function", "formula", "program", "variables", "code", "add-in", "computed", "relative difference", "outcome")
KEY = FIELDS[:5]
SAME = 1e-9  # the largest relative difference of results that count as the same
CELLS = " | "  # between the cells of a result
WITHOUT_COMPARISON = {"ZavRand", "ZavDistRandom"}  # nothing computes the same random numbers


def comparisons():
    return {function: equivalents.comparisons(function) for function in equivalents.functions()}


def tasks(program):
    """(function, comparison, code) of a program, without code that nothing here can execute."""
    return [(function, one, code) for function, listed in comparisons().items() for one in listed
            for name, code in one.codes if name == program and (program == "R" or comparison.can_be_in_calc(code))]


def difference(ours, theirs, signs):
    """The largest difference of two results, relative to the largest number; None if they cannot be compared."""
    if len(ours) != len(theirs) or not ours:
        return None
    if not all(isinstance(cell, float) for cell in (*ours, *theirs)):
        return 0.0 if ours == theirs else None
    if signs:
        ours, theirs = map(abs, ours), map(abs, theirs)
    pairs = list(zip(ours, theirs))
    return max(abs(a - b) for a, b in pairs) / (max(max(abs(a), abs(b)) for a, b in pairs) or 1)


def signs_are_arbitrary(function):
    return "signs" in (equivalents.note(function) or "")


def text(cells):
    return CELLS.join(str(cell).removesuffix(".0") for cell in cells)


def parsed(recorded):
    return [comparison.number(cell) for cell in recorded.split(CELLS)]


def variables(one):
    return "; ".join(f"{name} = {value}" for name, value in one.variables.items())


def row(program, task, ours, theirs):
    function, one, code = task
    apart = difference(ours, theirs, signs_are_arbitrary(function))
    same = apart is not None and apart <= SAME
    because = one.because or "for a reason that equivalents.ini does not give"
    return dict(zip(FIELDS, (function, one.formula, program, variables(one), code, text(ours), text(theirs),
                             "" if apart is None else f"{apart:.1e}", "same" if same else f"differs: {because}")))


def version(program, *command):
    """The program's name, and the version that it says."""
    said = subprocess.run(command, capture_output=True, text=True, check=True).stdout.split()
    return f"{program} {next(word for word in said if word[0].isdigit())}"


def record(ours, folder):
    rows = []
    programs = (("R", version("R", "Rscript", "--version"), comparison.in_r(tasks("R"))),
                ("Excel", version("LibreOffice Calc", "soffice", "--version"), comparison.in_calc(folder, tasks("Excel"))))
    for program, name, results in programs:
        rows += [row(name, task, ours[task[0], task[1].formula], result)
                 for task, result in zip(tasks(program), results, strict=True)]
    order = list(comparisons())
    with open(RECORD, "w", encoding="utf-8", newline="") as file:
        writer = csv.DictWriter(file, FIELDS, lineterminator="\n")
        writer.writeheader()
        writer.writerows(sorted(rows, key=lambda one: order.index(one["function"])))
    print(f"{len(rows)} comparisons of {len({one['function'] for one in rows})} functions recorded")


def key(program, task):
    function, one, code = task
    return function, one.formula, program, variables(one), code


def problems(ours):
    with open(RECORD, encoding="utf-8", newline="") as file:
        recorded = {(one["function"], one["formula"], "R" if one["program"].startswith("R ") else "Excel",
                     one["variables"], one["code"]): one for one in csv.DictReader(file)}
    listed = {key(program, task): task for program in equivalents.PROGRAMS for task in tasks(program)}
    for function in equivalents.functions():
        has_code = any(equivalents.codes(equivalents.equivalent(function, program)) for program in equivalents.PROGRAMS)
        if has_code == (not equivalents.comparisons(function)) and function not in WITHOUT_COMPARISON:
            yield f"{function}: nothing is compared"
    for which in recorded.keys() ^ listed.keys():
        yield f"{which[0]}: {'not recorded' if which in listed else 'recorded, but not in equivalents.ini'}: {which[1:]}"
    for which in recorded.keys() & listed.keys():
        one, (function, compared, _) = recorded[which], listed[which]
        now = difference(ours[function, compared.formula], parsed(one["add-in"]), False)
        if now is None or now > 1e-13:
            yield f"{function}: {compared.formula} is {ours[function, compared.formula]}, but was {one['add-in']}"
        apart = difference(ours[function, compared.formula], parsed(one["computed"]), signs_are_arbitrary(function))
        if (apart is not None and apart <= SAME) == (compared.because is not None):
            yield f"{function}: {compared.formula} and {which[4]} differ otherwise than it says"
    if shutil.which("Rscript"):
        for task, now in zip(tasks("R"), comparison.in_r(tasks("R")), strict=True):
            one = recorded.get(key("R", task))
            apart = difference(now, parsed(one["computed"]), signs_are_arbitrary(task[0])) if one and now else 0.0
            if apart is None or apart > SAME:
                yield f"{task[0]}: {task[2]} in R is {now}, but was {one['computed']}"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("runner")
    parser.add_argument("zavhost")
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("--record", action="store_true")
    arguments = parser.parse_args()
    arguments.folder.mkdir(parents=True, exist_ok=True)
    ours = comparison.add_in(arguments.runner, arguments.zavhost, arguments.folder, comparisons())
    if arguments.record:
        record(ours, arguments.folder)
    wrong = sorted(problems(ours))
    print("\n".join(wrong) or "the equivalents are as recorded")
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
