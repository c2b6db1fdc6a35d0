"""The help as Markdown files: docs/functions."""

import itertools
import re

from . import equivalents, languages, pages, registration

FOLDER = registration.ROOT / "docs/functions"
_NOTICE = "<!-- Made by help/build_help.py; change help/en, the message texts or the registration table instead. -->\n\n"


def _inline(text, known):
    """Turns names of functions in `code`, and topics, into links."""
    def code(match):
        name = match[1]
        return f"[`{name}`]({name}.md)" if name in known else match[0]
    text = re.sub(r"`([^`]+)`", code, text)
    return re.sub(r"\]\(([a-z-]+)\)", r"](\1.md)", text)


def _cells(rows):
    lines = ["| " + " | ".join(row) + " |" for row in rows]
    lines.insert(1, "|" + "---|" * len(rows[0]))
    return lines


def sheet(rows):
    """The rows of a data file with the names of columns and rows."""
    letters = [chr(ord("A") + i) for i in range(len(rows[0]))]
    return [["", *letters]] + [[f"**{i}**", *row] for i, row in enumerate(rows, 1)]


def _examples(examples):
    """Examples without text between them, in one block."""
    return "```\n" + "\n".join("\n".join([example.shown_formula] + [f"→ {' | '.join(row)}" for row in example.rows])
                                for example in examples) + "\n```"


def _blocks(blocks, known):
    for is_example, group in itertools.groupby(blocks, lambda block: block.kind == "example"):
        if is_example:
            yield _examples([block.content for block in group])
            continue
        for block in group:
            if block.kind == "heading":
                yield f"## {block.content}"
            elif block.kind == "paragraph":
                yield _inline(block.content, known)
            elif block.kind == "list":
                yield "\n".join(f"- {_inline(item, known)}" for item in block.content)
            elif block.kind == "table":
                yield "\n".join(_cells([[_inline(cell, known) for cell in row] for row in block.content]))
            else:
                yield f"$$\n{block.content}\n$$"


def _equivalents(page, known):
    words = languages.named("en").words
    rows = [[program, words["none"] if text == equivalents.NONE else _inline(text, known).replace("|", r"\|")]
            for program, text in page.equivalents("en").items()]
    yield f"## {words['equivalents']}"
    yield "\n".join(_cells([["", ""], *rows]))
    if note := equivalents.note(page.name):
        yield _inline(note, known)


def _page(page, known):
    parts = [f"# {page.title}"]
    if page.function:
        parts.append(f"`{page.syntax('en')}`")
        parts.append(page.summary("en"))
        if arguments := page.arguments("en"):
            explained = [[f"*{name}*", _inline(text, known)] for name, text in arguments]
            parts.append("\n".join(_cells([["argument", ""], *explained])))
    before, examples = split_examples(page)
    parts.extend(_blocks(before, known))
    if "data" in page.header:
        parts.append("## Data of the examples")
        parts.append("\n".join(_cells(sheet(pages.data_rows(page.header["data"])))))
    parts.extend(_blocks(examples, known))
    if page.function:
        parts.extend(_equivalents(page, known))
    if page.see:
        titles = pages.topics()
        links = [f"[{titles[name].title if name in titles else name}]({name}.md)" for name in page.see]
        parts.append("## See also")
        parts.append(", ".join(links))
    return _NOTICE + "\n\n".join(parts) + "\n"


def split_examples(page):
    """The blocks before the heading "Examples", and from there on."""
    for i, block in enumerate(page.blocks):
        if block.kind == "heading" and block.content == "Examples":
            return page.blocks[:i], page.blocks[i:]
    return page.blocks, []


def first_sentence(text):
    return re.split(r"(?<=\.)\s", text)[0]


def _index(function_pages, topics):
    parts = ["# Functions of Zavrel Functions",
             "Every page has a function's definition, its errors, examples with their results, and its equivalents "
             "in Excel and R, or how it differs from them. The same pages ship as HTML and as a compiled help file.",
             "\n".join(f"- [{topic.title}]({topic.name}.md)" for topic in topics.values())]
    for title, names in pages.contents():
        parts.append(f"## {title}")
        parts.append("\n".join(
            _cells([["function", ""]] + [[f"[`{name}`]({name}.md)", first_sentence(function_pages[name].summary("en"))]
                                         for name in names])))
    return _NOTICE + "\n\n".join(parts) + "\n"


def make():
    """The files by name."""
    function_pages, topics = pages.function_pages(), pages.topics()
    known = set(function_pages)
    files = {f"{page.name}.md": _page(page, known) for page in [*function_pages.values(), *topics.values()]}
    files["README.md"] = _index(function_pages, topics)
    return files
