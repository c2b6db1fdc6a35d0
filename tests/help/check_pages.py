#!/usr/bin/python3
"""Checks the sources of the help against the registration table and each other. Says all that is wrong."""

import pathlib
import re
import sys
import xml.etree.ElementTree as tree

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "help"))
from tools import distribution_list, equivalents, formula, html_pages, intellisense, languages, pages, registration  # noqa: E402

# What stays as it is in every language: names of selectors, and of Pearson and Spearman.
LABELS = re.compile(r"\b(xto[ypq]|[pq]tox|Pearson|Spearman)\b")
REFERENCE = re.compile(r"`(#[A-Z/0!?]+|Zav\w+)`")


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
    """In every language a page has a summary, which is no other page's, and names and explains as many arguments as
    are registered. The same ones may be left out in every language."""
    for language in languages.NAMES:
        summaries = {}
        for name, page in pages.pages_in(language).items():
            where = f"{name} ({language})"
            if not page.summary(language) or summaries.setdefault(page.summary(language), name) != name:
                yield f"{where}: no summary, or that of another function"
            names = page.argument_names(language)
            in_table = [one for shared, _ in page.arguments(language) for one in shared.split(", ")]
            if [registration.without_brackets(one) for one in names] != in_table:
                yield f"{where}: the syntax is {names}, the arguments explained are {in_table}"
            if "..." not in names and len(names) != page.function.arity:
                yield f"{where}: {len(names)} arguments, registered with {page.function.arity}"
            if optional(names) != optional(pages.function_pages()[name].argument_names("en")):
                yield f"{where}: other arguments in brackets than in English"


def optional(names):
    return [name.startswith("[") and name.endswith("]") for name in names]


def own_headers(page):
    return {key for key in ("title", "summary", "syntax") if page.header.get(key)}


def equivalent_texts():
    """Each function has the texts about Excel and R, and what has words has them in every language, with the same
    code."""
    yield from (f"equivalents.ini: {place} is not read" for place in equivalents.misplaced_keys())
    for name in pages.function_pages().keys() ^ set(equivalents.functions()):
        yield f"{name}: {'no' if name in pages.function_pages() else 'a needless'} section in equivalents.ini"
    for name in equivalents.functions():
        for key in (*equivalents.PROGRAMS.values(), "note"):
            english = equivalents.own_text(name, key, "en")
            if english is None and key != "note":
                yield f"{name}: no text about {key}"
            for language in languages.NAMES if english else ():
                own = equivalents.own_text(name, key, language)
                if (own is None) == equivalents.has_words(LABELS.sub("", english)) and language != "en":
                    yield f"{name}, {key}: {'no' if own is None else 'a needless'} text in {language}"
                if own and key != "note" and equivalents.codes(own) != equivalents.codes(english):
                    yield f"{name}, {key}: other code in {language} than in English"
        yield from other_references(name)


def other_references(name):
    """A note names the same functions and errors in every language."""
    english = REFERENCE.findall(equivalents.note(name) or "")
    for language in set(languages.NAMES) - {"en"}:
        in_excel = languages.named(language).excel["names"]
        if REFERENCE.findall(equivalents.note(name, language) or "") != [in_excel.get(one, one) for one in english]:
            yield f"{name}: the note in {language} names other functions or errors"


def references(page):
    """The functions, topics and error values that the texts of a page name."""
    text = repr([block.content for block in page.texts])
    return {code or topic for code, topic in re.findall(r"`(#[A-Z/0!]+|Zav\w+)`|\]\(([a-z-]+)\)", text)}


def translations():
    """Each page has a translation, with a text for each text of its own, that names the same functions, topics
    and errors; there is none without a page."""
    english = pages.function_pages() | pages.topics()
    for language in languages.NAMES:
        if language == "en":
            continue
        needed = {name: page for name, page in english.items() if own_headers(page) or page.argument_list or page.texts}
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
        text = repr([page.blocks, page.header, page.argument_list, equivalents.note(page.name)])
        for topic in re.findall(r"\]\(([^)]*)\)", text):
            if topic not in pages.topics():
                yield f"{page.name}: refers to {topic}"
        for name in set(re.findall(r"\bZav[A-Z]\w+", text)) - functions:
            if name not in ("ZavrelFuncs", "ZavDist"):
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
    """Every language has all headings, all titles and a name for each of Excel's functions in formulas. The names of
    distributions are the same in all."""
    headings = set(languages.named("en").words)
    for page in [*pages.function_pages().values(), *pages.topics().values()]:
        for block in page.blocks:
            if page.name != distribution_list.NAME and block.kind == "heading" and \
                    block.content not in languages.named("en").words.values():
                yield f"{page.name}: the heading {block.content} has no translation"
    groups = {title for title, _ in pages.contents()}
    formulas = [example.formula for page in pages.function_pages().values() for example in page.examples]
    formulas += [code for name in equivalents.functions() for code in
                 equivalents.codes(equivalents.equivalent(name, "Excel"))]
    used = set().union(*map(languages.functions_in, formulas)) - set(pages.function_pages())
    for name in languages.NAMES:
        if name not in registration.LANGUAGES:
            yield f"help/{name}: there are no message texts in that language"
        if name == "en":
            continue
        own = languages.named(name)
        for field, missing in (("words", headings - set(own.words)), ("groups", groups - set(own.groups))):
            for text in sorted(missing):
                yield f"help/{name}/language.json, {field}: no {text}"
        for text in sorted(used - set(own.excel["names"])):
            yield f"src/formula/languages/{name}.txt: no {text}"
        for text in sorted(set(own.groups) - groups):
            yield f"help/{name}/language.json, groups: {text} is not in the contents"


def samples():
    """Every heading of the examples' data has a translation."""
    for file in (pages.HELP / "data").glob("*.csv"):
        for language in set(languages.NAMES) - {"en"}:
            for heading in pages.data_rows(file.stem)[0]:
                if heading not in languages.named(language).samples:
                    yield f"help/{language}/language.json, samples: no {heading}"


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
        listed = [element for add_in in registration.ADD_INS
                  for element in tree.fromstring(intellisense.make(add_in, language)).iter(f"{space}Function")]
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
    count = len(registration.functions_of("ZavrelFuncs8"))
    if shown is None or int(shown[1]) != count:
        yield f"docs/diagnostics.md: the doctor finds {count} functions"


def main():
    checks = (completeness, arguments, equivalent_texts, translations, samples, excel_and_headings, links, examples, outputs,
              documents)
    wrong = [problem for check in checks for problem in check()]
    print("\n".join(wrong) or f"{len(pages.function_pages())} pages of functions and {len(pages.topics())} topics are right")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
