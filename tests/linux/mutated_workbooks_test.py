#!/usr/bin/python3
"""Workbooks that were good once, changed in one to four places, each given to a process of its own.

    mutated_workbooks_test.py ZAVHOST SCRATCH_FOLDER [COUNT [FIRST]]

Structure decides what changes: attributes, elements and texts of the XML, names and fields of the archive, single
bytes. The number of a mutation is its seed, so that `1 4711` repeats number 4711 alone. Whatever it is, the program
ends soon, within its memory, with a documented code and a line; the input stays as it was, and the output is whole or
absent.
"""
import os
import pathlib
import random
import re
import resource
import struct
import subprocess
import sys
import zipfile
import zlib

ROOT = pathlib.Path(__file__).resolve().parents[2]
ZAVHOST, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
COUNT = int(sys.argv[3]) if len(sys.argv) > 3 else 200
FIRST = int(sys.argv[4]) if len(sys.argv) > 4 else 0
CODES = {0: "done", 1: "failed", 4: "with errors", 7: "in doubt"}  # of the documented ones, what may be
SECONDS, MEGABYTES = 10, 512  # processor time, resident memory
SANITIZED = b"__asan_init" in ZAVHOST.read_bytes()

NUMBERS = ["-1", "0", "1", "2147483648", "4294967296", "99999999999999999999", "1048577", "1e999", "NaN", "", " 1"]
REFERENCES = ["A0", "XFE1", "XFD1048576", "A1:XFD1048576", "A:XFD", "1:1048576", "B2:A1", "A1:A1:A1", "$A$1", "RC",
              "Data!A1", "#REF!", "ZZZZ99999999"]
NAMES = ["../../../etc/passwd", "/etc/passwd", "..\\..\\x", "file:///etc/passwd", "xl/workbook.xml", "C:\\x.xml", "x\0y",
         "worksheets/sheet1.xml", "é" * 300]
TEXTS = ["&#0;", "&bomb;", "&#x1F600;", "<![CDATA[x]]>", "<!-- x -->", "<x/>", "]]>", "\x01", "_x0000_", "a" * 40_000,
         "\xff", "<!DOCTYPE a [<!ENTITY b 'c'>]>"]
FORMULAS = ["A1", "B2+B3", "SUM(A:XFD)", "ZavMean(A1:XFD1048576)", "ZavSum(1:1048576)", "ROW(A1:A1048576)*COLUMN(A:XFD)",
            "(" * 500 + "1" + ")" * 500, "1+" * 4000 + "1", "-" * 8000 + "1", "ZavMean(" * 70 + "1" + ")" * 70,
            'REPT("x",1E9)', "OFFSET(A1,-1,-1)", 'INDIRECT("A1")', "SEQUENCE(1048576,16384)", "ZavSortedData(A:A)",
            "{1,2;3}", "A1:B2 C3", "#REF!", "ZavCorrelationMatrix(A:XFD)", "10^10^10", "MMULT(A1:A999,A1:IV1)"]

# Without floods.xlsx, whose tests of fit draw thousands of samples: with a changed number they take half a minute.
GOOD = [ROOT / "examples" / f"{name}.xlsx" for name in
        ("air-quality", "charts", "iris", "nonparametric", "sleep-and-looms")]


def parts_of(book):
    with zipfile.ZipFile(book) as archive:
        return [(name, archive.read(name)) for name in archive.namelist()]


def zipped(parts, rng, spoiled):
    """An archive of the parts, in which as many fields of its own are wrong as `spoiled` says."""
    body, directory = b"", b""
    wrong = [rng.randrange(len(parts) * 8) for _ in range(spoiled)]
    for number, (name, content) in enumerate(parts):
        packed = zlib.compress(content, 1)[2:-4]
        fields = [20, 0, 8, 0x58210000, zlib.crc32(content), len(packed), len(content), 0]  # version ... size, extra
        for field in (place % 8 for place in wrong if place // 8 == number):
            fields[field] = rng.choice([0, 1, 97, 0xFFFF, rng.randrange(0x10000)] + (
                [0xFFFFFFFF, rng.randrange(1 << 32)] if 3 <= field <= 6 else []))
        raw = name.encode("utf-8", "surrogateescape")
        header = struct.pack("<HHHIIIIHH", *fields[:7], len(raw), fields[7])
        directory += b"PK\1\2\24\0" + header + bytes(10) + struct.pack("<I", len(body)) + raw
        body += b"PK\3\4" + header + raw + packed
    return body + directory + struct.pack("<IHHHHIIH", 0x06054B50, 0, 0, len(parts), len(parts), len(directory),
                                          len(body), 0)


def change_xml(content, rng):
    text = content.decode("utf-8", "surrogateescape")
    kind = rng.randrange(8)
    if kind == 0:
        places, new = list(re.finditer(r'(?<==")[^"]*(?=")', text)), rng.choice(NUMBERS + REFERENCES + NAMES + TEXTS)
    elif kind == 1:
        places, new = list(re.finditer(r"(?<=>)[^<]+(?=<)", text)), rng.choice(NUMBERS + REFERENCES + TEXTS + FORMULAS)
    elif kind == 2:
        places, new = list(re.finditer(r"(?<=<f>)[^<]*(?=</f>)", text)), rng.choice(FORMULAS)
    elif kind == 3:  # an element or a tag alone goes, or comes twice, or very often
        places = list(re.finditer(r"<(\w+)[^<>]*/>|<(\w+)[^<>]*>[^<]*</\2>|<[^<>]+>", text))
        new = None
    elif kind == 4:
        places, new = list(re.finditer(r"(?<=<)[\w:]+", text)), rng.choice(re.findall(r"(?<=<)[\w:]+", text) or ["x"])
    elif kind == 5:  # another attribute
        places, new = list(re.finditer(r"(?<= )[\w:]+(?==)", text)), rng.choice(["r", "t", "s", "si", "ref", "cm", "hidden"])
    elif kind == 6:
        at = rng.randrange(len(text) + 1)
        return (text[:at] + rng.choice(["", rng.choice(TEXTS), chr(rng.randrange(128))]) + text[at + rng.randrange(3):]
                ).encode("utf-8", "surrogateescape")
    else:
        return content[:rng.randrange(len(content) + 1)]
    if not places:
        return content
    place = rng.choice(places)
    if new is None:
        new = place.group() * rng.choice([0, 0, 2, 3, 2_000])
    return (text[:place.start()] + new + text[place.end():]).encode("utf-8", "surrogateescape")


def mutated(number):
    rng = random.Random(number)
    parts = parts_of(rng.choice(GOOD))
    spoiled = 0
    for _ in range(rng.choice([1, 1, 1, 2, 4])):
        kind, place = rng.randrange(20), rng.randrange(len(parts))
        name, content = parts[place]
        if kind < 13:  # mostly the parts that are read
            read = [i for i, (part, _) in enumerate(parts) if re.search(r"sheet\d*\.xml|workbook|shared|table|chart", part)]
            place = rng.choice(read or [place])
            parts[place] = parts[place][0], change_xml(parts[place][1], rng)
        elif kind == 13:
            parts.append((rng.choice([name, name.upper(), "/" + name, name.replace("/", "\\")]), content))
        elif kind == 14:
            parts[place] = rng.choice(NAMES), content
        elif kind == 15 and len(parts) > 1:
            del parts[place]
        elif kind == 16:
            parts[place] = name, parts[rng.randrange(len(parts))][1]
        else:
            spoiled += 1
    data = zipped(parts, rng, spoiled)
    if rng.randrange(10) == 0:  # bytes of the archive
        data = bytearray(data)
        for _ in range(rng.choice([1, 2, 8])):
            data[rng.choice([rng.randrange(len(data)), len(data) - 1 - rng.randrange(min(len(data), 200))])] ^= 1 << rng.randrange(8)
        data = bytes(data[:rng.choice([len(data), len(data), rng.randrange(len(data))])])
    return data


def run(book, written, arguments):
    """Returns the code, stderr, processor seconds and megabytes of a run."""
    environment = dict(os.environ, ASAN_OPTIONS="detect_leaks=0:exitcode=99:allocator_may_return_null=1",
                       UBSAN_OPTIONS="halt_on_error=1:exitcode=99")
    with open(scratch / "errors", "w+b") as errors:
        process = subprocess.Popen([ZAVHOST, *arguments, book, "-o", written], stdout=subprocess.DEVNULL, stderr=errors,
                                   env=environment,
                                   preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_CPU, (60, 60)))
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
        errors.seek(0)
        return process.returncode, errors.read(), usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024


def problems_of(data, number):
    book, written = scratch / "book.xlsx", scratch / "written.xlsx"
    book.write_bytes(data)
    written.unlink(missing_ok=True)
    code, errors, seconds, megabytes = run(book, written, ["run"] + (["--values-only"] if number % 3 == 0 else []))
    lines = errors.decode("utf-8", "replace").splitlines()
    if code not in CODES:
        yield f"code {code}: {lines[:6]}"
    # Warnings and errors of formulas are a line each.
    failed = [line for line in lines if not line.startswith(("warning: ", "error: ", "note: "))]
    if len(failed) != (code == 1) or any(re.search("[\0-\x1f\x7f]", line) or len(line) > 1000 for line in lines):
        yield f"code {code} with the lines {lines[:6]}"
    if seconds > SECONDS * (5 if SANITIZED else 1):
        yield f"{seconds:.1f} s"
    if megabytes > MEGABYTES and not SANITIZED:
        yield f"{megabytes:.0f} MB"
    if book.read_bytes() != data:
        yield "the input has changed"
    if written.exists() == (code == 1):
        yield f"code {code}, and the output is {'there' if written.exists() else 'absent'}"
    elif written.exists():
        # Whole: all its checksums hold, and it can be read.
        try:
            with zipfile.ZipFile(written) as archive:
                damaged = archive.testzip()
        except (zipfile.BadZipFile, NotImplementedError, UnicodeError) as error:
            damaged = error
        again, said, _, _ = run(written, scratch / "again.xlsx", ["run"])
        if again == 1 and b"too large" not in said:
            yield f"the output cannot be read again: {said[:300]} ({damaged})"
    left = {file.name for file in scratch.iterdir()} - {"book.xlsx", "written.xlsx", "again.xlsx", "errors"}
    if left:
        yield f"left: {left}"


def main():
    scratch.mkdir(parents=True, exist_ok=True)
    found = 0
    for number in range(FIRST, FIRST + COUNT):
        for problem in problems_of(mutated(number), number):
            found += 1
            print(f"mutation {number}: {problem}", flush=True)
            (scratch.parent / f"mutation-{number}.xlsx").write_bytes((scratch / "book.xlsx").read_bytes())
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"{COUNT} mutations, {found} problems; {usage.ru_utime + usage.ru_stime:.0f} s of processor time, "
          f"at most {usage.ru_maxrss / 1024:.0f} MB")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
