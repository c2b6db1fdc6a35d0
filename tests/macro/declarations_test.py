#!/usr/bin/env python3
"""Holds the macro modules' declarations against the entry points themselves.

    declarations_test.py SOURCE_FOLDER BUILD_FOLDER VERSION

The definition of every declared entry point is compiled once more, with the flags of its own file, and
behind it assertions that number, order, passing and width of the parameters and the result are those of
the declaration: the compiler compares, nothing is written down twice. Changed declarations have to fail
the same comparison. The declared names are held against the entry points that functions.json has for macros; it
names the files of the definitions too. VERSION is the product's, "8.0".
"""
import concurrent.futures
import json
import math
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "src/frame"))
import function_data  # noqa: E402

# What the macro language hands over for a parameter, by how it is passed and its type, and what it expects
# as a result. On 64 bits a VARIANT by value arrives as its address too.
PARAMETERS = {
    ("ByVal", "Integer"): "OneOf<std::int16_t, std::uint16_t>",
    ("ByVal", "Long"): "OneOf<std::int32_t, std::uint32_t>",
    ("ByVal", "Double"): "OneOf<double>",
    ("ByRef", "Double"): "OneOf<double*>",
    ("ByRef", "Double()"): "OneOf<SAFEARRAY**>",
    ("ByRef", "Variant()"): "OneOf<SAFEARRAY**>",
    ("ByRef", "Variant"): "OneOf<VARIANT*, const VARIANT*>",
    ("ByRef", "String"): "OneOf<BSTR*>",
    ("ByVal", "Object"): "OneOf<IDispatch*, void*>",
    ("ByVal", "LongPtr"): "OneOf<BSTR, BSTR*, const char16_t*>",
}
RESULTS = {
    "Integer": "OneOf<std::int16_t, std::uint16_t>",
    "Long": "OneOf<std::int32_t, std::uint32_t>",
    "Double": "OneOf<double>",
    "Variant": "OneOf<VARIANT>",
    "String": "OneOf<BSTR>",
    None: "OneOf<void>",
}
# How an address of a text is declared, by what functions.json says of its entry point.
TEXT_ADDRESSES = {"code page": ("ByRef", "String"), "wide": ("ByVal", "LongPtr")}

# What the companion declares of Windows.
SYSTEM = re.compile(r'Private Declare PtrSafe Function GetModule(?:Handle|FileName)W Lib "kernel32" \(')

COMPARISON = """
#include <windows.h>
#include <oleauto.h>
#include <cstdint>
#include <type_traits>
template <class... Allowed> struct OneOf {
  template <class T> static constexpr bool has = (std::is_same_v<T, Allowed> || ...);
};
template <class Function, class Result, class... Parameters>
struct Agreement { static constexpr bool value = false; };
template <class R, class... A, class Result, class... Parameters>
  requires(sizeof...(A) == sizeof...(Parameters))
struct Agreement<R(A...), Result, Parameters...> {
  static constexpr bool value =
      Result::template has<R> && (Parameters::template has<A> && ... && true);
};
"""

failures = []


def check(condition, message):
    if not condition:
        failures.append(message)


class Declaration:
    def __init__(self, kind, name, alias, parameters, result):
        self.name, self.export, self.result = name, alias or name, result
        self.parameters = []
        for parameter in filter(None, map(str.strip, parameters.split(","))):
            match = re.fullmatch(r"(ByVal|ByRef) \w+(\(\))? As (\w+)", parameter)
            check(match, f"{name}: '{parameter}' does not say how it is passed, or its type")
            if match:
                self.parameters.append((match[1], match[3] + (match[2] or "")))
        check((kind == "Sub") == (result is None), f"{name}: a Sub has no result, a Function has one")

    def assertion(self, expected=True, parameters=None, result=None):
        types = [RESULTS[self.result] if result is None else result]
        types += [PARAMETERS[p] for p in (self.parameters if parameters is None else parameters)]
        return (f"static_assert({'' if expected else '!'}Agreement<decltype(zavrel::{self.export}), "
                f"{', '.join(types)}>::value, \"{self.name}\");\n")

    def assertions(self):
        text = self.assertion()
        for index, parameter in enumerate(self.parameters):
            for other in PARAMETERS:
                # Addresses of texts have one type, whatever they hold.
                if PARAMETERS[other] == PARAMETERS[parameter] or {other, parameter} == {*TEXT_ADDRESSES.values()}:
                    continue
                changed = self.parameters[:index] + [other] + self.parameters[index + 1:]
                text += self.assertion(False, changed)
            text += self.assertion(False, self.parameters[:index] + self.parameters[index + 1:])
        text += self.assertion(False, self.parameters + [("ByVal", "Long")])
        for result in set(RESULTS.values()) - {RESULTS[self.result]}:
            text += self.assertion(False, result=result)
        return text


def modules(folder):
    for file in sorted([*folder.glob("*.bas"), *folder.glob("*.cls")]):
        content = file.read_bytes()
        check(content.isascii(), f"{file.name}: characters beyond ASCII")
        check(content.count(b"\n") == content.count(b"\r\n"), f"{file.name}: lines without CR LF")
        text = content.decode("ascii").replace("\r\n", "\n")
        first = "" if file.suffix == ".bas" else "VERSION 1.0 CLASS\nBEGIN\n  MultiUse = -1  'True\nEND\n"
        check(text.startswith(f'{first}Attribute VB_Name = "{file.stem}"\n'), f"{file.name}: another beginning")
        check("\nOption Explicit\n" in text, f"{file.name}: no Option Explicit")
        yield file, text.replace(" _\n", " ")


def declarations(folder):
    pattern = re.compile(r'^Public Declare PtrSafe (Sub|Function) (\w+)\s+Lib "ZavrelFuncs8_x64.xll"\s+'
                         r'(?:Alias "(\w+)"\s+)?\(\s*(.*?)\)(?: As (\w+))?$')
    for file, text in modules(folder):
        for line in text.splitlines():
            if not re.match(r"\s*(Public|Private)?\s*Declare\b", line) or SYSTEM.match(line):
                continue
            match = pattern.match(line)
            check(match, f"{file.name}: cannot read '{line}'")
            if match:
                yield Declaration(*match.groups())


def top_level_arguments(text):
    """How many arguments begin at `text`, up to the parenthesis that closes them or the end of the line."""
    depth, count, empty = 0, 1, True
    for character in text:
        if character == ")" and depth == 0:
            break
        depth += (character == "(") - (character == ")")
        count += character == "," and depth == 0
        empty = empty and character.isspace()
    return 0 if empty else count


def check_calls(folder):
    """No macro compiler is at hand: at least every call in the modules passes as many arguments as the
    procedure takes."""
    heads = re.compile(r"^(?:Public |Private )?(?:Declare PtrSafe )?(?:Sub|Function) (\w+)(?: .*?)?\((.*?)\)(?= As |$)")
    calls, limits = [], {}
    for file, text in modules(folder):
        for line in text.splitlines():
            line = re.sub(r'"(?:[^"]|"")*"', "0", re.sub(r'^((?:[^"\']|"[^"]*")*)\'.*', r"\1", line)).rstrip()
            head = heads.match(line.replace("()", ""))
            if head:
                parameters = [p for p in head[2].split(",") if p.strip()]
                takes_any_number = any("ParamArray" in p for p in parameters)
                required = sum("Optional" not in p and "ParamArray" not in p for p in parameters)
                limits[head[1]] = (required, math.inf if takes_any_number else len(parameters))
            elif not re.match(r"\s*(?:End|Exit|Dim|Attribute|Private Const|Public Const)\b", line):
                calls.append((file.name, line))
    checked = 0
    for file, line in calls:
        for name, (fewest, most) in limits.items():
            # A name in front of "=" is the result of its own function.
            for call in re.finditer(rf"\b{name}\b(?!\s*=)(?:\((.*)|(\s.*|$))", line):
                given = top_level_arguments(call[1] if call[1] is not None else call[2])
                statement = call[1] is not None or line[:call.start()].isspace()
                check(not statement or fewest <= given <= most, f"{file}: '{line.strip()}' gives {name} {given} arguments")
                checked += statement
    check(checked > 100, f"only {checked} calls were found in the modules")


def check_names(declared, entry_points):
    """`entry_points`: the groups for macros by export."""
    names = {d.export for d in declared}
    check(names == entry_points.keys(),
          f"declared, or for macros, but not both: {sorted(names ^ entry_points.keys())}")
    for d in declared:
        strings = entry_points[d.export].strings if d.export in entry_points else None
        types = {kind for _, kind in d.parameters} | {d.result}
        check("String" not in types or strings == "code page", f"{d.name}: its texts are not As String")
        check("LongPtr" not in types or strings == "wide", f"{d.name}: its texts are not wide")


def compile_comparison(scratch, commands, file, declared):
    command = shlex.split(commands[str(file)]["command"])
    command = command[:command.index("-o")]
    if "ccache" in command[0]:
        command = command[1:]
    unit = scratch / (file.stem + "_declarations.cpp")
    unit.write_text(COMPARISON + f'#include "{file}"\n' + "".join(d.assertions() for d in declared))
    run = subprocess.run(command + ["-fsyntax-only", str(unit)], capture_output=True, text=True,
                         cwd=commands[str(file)]["directory"])
    check(run.returncode == 0, f"{file.name} disagrees with its declarations:\n{run.stderr}")


def main(source, build, version):
    source = pathlib.Path(source).resolve()
    declared = list(declarations(source / "companions/macro"))
    check_calls(source / "companions/macro")
    groups = function_data.read(source / "src/functions/functions.json").entry_points
    entry_points = {export: group for group in groups if group.called_by == "macros" for export in group.exports}
    check_names(declared, entry_points)
    check(f'CompanionVersion As String = "{version}"' in
          (source / "companions/macro/ZavrelCompanion.bas").read_text(), "ZavrelCompanion: another version")
    commands = {c["file"]: c for c in json.loads((pathlib.Path(build) / "compile_commands.json").read_text())}
    for group in groups:
        check(str(source / group.source) in commands, f"{group.what}: {group.source} is not compiled")
    by_file = {}
    for d in declared:
        if d.export in entry_points and str(file := source / entry_points[d.export].source) in commands:
            by_file.setdefault(file, []).append(d)
    with tempfile.TemporaryDirectory() as scratch, concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for run in [pool.submit(compile_comparison, pathlib.Path(scratch), commands, f, ds)
                    for f, ds in by_file.items()]:
            run.result()
    print(f"{len(declared)} declarations, {len(by_file)} files with definitions")
    for failure in failures:
        print(failure, file=sys.stderr)
    return 1 if failures else 0


sys.exit(main(*sys.argv[1:]))
