#!/usr/bin/python3
"""What workbooks that ask for much make the program take: none as much as half a gigabyte.

    memory_test.py ZAVHOST SCRATCH_FOLDER
"""
import os
import pathlib
import subprocess
import sys
import zipfile

ZAVHOST, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
MEGABYTES = 512
MEGABYTE = 1 << 20
RELATIONS = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
FORMULA = "<row><c><f>ZavMean(1,2)</f><v>0</v></c></row>"  # changes, so that the sheet is written


def relationships(*entries):
    listed = "".join(f'<Relationship Id="r{number}" Type="{RELATIONS}/{kind}" Target="{target}"/>'
                     for number, (kind, target) in enumerate(entries))
    return f'<Relationships xmlns="http://schemas.openxmlformats.org/package/2006/relationships">{listed}</Relationships>'


def write(file, rows, names="", texts="<sst/>"):
    parts = {
        "[Content_Types].xml": "<Types/>",
        "_rels/.rels": relationships(("officeDocument", "xl/workbook.xml")),
        "xl/_rels/workbook.xml.rels": relationships(("worksheet", "sheet.xml"), ("sharedStrings", "texts.xml")),
        "xl/workbook.xml": f'<workbook xmlns:r="{RELATIONS}"><sheets><sheet name="Data" r:id="r0"/></sheets>{names}</workbook>',
        "xl/texts.xml": texts,
        "xl/sheet.xml": f"<worksheet><sheetData>{FORMULA}{rows}</sheetData></worksheet>",
    }
    with zipfile.ZipFile(file, "w", zipfile.ZIP_DEFLATED, compresslevel=1) as archive:
        for name, content in parts.items():
            archive.writestr(name, content)


def many(cell, rows, columns=16_000):
    return ("<row>" + cell * columns + "</row>") * rows


def workbooks():
    """Names, what is in the workbook, and what the program must say, if anything."""
    yield "a formula", lambda: {"rows": f"<row><c><f>{'1' * (150 * MEGABYTE)}</f></c></row>"}, "more than 1 MB"
    yield "a text in pieces", lambda: {"rows": f"<row><c t='str'><v>{'a<!---->' * (20 * MEGABYTE)}</v></c></row>"}, "more than 1 MB"
    yield "empty elements", lambda: {"rows": "<x/>" * (63 * MEGABYTE)}, "too large"
    yield "numbers", lambda: {"rows": many("<c><v>1</v></c>", 499)}, None
    yield "texts", lambda: {"rows": many(f"<c t='str'><v>{'a' * 32_000}</v></c>", 80, 100)}, "more than 320 MB"
    yield "shared texts", lambda: {"rows": "", "texts": f"<sst>{'<si><t>a</t></si>' * (15 * MEGABYTE)}</sst>"}, "more than 320 MB"
    yield "formulas of no text", lambda: {"rows": many('<c><f t="shared" si="1"/></c>', 500)}, "more than 320 MB"
    yield "names", lambda: {"rows": "", "names": "<definedName name='a'>1</definedName>" * MEGABYTE}, "too large"
    yield "formulas", lambda: {"rows": "".join(f"<row><c><f>ZavMean(1,{i})</f></c></row>" for i in range(300_000))}, None
    yield "long formulas", lambda: {"rows": many(f"<c><f>{'1+' * 4000}ZavMean(1)</f></c>", 200, 20)}, None
    yield "running totals", lambda: {"rows": "".join(f"<row><c><v>1</v></c><c><f>ZavSum(A$1:A{i})</f></c></row>"
                                             for i in range(1, 20_000))}, None


def write_apart(file, make):
    """In a process of its own: what this one takes would count as that of the programs that it starts."""
    child = os.fork()
    if child == 0:
        write(file, **make())
        os._exit(0)
    os.waitpid(child, 0)


def main():
    scratch.mkdir(parents=True, exist_ok=True)
    book, written, errors = scratch / "book.xlsx", scratch / "written.xlsx", scratch / "errors"
    failed = 0
    for name, content, said in workbooks():
        write_apart(book, content)
        written.unlink(missing_ok=True)
        with open(errors, "w+b") as stream:
            process = subprocess.Popen([ZAVHOST, "run", book, "-o", written], stdout=subprocess.DEVNULL, stderr=stream)
            _, status, usage = os.wait4(process.pid, 0)
            process.returncode = os.waitstatus_to_exitcode(status)
        message = errors.read_text().strip()
        megabytes = usage.ru_maxrss / 1024
        fine = megabytes < MEGABYTES and process.returncode == (0 if said is None else 1) and (said or "") in message
        failed += not fine
        print(f"{name}: {megabytes:.0f} MB, {usage.ru_utime + usage.ru_stime:.1f} s, code {process.returncode}; "
              f"{message[:150]}{'' if fine else ' <- WRONG'}", flush=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
