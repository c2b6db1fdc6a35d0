"""The data that the help of a language needs in addition to its message texts: help/LANGUAGE/language.json.

    windows_language, code_page   of the compiled help
    words                         headings of the pages
    groups                        titles of the contents, by their English titles
    samples                       headings and texts of the examples' data that no formula contains
    excel, names                  how that language's Excel shows values, and variables in the equivalents

Functions, errors and separators of formulas come from the add-in's own table, src/formula/languages/LANGUAGE.txt.
"""

import dataclasses
import functools
import json
import re

from . import registration

_HELP = registration.ROOT / "help"
_TABLES = registration.ROOT / "src/formula/languages"
NAMES = sorted(file.parent.name for file in _HELP.glob("*/language.json"))
_TOKEN = re.compile(r'"[^"]*"|#[A-Z/0]+[!?]?|[A-Za-z_][A-Za-z_0-9.]*|\d+\.\d+|.')


@dataclasses.dataclass(frozen=True)
class Language:
    windows_language: str
    code_page: str
    words: dict
    groups: dict = dataclasses.field(default_factory=dict)
    samples: dict = dataclasses.field(default_factory=dict)
    excel: dict = dataclasses.field(default_factory=dict)

    def group(self, english):
        return self.groups.get(english, english)

    def separated(self, arguments):
        return f"{self.excel.get('list', ',')} ".join(arguments)

    def sample(self, text):
        """A cell of the examples' data."""
        return self.samples.get(text) or self.value(text)

    def decimals(self, text):
        return re.sub(r"(?<=\d)\.(?=\d)", self.excel.get("decimal", "."), text)

    def formula(self, text):
        if not self.excel:
            return text
        parts = []
        depth = -1 if text.startswith("{=") else 0  # the braces of an array formula are not those of an array
        for token in _TOKEN.findall(text):
            depth += (token == "{") - (token == "}")
            if token == ",":
                token = self.excel["array column"] if depth > 0 else self.excel["list"]
            elif re.fullmatch(r"\d+\.\d+", token):
                token = token.replace(".", self.excel["decimal"])
            parts.append(self.excel["names"].get(token, token))
        return "".join(parts)

    def value(self, text):
        if not self.excel:
            return text
        if re.fullmatch(r"-?\d+\.\d+(E[-+]?\d+)?", text):
            return text.replace(".", self.excel["decimal"])
        return self.excel["names"].get(text, text)


def _excel(table, own):
    """How that language's Excel writes: the settings of a table, and its names with the help's own."""
    entries = dict(line.split(" = ") for line in table.read_text(encoding="utf-8").splitlines() if " = " in line)
    return entries | {"names": {key: text for key, text in entries.items() if not key.islower()} | own["names"]}


@functools.cache
def named(name):
    fields = json.loads((_HELP / name / "language.json").read_text(encoding="utf-8"))
    if "excel" in fields:
        fields["excel"] = _excel(_TABLES / f"{name}.txt", fields["excel"])
    return Language(**fields)


def functions_in(formula):
    """The names of functions in an English formula."""
    return set(re.findall(r"[A-Za-z_][A-Za-z_0-9.]*(?=\()", re.sub(r'"[^"]*"', "", formula)))
