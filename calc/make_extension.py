#!/usr/bin/env python3
"""Makes the parts of the extension for LibreOffice Calc from the registration data and the message texts.

    make_extension.py header FILE.h
    make_extension.py interface FILE.idl
    make_extension.py pack EXTENSION.oxt VERSION FOLDER

FOLDER has the interface's types as zavrel.rdb, and for each platform a folder with its libraries. Whatever else is in
it goes into the extension as well.
"""
import argparse
import pathlib
import sys
import zipfile
from xml.sax.saxutils import escape, quoteattr

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "help/tools"))
import registration  # noqa: E402

TYPES = "zavrel.rdb"
COMPONENTS = {"Linux_x86_64": "libZavrelCalc8.so", "Windows_x86_64": "XLCall32.dll"}  # by platform
# The component's implementations, and the service that each offers.
FUNCTIONS = "org.zavrel.calc.Functions"
SERVICE = "_xll"
NAMES = "org.zavrel.calc.Names"
HELP = "org.zavrel.calc.Help"
HELP_TITLES = {"en": "Help on Zavrel Functions", "de": "Hilfe zu Zavrel Functions"}
CATEGORY = "Statistical"  # a group that Calc's function wizard has
# Their whole results are matrices; the other functions that fill a range go on from one row to the next.
MATRICES = {"ZavEigenvalues", "ZavEigenvectors", "ZavEigendata", "ZavPCAScores"}
# The same bytes from the same files.
TIMESTAMP = (1980, 1, 1, 0, 0, 0)


def functions():
    return [function for function in registration.functions() if not function.macros_only]


def header():
    """All functions, in upper case and in order; those that fill the range of their array formula, by the shape of what
    fills it."""
    filling = [function for function in functions() if function.fills_calling_range]

    def table(name, chosen):
        names = "".join(f'    u"{function}",\n' for function in chosen)
        return f"inline constexpr std::u16string_view {name}[] = {{\n{names}}};\n"
    return ("#pragma once\n// Made by calc/make_extension.py.\n\n#include <string_view>\n\nnamespace zavcalc {\n"
            + table("kAllFunctions", sorted(function.name.upper() for function in functions()))
            + table("kColumnFunctions", [function.name for function in filling if function.name not in MATRICES])
            + table("kMatrixFunctions", [function.name for function in filling if function.name in MATRICES])
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


def settings(name, content):
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<oor:component-data xmlns:oor="http://openoffice.org/2001/registry" '
            f'xmlns:xs="http://www.w3.org/2001/XMLSchema" oor:name="{name}" oor:package="org.openoffice.Office">\n'
            f"{content}\n</oor:component-data>\n")


def function_settings():
    return (f'<node oor:name="AddInInfo"><node oor:name="{SERVICE}" oor:op="replace"><node oor:name="AddInFunctions">\n'
            + "".join(map(configured, functions())) + "</node></node></node>")


def job_settings():
    """Whatever document has been opened, the job looks for plain names in it."""
    return (f'<node oor:name="Jobs"><node oor:name="{NAMES}" oor:op="replace">'
            f'<prop oor:name="Service"><value>{NAMES}</value></prop></node></node>\n'
            '<node oor:name="Events"><node oor:name="OnLoadFinished" oor:op="fuse"><node oor:name="JobList">'
            f'<node oor:name="{NAMES}" oor:op="replace"/></node></node></node>')


def menu_settings():
    """The function wizard has no help for the functions of extensions: an entry of Calc's Help menu has."""
    return (f'<node oor:name="AddonUI"><node oor:name="OfficeHelp"><node oor:name="{HELP}" oor:op="replace">'
            f'<prop oor:name="URL"><value>service:{HELP}?contents</value></prop>'
            + translated("Title", HELP_TITLES.get) + '<prop oor:name="Target"><value>_self</value></prop>'
            '<prop oor:name="Context"><value>com.sun.star.sheet.SpreadsheetDocument</value></prop>'
            "</node></node></node>")


SETTINGS = {"CalcAddIns": function_settings, "Jobs": job_settings, "Addons": menu_settings}


def description(version, platforms):
    names = "".join(f'<name lang="{language}">Zavrel Functions</name>' for language in registration.LANGUAGES)
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            '<description xmlns="http://openoffice.org/extensions/description/2006" '
            'xmlns:d="http://openoffice.org/extensions/description/2006" '
            'xmlns:l="http://libreoffice.org/extensions/description/2011">\n'
            f'<identifier value="org.zavrel.functions"/><version value="{version}"/>\n'
            f'<platform value="{",".join(platforms).lower()}"/><display-name>{names}</display-name>\n'
            '<dependencies><l:LibreOffice-minimal-version value="7.4" d:name="LibreOffice 7.4"/></dependencies>\n'
            '</description>\n')


def components(platform):
    implementations = "".join(f'<implementation name="{implementation}"><service name="{service}"/></implementation>'
                              for implementation, service in ((FUNCTIONS, SERVICE), (NAMES, NAMES), (HELP, HELP)))
    return ('<?xml version="1.0" encoding="UTF-8"?>\n<components xmlns="http://openoffice.org/2010/uno-components">\n'
            f'<component loader="com.sun.star.loader.SharedLibrary" environment="uno" uri="{COMPONENTS[platform]}">'
            f'{implementations}</component>\n</components>\n')


def components_file(platform):
    return f"{platform}/zavrel.components"


def manifest(platforms):
    entries = {TYPES: "application/vnd.sun.star.uno-typelibrary;type=RDB",
               **{components_file(platform): f"application/vnd.sun.star.uno-components;platform={platform}"
                  for platform in platforms},
               **{f"{name}.xcu": "application/vnd.sun.star.configuration-data" for name in SETTINGS}}
    lines = "".join(f'<manifest:file-entry manifest:full-path="{path}" manifest:media-type="{media}"/>\n'
                    for path, media in entries.items())
    return ('<?xml version="1.0" encoding="UTF-8"?>\n'
            f'<manifest:manifest xmlns:manifest="http://openoffice.org/2001/manifest">\n{lines}</manifest:manifest>\n')


def pack(extension, version, folder):
    platforms = [platform for platform in COMPONENTS if (folder / platform).is_dir()]
    files = {"META-INF/manifest.xml": manifest(platforms), "description.xml": description(version, platforms),
             **{f"{name}.xcu": settings(name, make()) for name, make in SETTINGS.items()},
             **{components_file(platform): components(platform) for platform in platforms},
             **{str(file.relative_to(folder)): file.read_bytes() for file in sorted(folder.rglob("*")) if file.is_file()}}
    with zipfile.ZipFile(extension, "w", zipfile.ZIP_DEFLATED) as archive:
        for name, content in files.items():
            entry = zipfile.ZipInfo(name, TIMESTAMP)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.external_attr = 0o644 << 16
            archive.writestr(entry, content)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = parser.add_subparsers(dest="command", required=True)
    for command in ("header", "interface", "pack"):
        commands.add_parser(command).add_argument("file", type=pathlib.Path)
    commands.choices["pack"].add_argument("version")
    commands.choices["pack"].add_argument("folder", type=pathlib.Path)
    arguments = parser.parse_args()
    if arguments.command == "pack":
        pack(arguments.file, arguments.version, arguments.folder)
    else:
        arguments.file.write_text(header() if arguments.command == "header" else interface(), encoding="utf-8")


if __name__ == "__main__":
    main()
