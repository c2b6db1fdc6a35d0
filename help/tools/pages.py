"""The sources of the help: one page for each function, and topics that several functions share.

A page begins with a header of `key: value` lines, up to the first blank line:

    see       the functions and topics to which the page refers at its end, separated by commas
    data      the file in help/data with the data of its examples, shown as cells from A1 on
    title     of a topic
    summary, syntax
              what the function computes and its arguments' names, if the registration has none; an argument in
              [brackets] may be left out

What computes the same in Excel and R is in help/equivalents.ini; equivalents.py describes it.

The body uses a small part of Markdown: paragraphs, `- ` lists, tables, `##` headings, `code`, *emphasis*,
[links](topic), $formulas$ in a small part of TeX, and examples:

        =ZavMean(2,4,9)
        → 5

Braces mark an array formula. Each line of its result is a row, with cells separated by ` | `.
A section "Arguments" replaces the registration's help for the arguments: `- name: help`.

A page in another language has what needs translation: the title, summary, syntax and arguments if the English page
has them, and its texts (paragraphs, lists, tables and formulas with words), one for one and in the same order.
Everything else comes from the English page: headings, other formulas, examples, and parts without a translation.
"""

import csv
import dataclasses
import functools
import re

from . import equivalents, languages, registration

HELP = registration.ROOT / "help"
SECTION_OF_ARGUMENTS = "Arguments"
KEYS = ("see", "data", "title", "summary", "syntax")


@dataclasses.dataclass
class Example:
    formula: str  # without braces
    is_array: bool
    rows: list  # of lists of cells, as shown

    @property
    def shown_formula(self):
        return "{" + self.formula + "}" if self.is_array else self.formula


@dataclasses.dataclass
class Block:
    """A part of a page's body. kind: heading, paragraph, list, table, formula, example."""

    kind: str
    content: object


@dataclasses.dataclass
class Page:
    name: str
    header: dict
    blocks: list
    function: registration.Function | None = None
    argument_list: list = dataclasses.field(default_factory=list)

    @property
    def see(self):
        return [name.strip() for name in self.header.get("see", "").split(",") if name.strip()]

    @property
    def examples(self):
        return [block.content for block in self.blocks if block.kind == "example"]

    @property
    def texts(self):
        """The blocks that need a translation: paragraphs, lists, tables, formulas with words."""
        return [block for block in self.blocks if block.kind in ("paragraph", "list", "table") or
                block.kind == "formula" and r"\text" in block.content]

    @property
    def title(self):
        return self.header.get("title", self.name)

    def equivalents(self, language):
        """What computes the same elsewhere, by program."""
        return {program: equivalents.equivalent(self.name, program, language) for program in equivalents.PROGRAMS}

    def summary(self, language):
        return self.header.get("summary") or registration.resolve(self.function.help, language)

    def argument_names(self, language):
        """The names, in brackets those of arguments that may be left out."""
        if "syntax" in self.header:
            return [name.strip() for name in self.header["syntax"].split(",") if name.strip()]
        return registration.argument_names(self.function, language)

    def syntax(self, language):
        return f"{self.function.name}({languages.named(language).separated(self.argument_names(language))})"

    def arguments(self, language):
        return self.argument_list or registration.arguments(self.function, language)


def data_rows(name):
    with open(HELP / "data" / f"{name}.csv", encoding="utf-8", newline="") as file:
        return list(csv.reader(file))


def _example(lines, where):
    formula = lines[0]
    rows = []
    for line in lines[1:]:
        if not line.startswith("→ "):
            raise SystemExit(f"{where}: no result: {line}")
        rows.append([cell.strip() for cell in line[2:].split(" | ")])
    is_array = formula.startswith("{=")
    return Example(formula[1:-1] if is_array else formula, is_array, rows)


def _body(text, where):
    blocks = []
    for part in re.split(r"\n\s*\n", text.strip("\n")):
        lines = [line.rstrip() for line in part.split("\n")]
        if lines[0].startswith("## "):
            blocks.append(Block("heading", lines[0][3:]))
            lines = lines[1:]
        if not lines or not lines[0]:
            continue
        if lines[0].startswith("    "):
            stripped = [line.strip() for line in lines]
            starts = [i for i, line in enumerate(stripped) if line.startswith(("=", "{="))]
            for start, end in zip(starts, starts[1:] + [len(stripped)]):
                blocks.append(Block("example", _example(stripped[start:end], where)))
        elif lines[0].startswith("- "):
            items = []
            for line in lines:
                if line.startswith("- "):
                    items.append(line[2:])
                else:
                    items[-1] += " " + line.strip()
            blocks.append(Block("list", items))
        elif lines[0].startswith("|"):
            blocks.append(Block("table", [[cell.strip() for cell in line.strip("|").split("|")]
                                          for line in lines if not re.fullmatch(r"[|\- ]+", line)]))
        elif lines[0].startswith("$$"):
            blocks.append(Block("formula", " ".join(lines).strip("$ ")))
        else:
            blocks.append(Block("paragraph", " ".join(lines)))
    return blocks


def read_page(file, function=None):
    text = file.read_text(encoding="utf-8")
    header_text, _, body = text.partition("\n\n") if re.match("[a-z]+:", text) else ("", "", text)
    header = {}
    for line in header_text.splitlines():
        key, colon, value = line.partition(":")
        if not colon or key not in KEYS:
            raise SystemExit(f"{file}: not a header: {line}")
        header[key] = value.strip()
    page = Page(file.stem, header, _body(body, file), function)
    for i, block in enumerate(page.blocks):
        if block.kind == "heading" and block.content == SECTION_OF_ARGUMENTS:
            page.argument_list = [tuple(item.split(": ", 1)) for item in page.blocks[i + 1].content]
            del page.blocks[i:i + 2]
            break
    return page


@functools.cache
def function_pages(language="en"):
    """The pages of a language by name, in the order of the registration."""
    folder = HELP / language
    return {function.name: read_page(file, function) for function in registration.functions()
            if (file := folder / f"{function.name}.md").exists()}


@functools.cache
def topics(language="en"):
    """The topics by name, in the order in which the contents list them first."""
    names = (HELP / "contents.txt").read_text(encoding="utf-8").partition("#")[0].split()
    return {name: read_page(file) for name in names if (file := HELP / language / f"topics/{name}.md").exists()}


def same_form(english, translation):
    """Whether the texts of a translation can replace the English ones."""
    def form(page):
        return [(block.kind, len(block.content) if block.kind in ("list", "table") else 1) for block in page.texts]
    return form(english) == form(translation)


def translated(english, own):
    """A page with the texts of its translation, `own`; missing parts are in English."""
    if own is None:
        return english
    blocks = english.blocks
    if same_form(english, own):
        new = iter(own.texts)
        replaced = {id(block) for block in english.texts}
        blocks = [next(new) if id(block) in replaced else block for block in english.blocks]
    return Page(english.name, english.header | own.header, blocks, english.function,
                own.argument_list or english.argument_list)


def pages_in(language):
    """The pages of all functions, in a language."""
    return {name: translated(page, function_pages(language).get(name)) for name, page in function_pages().items()}


def topics_in(language):
    return {name: translated(page, topics(language).get(name)) for name, page in topics().items()}


@functools.cache
def contents():
    """The groups of help/contents.txt: (title, names of their functions)."""
    groups = []
    for line in (HELP / "contents.txt").read_text(encoding="utf-8").splitlines():
        if line.startswith("# "):
            groups.append((line[2:], []))
        elif groups:
            groups[-1][1].extend(line.split())
    return groups
