#!/usr/bin/python3
"""Holds the example workbooks against what makes them and what they show.

    check_workbooks.py SCRATCH_FOLDER

The functions of the add-in stand in them as Excel stores them, the scripts make what is there, and the self-test
has a line, and its macro module an answer, for everything that macros call.
"""

import os
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as xml
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "examples"), str(ROOT / "help")]
import make_self_test  # noqa: E402
from tools import registration  # noqa: E402

problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


def parts(file):
    with zipfile.ZipFile(file) as package:
        return {name: package.read(name) for name in package.namelist()}


def check_stored_formulas(file, names):
    """Formulas and defined names, as the XML has them."""
    found = 0
    for part, content in parts(file).items():
        if not part.startswith("xl/worksheets/") and part != "xl/workbook.xml":
            continue
        for element in xml.fromstring(content).iter():
            if element.tag.endswith(("}f", "}definedName")) and element.text:
                without_texts = re.sub(r'"[^"]*"', '""', element.text)
                calls = re.findall(r"([\w.]*)\b(Zav\w+)\(", without_texts)
                check(all(mark == "_xll." for mark, name in calls if name in names),
                      f"{file.name}: not as Excel stores it: {element.text}")
                found += len(calls)
    check(found > 0, f"{file.name}: no formula")


def check_scripts(scratch):
    """Runs the scripts on links to what they read."""
    folder = scratch / "examples"
    folder.mkdir(parents=True, exist_ok=True)
    for name in ("help", "src", "tests", "companions"):
        (scratch / name).unlink(missing_ok=True)
        os.symlink(ROOT / name, scratch / name)
    for file in [*ROOT.glob("examples/*.py"), *ROOT.glob("examples/*.csv"), *ROOT.glob("examples/air-quality.xlsx")]:
        (folder / file.name).write_bytes(file.read_bytes())
    made = set()
    for script in sorted(folder.glob("make_*.py")):
        subprocess.run([sys.executable, "-B", script], check=True)
    for file in folder.glob("*.xlsx"):
        made.add(file.name)
        there = ROOT / "examples" / file.name
        check(there.exists() and parts(there) == parts(file), f"{file.name} is not what its script makes")
    check(made == {file.name for file in ROOT.glob("examples/*.xlsx")}, f"made: {sorted(made)}")


def check_macros():
    """Every declared entry point and every worksheet function for macros has a line and an answer."""
    modules = ROOT / "companions/macro"
    declared = set(re.findall(r"Declare PtrSafe (?:Sub|Function) (\w+)",
                              (modules / "ZavrelDeclarations.bas").read_text(encoding="ascii")))
    wanted = declared | {function.name for function in registration.functions() if function.macros_only}
    lines = {name for name, _, _ in make_self_test.MACROS}
    module = (modules / "ZavrelSelfTest.bas").read_bytes().decode("ascii")
    answers = re.findall(r'^        Case "(\w+)"(?!,)', module, re.M)
    check("\n" not in module.replace("\r\n", ""), "ZavrelSelfTest.bas: a line does not end in CR LF")
    check(lines == wanted, f"macros: lines and entry points differ: {sorted(lines ^ wanted)}")
    check(sorted(answers) == sorted(lines), f"macros: lines and answers differ: {sorted(set(answers) ^ lines)}")
    row, column = re.search(r"FirstRow As Long = (\d+)", module), re.search(r"ResultColumn As Long = (\d+)", module)
    check(int(row[1]) == make_self_test.FIRST_ROW and "ABCDEF"[int(column[1]) - 1] == make_self_test.RESULT,
          "ZavrelSelfTest.bas writes elsewhere than the sheet compares")


def main():
    names = {function.name for function in registration.functions()}
    for file in sorted(ROOT.glob("examples/*.xlsx")):
        check_stored_formulas(file, names)
    check_scripts(pathlib.Path(sys.argv[1]))
    check_macros()
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
