#!/usr/bin/env python3
"""make_companion.py OUTPUT.xlam MODULE...: writes the companion workbook, an add-in with these macro modules
(.bas) and classes (.cls).

The same modules give the same bytes. The workbook has not been opened in Excel yet; importing the modules is the
safe choice.
"""
import pathlib
import sys
import zipfile

from macro_project import macro_project

NAME = "ZavrelCompanion"
IDENTITY = "{7C1B0C52-6A0E-4E57-9D0E-5A60B3E8F1D4}"

MAIN = "http://schemas.openxmlformats.org/spreadsheetml/2006/main"
PACKAGE = "http://schemas.openxmlformats.org/package/2006"
RIBBON = "http://schemas.microsoft.com/office/2009/07/customui"
OFFICE = "http://schemas.openxmlformats.org/officeDocument/2006/relationships"
HEAD = '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>\n'
PARTS = {
    "[Content_Types].xml": f"""<Types xmlns="{PACKAGE}/content-types">
<Default Extension="rels" ContentType="application/vnd.openxmlformats-package.relationships+xml"/>
<Default Extension="xml" ContentType="application/xml"/>
<Default Extension="bin" ContentType="application/vnd.ms-office.vbaProject"/>
<Override PartName="/xl/workbook.xml" ContentType="application/vnd.ms-excel.addin.macroEnabled.main+xml"/>
<Override PartName="/xl/worksheets/sheet1.xml" ContentType="application/vnd.openxmlformats-officedocument.spreadsheetml.worksheet+xml"/>
<Override PartName="/docProps/core.xml" ContentType="application/vnd.openxmlformats-package.core-properties+xml"/>
</Types>""",
    "_rels/.rels": f"""<Relationships xmlns="{PACKAGE}/relationships">
<Relationship Id="rId1" Type="{OFFICE}/officeDocument" Target="xl/workbook.xml"/>
<Relationship Id="rId2" Type="{PACKAGE}/relationships/metadata/core-properties" Target="docProps/core.xml"/>
<Relationship Id="rId3" Type="http://schemas.microsoft.com/office/2007/relationships/ui/extensibility" Target="customUI/customUI14.xml"/>
</Relationships>""",
    "docProps/core.xml": f"""<cp:coreProperties xmlns:cp="{PACKAGE}/metadata/core-properties" xmlns:dc="http://purl.org/dc/elements/1.1/">
<dc:title>Zavrel Functions, companion</dc:title>
<dc:description>Switches the statistics functions of Zavrel Functions on.</dc:description>
</cp:coreProperties>""",
    # The macros of ZavrelAnalyses.bas serve it.
    "customUI/customUI14.xml": f"""<customUI xmlns="{RIBBON}"><ribbon><tabs><tab id="zavrelTab" label="Zavrel">
<group id="zavrelAnalyses" getLabel="ZavrelLabel">
<dynamicMenu id="zavrelAnalysisMenu" getLabel="ZavrelLabel" getContent="ZavrelAnalysesMenu" imageMso="ChartInsert" size="large"/>
<button id="zavrelRepeat" getLabel="ZavrelLabel" onAction="ZavrelRepeatChosen" imageMso="Repeat" size="large"/>
</group>
<group id="zavrelInformation" getLabel="ZavrelLabel">
<button id="zavrelHelp" getLabel="ZavrelLabel" onAction="ZavrelHelpChosen" imageMso="Help" size="large"/>
<button id="zavrelAbout" getLabel="ZavrelLabel" onAction="ZavrelAboutChosen"/>
</group>
</tab></tabs></ribbon></customUI>""",
    "xl/workbook.xml": f"""<workbook xmlns="{MAIN}" xmlns:r="{OFFICE}">
<workbookPr codeName="ThisWorkbook"/>
<sheets><sheet name="Sheet1" sheetId="1" r:id="rId1"/></sheets>
</workbook>""",
    "xl/_rels/workbook.xml.rels": f"""<Relationships xmlns="{PACKAGE}/relationships">
<Relationship Id="rId1" Type="{OFFICE}/worksheet" Target="worksheets/sheet1.xml"/>
<Relationship Id="rId2" Type="http://schemas.microsoft.com/office/2006/relationships/vbaProject" Target="vbaProject.bin"/>
</Relationships>""",
    "xl/worksheets/sheet1.xml": f"""<worksheet xmlns="{MAIN}">
<sheetPr codeName="Sheet1"/><sheetData/>
</worksheet>""",
}


def document_module(name, class_id):
    lines = [f'VB_Name = "{name}"', f'VB_Base = "0{{{class_id}}}"', "VB_GlobalNameSpace = False",
             "VB_Creatable = False", "VB_PredeclaredId = True", "VB_Exposed = True",
             "VB_TemplateDerived = False", "VB_Customizable = True"]
    return "".join(f"Attribute {line}\r\n" for line in lines).encode("ascii")


def class_module(source):
    """A class as a project holds it, from what the macro editor exports."""
    lines = source.decode("ascii").splitlines(keepends=True)
    lines = lines[next(i for i, line in enumerate(lines) if line.startswith("Attribute")):]
    code = next(i for i, line in enumerate(lines) if not line.startswith("Attribute"))
    lines[code:code] = ["Attribute VB_TemplateDerived = False\r\n", "Attribute VB_Customizable = False\r\n"]
    lines.insert(1, 'Attribute VB_Base = "0{FCFB3D2A-A0FA-1068-A738-08002B3371B5}"\r\n')  # of every class
    return "".join(lines).encode("ascii")


def main(output, *files):
    modules = {"ThisWorkbook": ("Document", document_module("ThisWorkbook", "00020819-0000-0000-C000-000000000046")),
               "Sheet1": ("Document", document_module("Sheet1", "00020820-0000-0000-C000-000000000046"))}
    for file in sorted(map(pathlib.Path, files)):
        # No module may have the project's name.
        source = file.read_bytes()
        modules[file.stem] = ("Class", class_module(source)) if file.suffix == ".cls" else ("Module", source)
    with zipfile.ZipFile(output, "w", zipfile.ZIP_DEFLATED) as package:
        parts = {name: (HEAD + text).encode("utf-8") for name, text in PARTS.items()}
        parts["xl/vbaProject.bin"] = macro_project(NAME + "Project", IDENTITY, modules)
        for name, content in parts.items():
            package.writestr(zipfile.ZipInfo(name), content, zipfile.ZIP_DEFLATED)


main(*sys.argv[1:])
