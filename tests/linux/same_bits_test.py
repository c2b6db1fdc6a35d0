#!/usr/bin/python3
"""The product for Linux and the one for Windows give the same bits: the example workbooks, and every example of the
help as a formula of one workbook, each cell's number to the last bit and each text. What a search finds, whose last
steps the last bits of elementary functions decide, agrees to eight digits.

    same_bits_test.py WINE_RUN WINDOWS_ZAVHOST LINUX_ZAVHOST SCRATCH_FOLDER
"""
import json
import math
import pathlib
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "tests/help"), str(ROOT / "help")]
import check_examples  # noqa: E402
from tools import pages  # noqa: E402


SEARCHED = {"floods.xlsx"}  # the books with estimates


def same(one, other, searched):
    """Whether two values, texts or numbers as texts, or rows of them, are the same."""
    if isinstance(one, list) and isinstance(other, list):
        return len(one) == len(other) and all(same(a, b, searched) for a, b in zip(one, other))
    try:
        return one == other or searched and math.isclose(float(one), float(other), rel_tol=1e-8)
    except (TypeError, ValueError):
        return False


def cells_of(host, workbook):
    """What a host says of every formula. Its numbers are the shortest that give the double back."""
    run = subprocess.run([*host, "run", "--all", "--json", str(workbook)], capture_output=True, text=True,
                         encoding="utf-8")
    if run.returncode != 0:
        sys.exit(f"{workbook.name}: {host[-1]} ended with {run.returncode}: {run.stderr}")
    return json.loads(run.stdout, parse_float=str)["cells"]


def main():
    wine_run, windows, linux, scratch = sys.argv[1:]
    scratch = pathlib.Path(scratch)
    scratch.mkdir(parents=True, exist_ok=True)
    every_page = [*pages.function_pages().values(), *pages.topics().values()]
    check_examples.write_workbook(scratch / "help.xlsx", [page for page in every_page if page.examples])
    compared = different = 0
    for book in [*sorted((ROOT / "examples").glob("*.xlsx")), scratch / "help.xlsx"]:
        there, here = cells_of([wine_run, windows], book), cells_of([linux], book)
        if len(there) != len(here):
            sys.exit(f"{book.name}: {len(there)} formulas under Windows, {len(here)} under Linux")
        for one, other in zip(there, here):
            # What is drawn at random differs by nature.
            if "ZavRand" in one["formula"]:
                continue
            compared += 1
            searched = book.name in SEARCHED
            if one | {"value": None} != other | {"value": None} or not same(one["value"], other["value"], searched):
                different += 1
                print(f"{book.name}: {one} under Windows, {other} under Linux")
    print(f"{compared} formulas compared, {different} differ")
    return 1 if different or compared < 1000 else 0


if __name__ == "__main__":
    sys.exit(main())
