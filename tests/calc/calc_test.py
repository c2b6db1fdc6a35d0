#!/usr/bin/python3
"""The extension in LibreOffice Calc: what Calc computes with it, against what ZavHost computes.

    calc_test.py EXTENSION ZAVHOST SCRATCH_FOLDER
"""
import json
import pathlib
import random
import re
import shutil
import struct
import subprocess
import sys
import time
import zipfile

import office
import uno

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "help/tools"))
import registration  # noqa: E402

# Calc's codes of the errors, and Excel's names for them.
ERRORS = {521: "#NULL!", 532: "#DIV/0!", 519: "#VALUE!", 524: "#REF!", 525: "#NAME?", 503: "#NUM!", 32767: "#N/A"}
XLSX, ODS, XLS = "Calc MS Excel 2007 XML", "calc8", "MS Excel 97"
# Functions whose results have empty values in them.
EMPTY_RESULTS = ("ZavMulti", "ZavPower", "ZavLog", "ZavDummy", "ZavInteraction", "ZavGetCellValues")


def host_cells(zavhost, book):
    """What the host says of every formula."""
    run = subprocess.run([zavhost, "run", "--all", "--json", book], capture_output=True, text=True, encoding="utf-8")
    if run.returncode not in (0, 7):
        sys.exit(f"{book}: zavhost ended with {run.returncode}: {run.stderr}")
    return json.loads(run.stdout)["cells"]


def expected(cell):
    """(row, column, value) relative to the formula's cell."""
    value = cell["value"]
    rows = value if isinstance(value, list) else [[value]]
    for row, line in enumerate(rows):
        for column, item in enumerate(line):
            yield row, column, item


def calc_value(cell):
    error = cell.getError()
    if error:
        return ERRORS.get(error, f"Err:{error}")
    if cell.FormulaResultType2 == 2:  # a text
        return cell.String
    return cell.Value


def same(host, calc, formula):
    if isinstance(host, bool):
        host = float(host)
    if isinstance(host, (int, float)) and isinstance(calc, float):
        return struct.pack("<d", host) == struct.pack("<d", calc)
    if isinstance(host, dict):
        host = host.get("error", host)
    # An empty result is 0 in Excel's cell; Calc has none, so it is an empty text, which other functions skip alike.
    return host == calc or (host == 0 and calc == "" and any(name in formula for name in EMPTY_RESULTS))


def differences(document, cells):
    """[(place, formula, host's value, Calc's)] of the cells in which the two differ."""
    found, compared = [], 0
    for cell in cells:
        if "Zav" not in cell["formula"] or "ZavRand" in cell["formula"] or "ERROR.TYPE" in cell["formula"]:
            continue
        first = document.Sheets.getByName(cell["sheet"]).getCellRangeByName(cell["cell"]).CellAddress
        sheet = document.Sheets.getByName(cell["sheet"])
        for row, column, value in expected(cell):
            got = calc_value(sheet.getCellByPosition(first.Column + column, first.Row + row))
            compared += 1
            if not same(value, got, cell["formula"]):
                found.append((f"{cell['sheet']}!{cell['cell']}+{row},{column}", cell["formula"], value, got))
    return compared, found


def is_loud(difference):
    return isinstance(difference[3], str) and difference[3].startswith(("#", "Err:"))


KINDS = ["=0", "=1", "=2.5", "blank", "TRUE", "FALSE", '="text"', '=""', "=1>0", "=1<0", '=IF(1>0;"";0)', "=3-3",
         "=1/0"]


def put_kind(document, sheet, column, row, kind):
    cell = sheet.getCellByPosition(column, row)
    formats = document.NumberFormats
    cell.NumberFormat = formats.getStandardFormat(1024 if kind in ("TRUE", "FALSE") else 16,
                                                  uno.createUnoStruct("com.sun.star.lang.Locale"))
    if kind in ("TRUE", "FALSE"):
        cell.Value = float(kind == "TRUE")
    elif kind == '="text"':
        cell.String = "text"
    elif kind in ("=0", "=1", "=2.5"):
        cell.Value = float(kind[1:])
    else:
        cell.Formula = "" if kind == "blank" else kind


def write_kinds(document):
    """Column A holds numbers; column B one cell of each kind; column D the same with a number above and below."""
    sheet = document.Sheets.getByIndex(0)
    for row, number in enumerate((4, 7, 1, 0, 9, 12)):
        sheet.getCellByPosition(0, row).Value = number
    for place, kind in enumerate(KINDS):
        put_kind(document, sheet, 1, place, kind)
        sheet.getCellByPosition(3, 3 * place).Value = 3
        put_kind(document, sheet, 3, 3 * place + 1, kind)
        sheet.getCellByPosition(3, 3 * place + 2).Value = 8
    return sheet


def kind_formulas():
    """(formula, kind): every function with a cell of each kind at each place of its arguments."""
    for function in registration.functions():
        if function.macros_only or function.name == "ZavRand":
            continue
        letters = re.sub(r"[%!#$]", "", function.types)[1:]
        letters = letters[:2] if set(letters[1:]) == {"R"} else letters[:5]  # the further ones are alike
        usual = ["A1:A6" if letter == "R" else "1" for letter in letters]
        for place, letter in enumerate(letters):
            for number, kind in enumerate(KINDS):
                cells = [f"B{number + 1}"]
                if letter == "R":
                    cells.append(f"D{3 * number + 1}:D{3 * number + 3}")
                for given in cells:
                    arguments = usual[:place] + [given] + usual[place + 1:]
                    call = f"_xll.{function.name}({';'.join(arguments)})"
                    # Of a handle, what it stands for.
                    yield f"=_xll.ZavSum({call})" if function.types.startswith("C") else f"={call}", kind


def check_kinds(calc, zavhost, scratch):
    """Each formula alone: the host's value, or an error where Calc itself stops at an error cell. All together: the
    host's value or an error."""
    document = calc.new()
    sheet = write_kinds(document)
    alone, formulas = [], list(kind_formulas())
    for formula, _ in formulas:
        cell = sheet.getCellByPosition(7, 0)
        cell.Formula = formula
        alone.append(calc_value(cell))
    sheet.getCellByPosition(7, 0).String = ""
    sheet.getCellRangeByPosition(8, 0, 8, len(formulas) - 1).setFormulaArray(tuple((f,) for f, _ in formulas))
    together = [calc_value(sheet.getCellByPosition(8, row)) for row in range(len(formulas))]
    book = scratch / "kinds.xlsx"
    calc.save(document, book, XLSX)
    document.close(True)
    host = {cell["cell"]: next(expected(cell))[2] for cell in host_cells(zavhost, book)}
    wrong, loud = [], 0
    for row, (formula, kind) in enumerate(formulas):
        want = host[f"I{row + 1}"]
        for what, got in (("alone", alone[row]), ("together", together[row])):
            if same(want, got, formula):
                continue
            difference = (what, formula, want, got, kind)
            if not is_loud(difference) or (what == "alone" and kind != "=1/0"):
                wrong.append(difference)
            loud += 1
    print(f"kinds of cells: {2 * len(formulas)} results, {loud} of them errors that the host has not")
    return wrong


def with_plain_names(source, target):
    """The file without the functions' prefix, as programs write it that do not know it."""
    with zipfile.ZipFile(source) as old, zipfile.ZipFile(target, "w") as new:
        for entry in old.infolist():
            content = old.read(entry)
            if entry.filename.endswith(".xml"):
                content = re.sub(rb"_xll\.(?=Zav)", b"", content, flags=re.IGNORECASE)
            new.writestr(entry, content)
    return target


def formulas_of(document):
    return [sheet.getCellRangeByPosition(0, 0, 40, 400).FormulaArray for sheet in document.Sheets]


def check_files(calc, zavhost, scratch):
    """What Calc writes is read by the host with the values of the original, and has the prefix for Excel:
    .xlsx -> .ods -> .xls -> .xlsx. Names without the prefix are found on opening, and nothing else has changed."""
    source = pathlib.Path(shutil.copy(ROOT / "examples/iris.xlsx", scratch / "original.xlsx"))
    original, first, wrong = host_cells(zavhost, source), None, []
    for name, form in (("iris.ods", ODS), ("iris.xls", XLS), ("iris.xlsx", XLSX)):
        document = calc.open(source)
        first = first or formulas_of(document)
        if source.suffix != ".xls":
            document.close(True)
            document = calc.open(with_plain_names(source, scratch / f"plain{source.suffix}"))
        document.calculateAll()
        if formulas_of(document) != first or document.isModified() or document.UndoManager.isUndoPossible():
            wrong.append(("opened", source.name, "the formulas of the original in an unmodified document", "others"))
        source = scratch / name
        calc.save(document, source, form)
        document.close(True)
    with zipfile.ZipFile(source) as book:
        sheets = b"".join(book.read(name) for name in book.namelist() if "sheets/" in name)
    if re.search(rb"(?<!_XLL\.)ZAV\w+\(", sheets, re.IGNORECASE):
        wrong.append(("written", source.name, "the prefix for Excel", "plain names"))
    again = {(cell["sheet"], cell["cell"]): cell for cell in host_cells(zavhost, source)}
    return wrong + [("after the round trip", cell["formula"], cell["value"], again.get((cell["sheet"], cell["cell"])))
                    for cell in original
                    if again.get((cell["sheet"], cell["cell"]), {}).get("value") != cell["value"]]


def check_several_sheets(calc):
    """A range over sheets, of which Calc passes the first one alone, is an error."""
    document = calc.new()
    document.Sheets.insertNewByName("Second", 1)
    for index in range(2):
        document.Sheets.getByIndex(index).getCellRangeByName("A1:A3").setDataArray(((3,), (4,), (8 + index,)))
    cell = document.Sheets.getByIndex(0).getCellByPosition(4, 0)
    cell.Formula = "=_xll.ZavMean($Sheet1.A1:$Second.A3)"
    got = calc_value(cell)
    document.close(True)
    return [] if isinstance(got, str) else [("a range over sheets", cell.Formula, "an error", got)]


WATCHED = ("ZavMean({D}1:{D}9)", "ZavMean({D}4:{D}12)", "ZavCountCellsByType({B}1:{B}12;1)", "ZavMean(A1;A2)",
           "ZavCountCellsByType({D}1:{D}9;4)", "ZavMedian({B}1:{B}12;0)", "ZavCount({D}1:{D}9)",
           "ZavSum(ZavDestack({D}1:{D}12;{D}1:{D}12;3))", "ZavStdDev({A}1:{A}6)", "ZavMean(changing)",
           "ZavCorrelationCoeff({A}1:{A}6;{D}1:{D}6)", "ZavMean({A}1:{A}6)+ZavMean({B}1:{B}12)")


def enter_watched(watched):
    for cell, formula in zip(watched, WATCHED):
        cell.Formula = "=_xll." + formula.format(**{column: f"$Data.{column}" for column in "ABD"}).replace(
            "+Zav", "+_xll.Zav").replace("(Zav", "(_xll.Zav")


def random_edit(document, data, watched, source):
    """One edit of the kinds that people make."""
    def row():
        return source.randrange(12)
    choice = source.random()
    if choice < 0.7:
        put_kind(document, data, source.choice((1, 3)), row(), source.choice(KINDS[:-1]))
    elif choice < 0.8:
        data.getCellByPosition(0, source.randrange(6)).Value = source.choice((0, 1, 2, 7.5))
    elif choice < 0.84:
        data.getCellRangeByPosition(1, row(), 3, 12).clearContents(1023)
    elif choice < 0.88:  # a row of cells goes elsewhere, and ranges move with it
        data.moveRange(data.getCellByPosition(1, row()).CellAddress, data.getCellByPosition(3, row()).RangeAddress)
    elif choice < 0.92:
        data.copyRange(data.getCellByPosition(3, row()).CellAddress, data.getCellByPosition(1, row()).RangeAddress)
    elif choice < 0.95:
        document.NamedRanges.getByName("changing").Content = f"$Data.$D$1:$D${row() + 1}"
    elif choice < 0.98:
        undo = document.UndoManager
        # What a move or a copy has changed, Calc itself does not calculate again once it is undone: not even SUM.
        if undo.isUndoPossible() and undo.getCurrentUndoActionTitle() not in ("Move", "Copy"):
            undo.undo()
    else:
        enter_watched(watched)


def check_edits(calc, steps=2000):
    """After each edit no number is another than a new calculation of the whole document gives. An error may stay
    that an edit of other cells has made needless, and a number that a new calculation would doubt."""
    document = calc.new()
    data = write_kinds(document)
    data.Name = "Data"
    document.NamedRanges.addNewByName("changing", "$Data.$D$1:$D$9", data.getCellByPosition(0, 0).CellAddress, 0)
    document.Sheets.insertNewByName("Watch", 1)
    watched = [document.Sheets.getByName("Watch").getCellByPosition(0, row) for row in range(len(WATCHED))]
    enter_watched(watched)
    source, wrong, errors = random.Random(1), [], 0
    for step in range(steps):
        random_edit(document, data, watched, source)
        shown = [calc_value(cell) for cell in watched]
        if source.random() < 0.7:  # what is out of date now stays for the next edits
            continue
        document.calculateAll()
        for cell, before in zip(watched, shown):
            difference = (f"after edit {step}", cell.Formula, calc_value(cell), before)
            if difference[2] not in (before, "#VALUE!") and not is_loud(difference):
                wrong.append(difference)
            errors += difference[2] != before
    print(f"edits: {steps}, after which {errors} results were errors until all was calculated")
    document.close(True)
    return wrong


def check_doubt(calc, patience=20):
    """An error that another formula has caused goes when that formula does, soon after, and nothing can be undone but
    the edits."""
    document = calc.new()
    sheet = document.Sheets.getByIndex(0)
    sheet.getCellRangeByName("A1:B3").setDataArray(((0, 0), (1, 1), (2, 2)))
    sheet.getCellRangeByName("B1").Formula = "=1>2"
    cell = sheet.getCellRangeByName("D1")
    cell.Formula, sheet.getCellRangeByName("D2").Formula = "=_xll.ZavMean(A1:A3)", "=_xll.ZavMean(B1:B3)"
    before = calc_value(cell)
    put_kind(document, sheet, 1, 0, "=2.5")
    edits = len(document.UndoManager.getAllUndoActionTitles())
    deadline = time.monotonic() + patience
    while calc_value(cell) != 1 and time.monotonic() < deadline:
        time.sleep(0.1)
    got = (before, calc_value(cell), len(document.UndoManager.getAllUndoActionTitles()) - edits)
    document.close(True)
    return [] if got == ("#VALUE!", 1, 0) else [("a doubt and its end", "=ZavMean(A1:A3)", ("#VALUE!", 1, 0), got)]


def check_million(calc, zavhost, scratch):
    """A million cells of all sizes: the bits of the host's mean."""
    source = random.Random(2)
    numbers = [source.gauss(0, 1) * 10 ** source.randrange(-6, 7) for _ in range(1_000_000)]
    file = scratch / "million.csv"
    file.write_text("x\n" + "\n".join(map(repr, numbers)) + "\n")
    run = subprocess.run([zavhost, "eval", "--json", "=ZavMean(x)", "--data", file], capture_output=True, text=True,
                         check=True)
    want = json.loads(run.stdout)
    document = calc.new()
    sheet = document.Sheets.getByIndex(0)
    sheet.getCellRangeByPosition(0, 0, 0, len(numbers) - 1).setDataArray(tuple((number,) for number in numbers))
    cell = sheet.getCellByPosition(2, 0)
    cell.Formula = f"=_xll.ZavMean(A1:A{len(numbers)})"
    got = calc_value(cell)
    document.close(True)
    return [] if same(want, got, cell.Formula) else [("a million cells", cell.Formula, want, got)]


def check_removal(calc):
    """The extension removed again leaves no function and no file."""
    calc.manager.removeExtension(office.IDENTIFIER, "ZavrelFunctions.oxt", "user", None, office.Approval())
    calc.stop()
    calc.start()
    document = calc.new()
    cell = document.Sheets.getByIndex(0).getCellByPosition(0, 0)
    cell.Formula = "=_xll.ZavMean(3;4)"
    got = calc_value(cell)
    document.close(True)
    left = [file for file in calc.profile.rglob("*") if "zavrel" in str(file.relative_to(calc.profile)).lower()
            or file.is_file() and b"zavrel" in file.read_bytes().lower()]
    return [("after removal", "ZavMean", "#NAME?", got, *left)] if got != "#NAME?" or left else []


def main():
    extension, zavhost, scratch = sys.argv[1:]
    scratch = pathlib.Path(scratch)
    wrong = []
    calc = office.Office(scratch / "profile", extension)
    with calc:
        for book in sorted((ROOT / "examples").glob("*.xlsx")):
            # The office puts a lock beside what it opens.
            document = calc.open(shutil.copy(book, scratch))
            document.calculateAll()
            compared, found = differences(document, host_cells(zavhost, book))
            print(f"{book.name}: {compared} cells, {len(found)} errors that the host has not")
            wrong += [difference for difference in found if not is_loud(difference)]
            document.close(True)
        wrong += check_kinds(calc, zavhost, scratch)
        wrong += check_files(calc, zavhost, scratch)
        wrong += check_several_sheets(calc)
        wrong += check_edits(calc)
        wrong += check_doubt(calc)
        wrong += check_million(calc, zavhost, scratch)
        wrong += check_removal(calc)
    for difference in wrong[:60]:
        print(*difference)
    return 1 if wrong else 0


if __name__ == "__main__":
    sys.exit(main())
