#!/usr/bin/python3
"""Checks the sources of the help against the registration table and each other. Says all that is wrong."""

import pathlib
import re
import sys
import xml.etree.ElementTree as tree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "help"))
from tools import formula, html_pages, intellisense, languages, pages, registration  # noqa: E402


def completeness():
    """Each function of the wizard and each hidden one that is not for macros alone has a page, which the
    contents list once."""
    wanted = {function.name for function in registration.functions() if not function.macros_only}
    written = {file.stem for file in (pages.HELP / "en").glob("*.md")}
    listed = [name for _, names in pages.contents() for name in names]
    for name in sorted(wanted ^ written):
        yield f"{name}: {'no page' if name in wanted else 'a page of no function'}"
    for name in sorted(wanted ^ set(listed)):
        yield f"{name}: {'not in the contents' if name in wanted else 'in the contents, but no function'}"
    for name in sorted(name for name in set(listed) if listed.count(name) > 1):
        yield f"{name}: more than once in the contents"
    for name in {file.stem for file in (pages.HELP / "en/topics").glob("*.md")} - set(pages.topics()):
        yield f"{name}: a topic that is not in the contents"
    private = {function.name for function in registration.functions() if function.macros_only}
    mentioned = set(re.findall(r"\w+Private2?", (pages.HELP / "en/topics/macro-functions.md").read_text(encoding="utf-8")))
    for name in sorted(private ^ mentioned):
        yield f"{name}: {'not on the page of' if name in private else 'none of the'} functions for macros"


def arguments():
    """In every language a page has a summary, and names and explains as many arguments as are registered."""
    for language in languages.NAMES:
        for name, page in pages.pages_in(language).items():
            where = f"{name} ({language})"
            if not page.summary(language):
                yield f"{where}: no summary"
            in_syntax = page.syntax(language)[len(name) + 1:-1]
            in_table = ", ".join(names for names, _ in page.arguments(language))
            if in_syntax != in_table:
                yield f"{where}: the syntax is {in_syntax}, the arguments explained are {in_table}"
            count = len([part for part in in_syntax.split(",") if part])
            arity = page.function.arity
            if "..." not in in_syntax and count != arity:
                yield f"{where}: {count} arguments, registered with {arity}"


def own_headers(page):
    return {key for key in ("title", "summary", "syntax") if page.header.get(key)}


def equivalents():
    """Each function's page says what computes the same in Excel and in R, in every language."""
    english = pages.function_pages()
    for name, page in english.items():
        for program in pages.PROGRAMS.values():
            if not page.equivalents.get(program):
                yield f"{name}: no equivalent in {program}"
    for language in languages.NAMES:
        for name, own in pages.function_pages(language).items() if language != "en" else ():
            expected = {program for program, text in english[name].equivalents.items() if pages.has_words(text)}
            if expected != set(own.equivalents):
                yield f"help/{language}, {name}: equivalents in {sorted(own.equivalents)}, not {sorted(expected)}"
            elif "R" in expected and codes(own) != codes(english[name]):
                yield f"help/{language}, {name}: other R code than on the English page"


def codes(page):
    return re.findall("`([^`]*)`", page.equivalents["R"])


def references(page):
    """The functions, topics and error values that the texts of a page name."""
    text = repr([block.content for block in page.texts]) + repr(page.equivalents)
    return {code or topic for code, topic in re.findall(r"`(#[A-Z/0!]+|Zav\w+)`|\]\(([a-z-]+)\)", text)}


def translations():
    """Each page has a translation, with a text for each text of its own, that names the same functions, topics
    and errors; there is none without a page."""
    english = pages.function_pages() | pages.topics()
    for language in languages.NAMES:
        if language == "en":
            continue
        needed = {name: page for name, page in english.items() if own_headers(page) or page.argument_list or page.texts
                  or any(map(pages.has_words, page.equivalents.values()))}
        folder = pages.HELP / language
        written = {file.stem for file in [*folder.glob("*.md"), *folder.glob("topics/*.md")]}
        for name in sorted(set(needed) ^ written):
            yield f"{name}: {'no' if name in needed else 'a needless'} page in help/{language}"
        for name, own in (pages.function_pages(language) | pages.topics(language)).items():
            where = f"help/{language}, {name}"
            page = english[name]
            if own_headers(own) != own_headers(page) or bool(own.argument_list) != bool(page.argument_list):
                yield f"{where}: other headers or arguments than the English page: {own_headers(own)}"
            if len(own.texts) != len(own.blocks):
                yield f"{where}: a heading, an example or a formula without words"
            if not pages.same_form(page, own):
                yield f"{where}: other paragraphs, lists or tables than the English page"
            in_excel = languages.named(language).excel["names"]
            found, expected = references(own), {in_excel.get(name, name) for name in references(page)}
            if found != expected:
                yield f"{where}: names {sorted(found)}, not {sorted(expected)}"


def links():
    known = set(pages.function_pages()) | set(pages.topics())
    functions = {function.name for function in registration.functions()}
    for page in [*pages.function_pages().values(), *pages.topics().values()]:
        for name in page.see:
            if name not in known or name == page.name:
                yield f"{page.name}: refers to {name}"
        text = repr(page.blocks) + repr(page.header) + repr(page.argument_list)
        for topic in re.findall(r"\]\(([^)]*)\)", text):
            if topic not in pages.topics():
                yield f"{page.name}: refers to {topic}"
        for name in set(re.findall(r"\bZav[A-Z]\w+", text)) - functions:
            if name not in ("ZavrelFuncs",):
                yield f"{page.name}: {name} is no function"


def examples():
    for page in pages.function_pages().values():
        if not page.examples:
            yield f"{page.name}: no example"
        if not any(page.name in example.formula for example in page.examples):
            yield f"{page.name}: no example that uses it"
        for example in page.examples:
            if len({len(row) for row in example.rows}) != 1:
                yield f"{page.name}: {example.shown_formula} has no rectangular result"


def excel_and_headings():
    """Every language has all headings, all titles and a name for each of Excel's functions in formulas."""
    headings = set(languages.named("en").words)
    for page in [*pages.function_pages().values(), *pages.topics().values()]:
        for block in page.blocks:
            if block.kind == "heading" and block.content not in languages.named("en").words.values():
                yield f"{page.name}: the heading {block.content} has no translation"
    groups = {title for title, _ in pages.contents()}
    formulas = [example.formula for page in pages.function_pages().values() for example in page.examples]
    formulas += [text.strip("`") for page in pages.function_pages().values()
                 if not pages.has_words(text := page.equivalents.get("Excel", ""))]
    used = set().union(*map(languages.functions_in, formulas)) - set(pages.function_pages())
    for name in languages.NAMES:
        if name not in registration.LANGUAGES:
            yield f"help/{name}: there are no message texts in that language"
        if name == "en":
            continue
        own = languages.named(name)
        for field, missing in (("words", headings - set(own.words)), ("groups", groups - set(own.groups)),
                               ("excel, names", used - set(own.excel["names"]))):
            for text in sorted(missing):
                yield f"help/{name}/language.json, {field}: no {text}"
        for text in sorted(set(own.groups) - groups):
            yield f"help/{name}/language.json, groups: {text} is not in the contents"


def outputs():
    """What the generators have of their own: formulas in German, TeX, the XML, links."""
    translated = languages.named("de").formula('{=ZavMean({1,2.5;3,4},IF(A1>=0.5,TRUE,"a,b"))}')
    if translated != '{=ZavMean({1.2,5;3.4};WENN(A1>=0,5;WAHR;"a,b"))}':
        yield f"German formula: {translated}"
    fraction = formula.to_html(r"\frac{x_i}{2}")
    if fraction != ('<span class="frac"><span class="above"><i>x</i><sub><i>i</i></sub></span>'
                    '<span class="below">2</span></span>'):
        yield f"formula: {fraction}"
    space = "{http://schemas.excel-dna.net/intellisense/1.0}"
    for language in languages.NAMES:
        root = tree.fromstring(intellisense.make(language))
        listed = root.findall(f"{space}FunctionInfo/{space}Function")
        if [element.get("Name") for element in listed] != list(pages.function_pages()):
            yield f"help while typing ({language}): other functions than those with a page"
        for element in listed:
            for part in (element, *element):
                if not part.get("Description") or re.search("[`$]", part.get("Description")):
                    yield f"help while typing ({language}): {element.get('Name')}, {part.attrib}"
        for name, text in html_pages.Renderer(language).files().items():
            for linked in re.findall(r'href="([\w-]+\.html)"', text):
                if linked != "index.html" and linked[:-5] not in {*pages.function_pages(), *pages.topics()}:
                    yield f"{language}/{name}: links {linked}"


def documents():
    """Numbers that documents repeat."""
    shown = re.search(r"Registered functions +(\d+) once", (pages.HELP.parent / "docs/diagnostics.md").read_text("utf-8"))
    count = len(list(registration.functions()))
    if shown is None or int(shown[1]) != count:
        yield f"docs/diagnostics.md: the doctor finds {count} functions"


def main():
    checks = (completeness, arguments, equivalents, translations, excel_and_headings, links, examples, outputs, documents)
    wrong = [problem for check in checks for problem in check()]
    print("\n".join(wrong) or f"{len(pages.function_pages())} pages of functions and {len(pages.topics())} topics are right")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
