"""The registered worksheet functions with their texts, from the add-ins' functions.json and the message files."""

import functools
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "src/frame"))
import function_data  # noqa: E402

Function = function_data.Function

TEXTS = ROOT / "companions/messages/texts"
LANGUAGES = sorted(file.stem for file in TEXTS.glob("*.txt"))
FIRST_CATEGORY = 400
# The folders of their functions, by the names of their files.
ADD_INS = {"ZavrelFuncs8": "functions", "ZavrelDistributions8": "distribution_functions"}


@functools.cache
def functions_of(add_in):
    return function_data.read(ROOT / "src" / ADD_INS[add_in] / "functions.json").functions


def functions():
    return [function for add_in in ADD_INS for function in functions_of(add_in)]


@functools.cache
def messages(language):
    texts = {}
    for line in (TEXTS / f"{language}.txt").read_text(encoding="utf-8").splitlines():
        if match := re.fullmatch(r"(\d+) = (.+)", line):
            texts[int(match[1])] = match[2]
    return texts


def resolve(text, language):
    return messages(language)[text] if isinstance(text, int) else text


def category_name(function, language):
    return messages(language)[FIRST_CATEGORY + function_data.CATEGORIES.index(function.category)]


def argument_names(function, language):
    """The names as the wizard shows them: in brackets those of arguments that may be left out."""
    text = resolve(function.argument_text, language)
    return [name.strip() for name in text.split(",")] if text else []


def without_brackets(name):
    return name.strip("[]")


def arguments(function, language):
    """(name, help) of each argument; one entry for all that share the last help."""
    names = [without_brackets(name) for name in argument_names(function, language)]
    helps = [resolve(help_text, language) for help_text in function.argument_helps]
    if not helps:
        return []
    if function.repeats:
        names = names[:len(helps) - 1] + [", ".join(names[len(helps) - 1:])]
    return list(zip(names, helps))
