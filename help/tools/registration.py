"""The registered worksheet functions with their texts, from the registration table and the message files."""

import dataclasses
import functools
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parents[2]
TABLE = ROOT / "src/frame/registration_table.cpp"
TEXTS = ROOT / "companions/messages/texts"
LANGUAGES = sorted(file.stem for file in TEXTS.glob("*.txt"))
FIRST_CATEGORY = 400


@dataclasses.dataclass(frozen=True)
class Function:
    """A row of the table. Texts are literals, or ids of messages; an empty literal is no text."""

    name: str
    export: str
    listed: bool
    topic: int  # -1: none
    category: int
    arity: int | None  # how many arguments are registered; None: 30
    argument_text: object
    help: object
    argument_helps: tuple
    repeats: bool  # the last argument help serves all further arguments
    extension: bool

    @property
    def is_private(self):
        """Called by macros of the suite only."""
        return re.search(r"Private2?$", self.name) is not None


def _arity(types):
    """From a type text: a letter for the result and one for each argument, and marks."""
    if not types.startswith('"'):
        return None
    return len(re.sub(r"[!%$#]", "", types.strip('"'))) - 1


def _text(word):
    word = word.strip()
    if word == "kEmpty":
        return ""
    return int(word) if word.isdigit() else word.strip('"')


_ROW = re.compile(
    r'^    \{(?P<applications>\w+), "(?P<export>\w+)", (?P<types>[^,]+), "(?P<name>\w+)", (?P<arguments>[^,]+), '
    r'(?P<listed>\w+), (?P<topic>\w+), (?P<category>\d+), (?P<help>[^,]+), (?P<helps>.*)\},$', re.M)


@functools.cache
def functions():
    source = TABLE.read_text(encoding="utf-8")
    extension_begins = source.index("kExtensionTable[] = {")
    rows = []
    for row in _ROW.finditer(source):
        helps = [] if row["helps"] == "kTwentyEmpty" else [h for h in row["helps"].strip("{}").split(",") if h.strip()]
        repeats = bool(helps) and helps[-1].strip() == "kRepeatLast"
        rows.append(Function(
            name=row["name"], export=row["export"], listed=row["listed"] == "kListed",
            topic=-1 if row["topic"] == "kNoTopic" else int(row["topic"]), category=int(row["category"]),
            arity=_arity(row["types"]),
            argument_text=_text(row["arguments"]), help=_text(row["help"]),
            argument_helps=tuple(_text(h) for h in (helps[:-1] if repeats else helps)), repeats=repeats,
            extension=row.start() > extension_begins))
    stated = sum(int(n) for n in re.findall(r"static_assert\(std::size\(k\w+Table\) == (\d+)\)", source))
    if len(rows) != stated:
        raise SystemExit(f"{TABLE}: {stated} rows, but {len(rows)} of them can be read")
    return rows


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
    return messages(language)[FIRST_CATEGORY + function.category]


def argument_names(function, language):
    text = resolve(function.argument_text, language)
    return [name.strip() for name in text.split(",")] if text else []


def arguments(function, language):
    """(name, help) of each argument; one entry for all that share the last help."""
    names = argument_names(function, language)
    helps = [resolve(help_text, language) for help_text in function.argument_helps]
    if not helps:
        return []
    if function.repeats:
        names = names[:len(helps) - 1] + [", ".join(names[len(helps) - 1:])]
    return list(zip(names, helps))
