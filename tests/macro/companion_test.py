#!/usr/bin/python3
"""companion_test.py COMPANION.xlam MODULES_FOLDER: reads the companion workbook back, the compound file with a
library and the compression by the rules of its readers, and holds what it finds against the modules."""
import io
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as xml
import zipfile

import olefile  # Debian's, which is why this is run by Debian's Python

workbook, folder = sys.argv[1], pathlib.Path(sys.argv[2])
failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


def expand(data):
    """What a compressed stream holds."""
    assert data[0] == 1
    result, at = bytearray(), 1
    while at < len(data):
        header = int.from_bytes(data[at:at + 2], "little")
        check(header >> 12 == 0xB, "a chunk is not compressed, or has no signature")
        end, at, start = at + (header & 0xFFF) + 3, at + 2, len(result)
        while at < end:
            flags, at = data[at], at + 1
            for bit in range(8):
                if at >= end:
                    break
                if not flags >> bit & 1:
                    result.append(data[at])
                    at += 1
                    continue
                token, at = int.from_bytes(data[at:at + 2], "little"), at + 2
                offset_bits = max(4, (len(result) - start - 1).bit_length())
                for _ in range((token & 0xFFFF >> offset_bits) + 3):
                    result.append(result[-(token >> 16 - offset_bits) - 1])
        check(at == end and len(result) - start <= 4096, "a chunk ends elsewhere than it says")
    return bytes(result)


with zipfile.ZipFile(workbook) as package:
    project = olefile.OleFileIO(io.BytesIO(package.read("xl/vbaProject.bin")), raise_defects=olefile.DEFECT_UNSURE)
# A class that is imported loses the lines in front of its attributes, and gets some attributes of every class.
PREFIX = b"VERSION 1.0 CLASS\r\nBEGIN\r\n  MultiUse = -1  'True\r\nEND\r\n"
OF_CLASSES = (b'Attribute VB_Base = "0{FCFB3D2A-A0FA-1068-A738-08002B3371B5}"\r\n',
              b"Attribute VB_TemplateDerived = False\r\n", b"Attribute VB_Customizable = False\r\n")
classes = {file.stem: file.read_bytes() for file in folder.glob("*.cls")}
sources = {file.stem: file.read_bytes() for file in folder.glob("*.bas")} | classes
check(len(sources) >= 6 and len(classes) >= 1, f"no modules in {folder}")
lines_of_project = project.openstream("PROJECT").read().decode("cp1252").splitlines()
for name, source in sources.items():
    found = expand(project.openstream(["VBA", name]).read())
    if name in classes:
        for line in OF_CLASSES:
            check(found.count(line) == 1, f"{name} lacks {line}")
            found = found.replace(line, b"")
        source = source.removeprefix(PREFIX)
    check(found == source, f"{name} reads differently in the workbook")
    check(("Class=" if name in classes else "Module=") + name in lines_of_project, f"{name} is not in the project")
streams = {stream[-1] for stream in project.listdir()}
check(streams == set(sources) | {"ThisWorkbook", "Sheet1", "_VBA_PROJECT", "dir", "PROJECT", "PROJECTwm"},
      f"streams: {sorted(streams)}")
directory = expand(project.openstream("VBA/dir").read())
for name in sources:
    record = b"\x19\0" + len(name).to_bytes(4, "little") + name.encode()
    check(directory.count(record) == 1, f"{name} is not in the directory once")

with zipfile.ZipFile(workbook) as package:
    parts = set(package.namelist())
    for part in parts:
        if part.endswith((".xml", ".rels")):
            xml.fromstring(package.read(part))
    for part in filter(lambda p: p.endswith(".rels"), parts):
        base = posixpath.dirname(posixpath.dirname(part))
        for target in re.findall(r'Target="([^"]+)"', package.read(part).decode()):
            check(posixpath.join(base, target) in parts, f"{part} names {target}, which is not there")

# Excel calls the ribbon's macros by name, with one argument for a click and two where it awaits something.
with zipfile.ZipFile(workbook) as package:
    ribbon = xml.fromstring(package.read("customUI/customUI14.xml"))
macros = b"".join(sources.values()).decode("ascii")
for element in ribbon.iter():
    for attribute in ("onAction", "getLabel", "getContent"):
        if called := element.get(attribute):
            found = re.search(rf"^Public Sub {called}\(([^)]*)\)", macros, re.MULTILINE)
            awaited = 1 if attribute == "onAction" else 2
            check(found and found[1].count(",") + 1 == awaited, f"the ribbon calls {called}, which is not there")
    if element.get("getLabel"):
        check(f'Case "{element.get("id")}": label = ' in macros, f"{element.get('id')} has no label")

with tempfile.TemporaryDirectory() as scratch:
    again = pathlib.Path(scratch) / "again.xlam"
    subprocess.run([sys.executable, "-B", folder / "make_companion.py", again, *folder.glob("*.bas"), *folder.glob("*.cls")],
                   check=True)
    check(again.read_bytes() == pathlib.Path(workbook).read_bytes(), "written again, the workbook has other bytes")

for failure in failures:
    print(failure, file=sys.stderr)
sys.exit(bool(failures))
