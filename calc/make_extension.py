#!/usr/bin/env python3
"""Makes the parts of the extension for LibreOffice Calc from the registration data and the message texts.

    make_extension.py header FILE.h
    make_extension.py interface FILE.idl
    make_extension.py pack EXTENSION.oxt VERSION TYPES.rdb LIBRARY... [--extensions LIBRARY...]
"""
import argparse
import pathlib
import sys
import zipfile
from xml.sax.saxutils import escape, quoteattr

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "help/tools"))
import registration  # noqa: E402

COMPONENT = "libZavrelCalc8.so"
PLATFORM = "Linux_x86_64"
IMPLEMENTATION = "org.zavrel.calc.Functions"
SERVICE = "_xll"
CATEGORY = "Statistical"  # a group that Calc's function wizard has
# Their whole results are matrices; the other functions that fill a range go on from one row to the next.
MATRICES = {"ZavEigenvalues", "ZavEigenvectors", "ZavEigendata", "ZavPCAScores"}
# The same bytes from the same files.
TIMESTAMP = (1980, 1, 1, 0, 0, 0)


def functions():
    return [function for function in registration.functions_of("ZavrelFuncs8") if not function.macros_only]


def header():
    """The functions that fill the range of their array formula, by the shape of what fills it."""
    filling = [function for function in functions() if function.fills_calling_range]

    def table(name, chosen):
        names = "".join(f'    u"{function.name}",\n' for function in chosen)
        return f"inline constexpr std::u16string_view {name}[] = {{\n{names}}};\n"
    return ("#pragma once\n// Made by calc/make_extension.py.\n\n#include <string_view>\n\nnamespace zavcalc {\n"
            + table("kColumnFunctions", [function for function in filling if function.name not in MATRICES])
            + table("kMatrixFunctions", [function for function in filling if function.name in MATRICES])
            + "}  // namespace zavcalc\n")


def parameter(index):
    """Calc takes the texts of the arguments in the order of these names."""
    return f"a{index + 1:02}"


def interface():
    methods = []
    for function in functions():
        parameters = ", ".join(["[in] com::sun::star::beans::XPropertySet document",
                                *(f"[in] any {parameter(index)}" for index in range(function.arity))])
        methods.append(f"    any {function.name}({parameters});\n")
    return ("module org { module zavrel { module calc {\n  interface XFunctions {\n" + "".join(methods)
            + "  };\n}; }; };\n")


def argument_text(function, index, language):
    """(name, help) of an argument; a function without texts, or with fewer, repeats the last ones."""
    names = registration.argument_names(function, language)
    helps = [registration.resolve(text, language) for text in function.argument_helps]
    name = names[min(index, len(names) - 1)] if names else ""
    named = registration.without_brackets(name)
    if name.startswith("...") or index >= len(names):
        named = f"{registration.without_brackets(names[0]).rstrip('1')}{index + 1}" if names else ""
    return named or f"{index + 1}", (helps[min(index, len(helps) - 1)] if helps else "") or named or "-"


def translated(name, text_in):
    values = "".join(f"<value xml:lang={quoteattr(language)}>{escape(text_in(language))}</value>"
                     for language in registration.LANGUAGES)
    return f'<prop oor:name="{name}">{values}</prop>'


def configured(function):
    parameters = "".join(
        f'<node oor:name="{parameter(index)}" oor:op="replace">'
        + translated("DisplayName", lambda language: argument_text(function, index, language)[0])
        + translated("Description", lambda language: argument_text(function, index, language)[1])
        + "</node>\n" for index in range(function.arity))
    return (f'<node oor:name="{function.name}" oor:op="replace">'
            + translated("DisplayName", lambda language: function.name)
            + translated("Description", lambda language: registration.resolve(function.help, language)
                         or function.name)
            + f"<prop oor:name=\"Category\"><value>{CATEGORY}</value></prop>"
            + translated("CompatibilityName", lambda language: function.name)
            + f'<node oor:name="Parameters">\n{parameters}</node></node>\n')


def configuration():
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<oor:component-data xmlns:oor="http://openoffice.org/2001/registry" '
            'xmlns:xs="http://www.w3.org/2001/XMLSchema" oor:name="CalcAddIns" oor:package="org.openoffice.Office">\n'
            f'<node oor:name="AddInInfo"><node oor:name="{SERVICE}" oor:op="replace"><node oor:name="AddInFunctions">\n'
            + "".join(map(configured, functions())) + "</node></node></node>\n</oor:component-data>\n")


def description(version):
    names = "".join(f'<name lang="{language}">Zavrel Functions</name>' for language in registration.LANGUAGES)
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<description xmlns="http://openoffice.org/extensions/description/2006" '
            'xmlns:d="http://openoffice.org/extensions/description/2006" '
            'xmlns:l="http://libreoffice.org/extensions/description/2011">\n'
            f'<identifier value="org.zavrel.functions"/><version value="{version}"/>\n'
            f'<platform value="{PLATFORM.lower()}"/><display-name>{names}</display-name>\n'
            '<dependencies><l:LibreOffice-minimal-version value="7.4" d:name="LibreOffice 7.4"/></dependencies>\n'
            '</description>\n')


def components():
    return ('<?xml version="1.0" encoding="UTF-8"?>\n<components xmlns="http://openoffice.org/2010/uno-components">\n'
            f'<component loader="com.sun.star.loader.SharedLibrary" environment="uno" uri="{COMPONENT}">'
            f'<implementation name="{IMPLEMENTATION}"><service name="{SERVICE}"/></implementation></component>\n'
            '</components>\n')


def manifest():
    entries = {"zavrel.rdb": "application/vnd.sun.star.uno-typelibrary;type=RDB",
               f"{PLATFORM}/zavrel.components": f"application/vnd.sun.star.uno-components;platform={PLATFORM}",
               "CalcAddIns.xcu": "application/vnd.sun.star.configuration-data"}
    lines = "".join(f'<manifest:file-entry manifest:full-path="{path}" manifest:media-type="{media}"/>\n'
                    for path, media in entries.items())
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            f'<manifest:manifest xmlns:manifest="http://openoffice.org/2001/manifest">\n{lines}</manifest:manifest>\n')


def pack(arguments):
    with zipfile.ZipFile(arguments.file, "w", zipfile.ZIP_DEFLATED) as archive:
        def add(name, content):
            entry = zipfile.ZipInfo(name, TIMESTAMP)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, content)
        add("META-INF/manifest.xml", manifest())
        add("description.xml", description(arguments.version))
        add("CalcAddIns.xcu", configuration())
        add("zavrel.rdb", pathlib.Path(arguments.types).read_bytes())
        add(f"{PLATFORM}/zavrel.components", components())
        for folder, libraries in ((PLATFORM, arguments.library),
                                  (f"{PLATFORM}/ZavrelFuncs Extensions", arguments.extensions)):
            for library in map(pathlib.Path, libraries):
                add(f"{folder}/{library.name}", library.read_bytes())


def main():
    parser = argparse.ArgumentParser()
    commands = parser.add_subparsers(dest="command", required=True)
    for command in ("header", "interface", "pack"):
        commands.add_parser(command).add_argument("file")
    packing = commands.choices["pack"]
    packing.add_argument("version")
    packing.add_argument("types")
    packing.add_argument("library", nargs="+")
    packing.add_argument("--extensions", nargs="*", default=[])
    arguments = parser.parse_args()
    if arguments.command == "pack":
        pack(arguments)
    else:
        made = header() if arguments.command == "header" else interface()
        pathlib.Path(arguments.file).write_text(made, encoding="utf-8")


if __name__ == "__main__":
    main()
