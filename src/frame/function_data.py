"""The exports of an add-in, read from its functions.json and checked. The build makes the C++ tables from them
(function_tables.py); the help and the tests read them through this module.

    applications    ids, 0 to 9, of the companions (macro add-ins) that functions are registered for
    tables          by name: the fields that its functions have by default ("defaults"), and its "functions" in the
                    order of registration
    entry_points    groups of exports for callers other than formulas; those of the frame, which every add-in has,
                    stand in entry_points.json

A function has a name, an export, types, applications and a category, perhaps from the defaults; the other fields
are optional:

    name            in formulas
    export          the name of the library's export
    types           a letter for the result and one for each argument, as Excel's interface for single-byte texts
                    has them; R*30 stands for R 30 times, ! at the end for volatile
    applications    the function is registered while one of these is announced; "always" means as long as the
                    add-in is open
    category        of the function wizard
    hidden          the wizard does not list the function
    macros_only     only macros of the suite call the function, so it has no help page
    fills_calling_range
                    the result takes the shape of the range in which the formula was entered
    topic           the number of its topic in the compiled help
    argument_text   names of the arguments, for the wizard
    help            the wizard's text about the function
    argument_helps  its texts about the arguments; "..." at the end repeats the last one for all further arguments

Each of the last three holds texts or ids of texts in the message library. A text that is left out is empty.

A group of entry points has

    what            the entry points have in common
    called_by       "Excel", "macros" or "libraries" (of the suite)
    strings         what their string parameters and results hold: "wide", or "code page" for strings that macros
                    declare As String: BSTRs of bytes in the ANSI code page, without the characters that the page
                    lacks. Strings in VARIANTs are always wide.
    source          the file that defines them
    exports
"""
import dataclasses
import json
import pathlib
import re

# In the order of their messages; see WizardCategory in registration_row.h.
CATEGORIES = ("general", "data preparation", "sampling", "multivariate analysis", "time series", "regression",
              "analysis of variance", "statistical functions", "distribution functions", "hypothesis tests",
              "quality control", "charts")
MESSAGE_IDS = range(1, 1714)  # the values that a TextReference takes as ids
MOST_HELPS = 20
LONGEST_TEXT = 255
REPEAT = "..."
CALLERS = ("Excel", "macros", "libraries")
STRINGS = ("wide", "code page")
FRAME = pathlib.Path(__file__).with_name("entry_points.json")


@dataclasses.dataclass(frozen=True)
class Function:
    table: str
    name: str
    export: str
    types: str  # with every letter written out
    applications: tuple  # ids
    always: bool
    category: str
    hidden: bool = False
    macros_only: bool = False
    fills_calling_range: bool = False
    topic: int | None = None
    argument_text: int | str = ""
    help: int | str = ""
    argument_helps: tuple = ()  # without the mark of repetition
    repeats: bool = False  # the last help serves all further arguments

    @property
    def arity(self):
        return len(re.sub(r"[%!#$]", "", self.types)) - 1


@dataclasses.dataclass(frozen=True)
class EntryPoints:
    what: str
    called_by: str
    source: str
    exports: tuple
    strings: str | None = None


@dataclasses.dataclass(frozen=True)
class Data:
    functions: list
    entry_points: list


def _is_name(value):
    return isinstance(value, str) and len(value) <= LONGEST_TEXT and re.fullmatch(r"[A-Za-z]\w*", value, re.A)


def _is_number(value, numbers):
    return type(value) is int and value in numbers


def _is_text(value):
    if isinstance(value, str):
        return len(value) <= LONGEST_TEXT and value.isprintable()
    return _is_number(value, MESSAGE_IDS)


def _are_helps(value):
    if not isinstance(value, list):
        return False
    helps = value[:-1] if len(value) > 1 and value[-1] == REPEAT else value
    return len(helps) <= MOST_HELPS and all(_is_text(text) and text != REPEAT for text in helps)


def _written_out(types):
    return re.sub(r"([A-Z])\*(\d{1,2})", lambda match: match[1] * int(match[2]), types)


def _are_types(value):
    return (isinstance(value, str) and len(_written_out(value)) <= LONGEST_TEXT and
            re.fullmatch(r"(?:[A-PR]|[CDFGKO]%)+[!#$]?", _written_out(value)))


def _is_flag(value):
    return isinstance(value, bool)


def _fields(applications):
    """The fields of a function, each with a check of its value and a description of valid values."""
    text = (_is_text, f"an id from {MESSAGE_IDS[0]} to {MESSAGE_IDS[-1]} or a line of at most {LONGEST_TEXT} characters")
    flag = (_is_flag, "true or false")
    name = (_is_name, f"a name of at most {LONGEST_TEXT} letters and digits")
    return {
        "name": name, "export": name,
        "types": (_are_types, f"a type text of at most {LONGEST_TEXT} letters and marks"),
        "applications": (lambda value: isinstance(value, list) and value and
                         all(name in ["always", *applications] for name in value),
                         f"a list of always, {', '.join(applications)}"),
        "category": (lambda value: value in CATEGORIES, f"one of {', '.join(CATEGORIES)}"),
        "hidden": flag, "macros_only": flag, "fills_calling_range": flag,
        "topic": (lambda value: _is_number(value, range(2**15)), "a number from 0 to 32767"),
        "argument_text": text, "help": text,
        "argument_helps": (_are_helps, f"at most {MOST_HELPS} helps, each {text[1]}, and ... behind them"),
    }


_GROUP_FIELDS = {
    "what": (_is_text, "a line"),
    "called_by": (lambda value: value in CALLERS, f"one of {', '.join(CALLERS)}"),
    "strings": (lambda value: value in STRINGS, f"one of {', '.join(STRINGS)}"),
    "source": (lambda value: isinstance(value, str), "a file"),
    "exports": (lambda value: isinstance(value, list) and all(map(_is_name, value)), "a list of names"),
}


class _Checker:
    def __init__(self):
        self.problems = []

    def check(self, condition, problem):
        if not condition:
            self.problems.append(problem)
        return condition

    def fields(self, where, given, known):
        for field, value in given.items():
            if self.check(field in known, f"{where}: unknown field '{field}'"):
                is_right, wanted = known[field]
                self.check(is_right(value), f"{where}, {field}: {json.dumps(value)} is not {wanted}")

    def needed(self, where, given, names):
        for name in names:
            self.check(name in given, f"{where}: no '{name}'")

    def unique(self, kind, values):
        """Checks that pairs of a value and its place have no value twice."""
        seen = set()
        for value, where in values:
            self.check(value not in seen, f"{where}: the {kind} {value} stands twice")
            seen.add(value)

    def finish(self):
        if self.problems:
            raise ValueError("\n".join(self.problems))


def _function(table, fields, applications):
    helps = fields.get("argument_helps", [])
    repeats = helps[-1:] == [REPEAT]
    return Function(**fields | {
        "table": table, "types": _written_out(fields["types"]),
        "applications": tuple(applications[name] for name in fields["applications"] if name != "always"),
        "always": "always" in fields["applications"],
        "argument_helps": tuple(helps[:-1] if repeats else helps), "repeats": repeats})


def parse(document):
    """The Data of a file's content. Raises ValueError with a line for each mistake."""
    checker = _Checker()
    block = (lambda value: isinstance(value, dict), "a block")
    blocks = (lambda value: isinstance(value, list) and all(isinstance(part, dict) for part in value), "a list of blocks")
    checker.fields("file", document, {"about": (_is_text, "a line"), "applications": block, "tables": block,
                                      "entry_points": blocks})
    checker.needed("file", document, ("applications", "tables", "entry_points"))
    checker.finish()

    applications = document["applications"]
    for name, number in applications.items():
        checker.check(_is_number(number, range(10)), f"applications, {name}: {number} is not a number from 0 to 9")
    known = _fields(applications)
    rows = []
    for table, content in document["tables"].items():
        checker.fields(table, content, {"defaults": block, "functions": blocks})
        checker.needed(table, content, ("functions",))
        checker.finish()
        defaults = content.get("defaults", {})
        checker.fields(f"{table}, defaults", defaults, known)
        for number, own in enumerate(content["functions"], 1):
            where = own.get("name", f"{table}, function {number}")
            checker.fields(where, own, known)
            checker.needed(where, defaults | own, ("name", "export", "types", "applications", "category"))
            rows.append((table, defaults | own))
    groups = document["entry_points"]
    for number, group in enumerate(groups, 1):
        where = group.get("what", f"entry_points, group {number}")
        checker.fields(where, group, _GROUP_FIELDS)
        checker.needed(where, group, ("what", "called_by", "source", "exports"))
    checker.finish()

    functions = [_function(table, row, applications) for table, row in rows]
    for function in functions:
        explained = sum(text != "" for text in function.argument_helps)
        checker.check(explained <= function.arity,
                      f"{function.name}, argument_helps: {explained} for {function.arity} arguments")
    for kind in ("name", "export", "topic"):
        checker.unique(kind, [(getattr(function, kind), function.name) for function in functions
                              if getattr(function, kind) is not None])
    checker.unique("entry point", [(export, group["what"]) for group in groups for export in group["exports"]])
    checker.finish()
    return Data(functions, [EntryPoints(**group | {"exports": tuple(group["exports"])}) for group in groups])


def _without_repeats(pairs):
    names = [name for name, _ in pairs]
    for name in names:
        if names.count(name) > 1:
            raise ValueError(f"{dict(pairs).get('name', 'a block')}: the field '{name}' stands twice")
    return dict(pairs)


def _document(file):
    return json.loads(file.read_text(encoding="utf-8"), object_pairs_hook=_without_repeats)


def read(file):
    """The Data of an add-in's file, with the entry points of the frame. If the file has mistakes, ends the program with
    all of them."""
    try:
        document = _document(file)
        if isinstance(document.get("entry_points"), list):
            document["entry_points"] = _document(FRAME)["entry_points"] + document["entry_points"]
        return parse(document)
    except ValueError as mistakes:
        raise SystemExit("\n".join(f"{file}: {line}" for line in str(mistakes).splitlines()))
