"""What computes the same in Excel and in R, or how it differs: help/equivalents.ini, a section for each function.

    excel, r    code in `backquotes`, perhaps with words, or `none`
    note        when the results differ, and why; {name} stands for a text of the section [shared]
    data        the file in help/data that the comparisons refer to, if not that of the page
    compare     comparisons, one on each line

`excel.de`, `r.de` and `note.de` are the German texts; one without words needs none. Their code is the same: the help
writes Excel's as a language's Excel does.

A comparison has a formula (braces mark an array formula), the variables of the code, and, unless it is the first of
each program, which code computes it; with `differs` and the reason if that gives something else:

    =ZavMedian({3,1,7}) | x = {3,1,7} | R1 differs: the automatic choice is method 1

    x = A2:B9           a vector or matrix of these cells; what is not a number is NA in R
    x = numbers A2:A9   in R only its numbers
    x = texts A2:A9     their texts
    x = {1,2;3,4}       a matrix, or a vector if it has one row or column
    p = 0.5             anything else is the same in both programs

tests/help/check_equivalents.py executes the comparisons and records what they give.
"""

import configparser
import dataclasses
import functools
import re

from . import registration

FILE = registration.ROOT / "help/equivalents.ini"
PROGRAMS = {"Excel": "excel", "R": "r"}
NONE = "none"
_SHARED = "shared"
_KEYS = ("excel", "r", "note", "data", "compare")


@dataclasses.dataclass(frozen=True)
class Comparison:
    formula: str
    variables: dict
    codes: tuple  # of pairs: the program and its code
    because: str | None  # why the results differ; None if they do not

    @property
    def is_array(self):
        return self.formula.startswith("{=")


@functools.cache
def _sections():
    parser = configparser.ConfigParser(delimiters=("=",), comment_prefixes=(";",), interpolation=None)
    parser.optionxform = str
    with open(FILE, encoding="utf-8") as file:
        parser.read_file(file)
    return {name: dict(parser[name]) for name in parser.sections()}


def functions():
    return [name for name in _sections() if name != _SHARED]


def misplaced_keys():
    """Keys that nothing reads."""
    for name in functions():
        for key in _sections()[name]:
            if key.partition(".")[0] not in _KEYS or key.partition(".")[2] not in ("", *registration.LANGUAGES):
                yield f"{name}, {key}"


def own_text(function, key, language):
    """A text as the file has it in a language; None without one."""
    return _sections().get(function, {}).get(key if language == "en" else f"{key}.{language}")


def _text(function, key, language):
    text = own_text(function, key, language) or own_text(function, key, "en")
    for name, shared in _sections()[_SHARED].items() if text else ():
        stem, _, of_language = name.partition(".")
        if of_language == ("" if language == "en" else language):
            text = text.replace("{" + stem + "}", shared)
    return text


def equivalent(function, program, language="en"):
    """The text about a program; its code is in English."""
    return _text(function, PROGRAMS[program], language)


def note(function, language="en"):
    return _text(function, "note", language)


def data(function):
    return own_text(function, "data", "en")


def codes(text):
    return re.findall("`([^`]+)`", text or "")


def has_words(text):
    """Whether a text needs a translation."""
    return text != NONE and re.search("[A-Za-z]", re.sub("`[^`]*`", "", text)) is not None


def _variables(text):
    return dict(variable.split(" = ", 1) for variable in re.split(r";\s+", text) if variable)


def _comparison(function, line):
    formula, variables, which, *_ = [part.strip() for part in line.split(" | ")] + ["", ""]
    which, _, because = which.partition(" differs: ")
    listed = {program: codes(equivalent(function, program)) for program in PROGRAMS}
    chosen = re.findall(r"(Excel|R)(\d)", which) or [(program, 1) for program in PROGRAMS if listed[program]]
    return Comparison(formula, _variables(variables),
                      tuple((program, listed[program][int(number) - 1]) for program, number in chosen), because or None)


def comparisons(function):
    lines = (own_text(function, "compare", "en") or "").strip().splitlines()
    return [_comparison(function, line) for line in lines]
