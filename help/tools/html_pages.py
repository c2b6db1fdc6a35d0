"""The help as HTML pages: one folder for each language. The compiled help file contains the same pages."""

import html
import pathlib
import re

from . import equivalents, formula, languages, markdown_pages, pages, registration

STYLE = pathlib.Path(__file__).parent / "help.css"

class Renderer:
    """The pages of one language."""

    def __init__(self, name):
        self.name = name
        self.language = languages.named(name)
        self.words = self.language.words
        english = languages.named("en").words
        self.headings = {english[key]: word for key, word in self.words.items()}
        self.functions = pages.pages_in(name)
        self.topics = pages.topics_in(name)

    def formula(self, text):
        return formula.to_html(self.language.decimals(text))

    def inline(self, text):
        kept = []

        def keep(markup):
            kept.append(markup)
            return f"\0{len(kept) - 1}\0"

        def code(match):
            name = match[1]
            markup = f"<code>{html.escape(name)}</code>"
            return keep(f'<a href="{name}.html">{markup}</a>' if name in self.functions else markup)

        text = re.sub(r"`([^`]+)`", code, text)
        text = re.sub(r"\$([^$]+)\$", lambda m: keep(f'<span class="math">{self.formula(m[1])}</span>'), text)
        text = html.escape(text, quote=False)
        text = re.sub(r"\[([^]]+)\]\(([a-z-]+)\)", r'<a href="\2.html">\1</a>', text)
        text = re.sub(r"\*\*([^*]+)\*\*", r"<b>\1</b>", text)
        text = re.sub(r"\*([^*]+)\*", r"<em>\1</em>", text)
        return re.sub(r"\0(\d+)\0", lambda m: kept[int(m[1])], text)

    def table(self, rows, kind=""):
        lines = [f'<table class="{kind}">' if kind else "<table>"]
        for i, row in enumerate(rows):
            tag = "th" if i == 0 else "td"
            lines.append("<tr>" + "".join(f"<{tag}>{self.inline(cell)}</{tag}>" for cell in row) + "</tr>")
        return "\n".join(lines + ["</table>"])

    def equivalent(self, program, text):
        if text == equivalents.NONE:
            return self.words["none"]
        if program == "Excel":
            text = re.sub("`([^`]*)`", lambda m: f"`{self.language.formula(m[1])}`", text)
        return self.inline(text)

    def example(self, example):
        cells = "".join("<tr>" + "".join(f"<td>{html.escape(self.language.value(cell))}</td>" for cell in row) + "</tr>"
                        for row in example.rows)
        return (f'<div class="example"><code>{html.escape(self.language.formula(example.shown_formula))}</code>'
                f'<table class="result">{cells}</table></div>')

    def block(self, block):
        if block.kind == "heading":
            return f"<h2>{html.escape(self.headings.get(block.content, block.content))}</h2>"
        if block.kind == "paragraph":
            return f"<p>{self.inline(block.content)}</p>"
        if block.kind == "list":
            return "<ul>\n" + "\n".join(f"<li>{self.inline(item)}</li>" for item in block.content) + "\n</ul>"
        if block.kind == "table":
            return self.table(block.content)
        if block.kind == "formula":
            return f'<p class="formula math">{self.formula(block.content)}</p>'
        return self.example(block.content)

    def document(self, title, body):
        home = f'<p class="home"><a href="index.html">{self.words["contents"]}</a></p>\n'
        if title == self.words["title"]:
            home = ""
        return (f'<!DOCTYPE html>\n<html lang="{self.name}">\n<head>\n<meta charset="utf-8">\n'
                '<meta http-equiv="X-UA-Compatible" content="IE=edge">\n'
                '<meta name="viewport" content="width=device-width, initial-scale=1">\n'
                f"<title>{html.escape(title)}</title>\n"
                f'<link rel="stylesheet" href="help.css">\n</head>\n<body>\n{home}{body}\n</body>\n</html>\n')

    def page(self, page):
        parts = [f"<h1>{html.escape(page.title)}</h1>"]
        if page.function:
            parts.append(f'<p class="syntax"><code>{html.escape(page.syntax(self.name))}</code></p>')
            parts.append(f'<p class="lead">{self.inline(page.summary(self.name))}</p>')
            if arguments := page.arguments(self.name):
                parts.append(f"<h2>{self.words['arguments']}</h2>")
                rows = "".join(f"<tr><th>{html.escape(name)}</th><td>{self.inline(text)}</td></tr>"
                               for name, text in arguments)
                parts.append(f'<table class="arguments">{rows}</table>')
        before, examples = markdown_pages.split_examples(page)
        parts.extend(map(self.block, before))
        if "data" in page.header:
            parts.append(f"<h2>{self.words['data']}</h2>")
            rows = [[self.language.sample(cell) for cell in row] for row in pages.data_rows(page.header["data"])]
            parts.append(self.table(markdown_pages.sheet(rows), "sheet"))
        parts.extend(map(self.block, examples))
        if page.function:
            rows = "".join(f"<tr><th>{program}</th><td>{self.equivalent(program, text)}</td></tr>"
                           for program, text in page.equivalents(self.name).items())
            parts.append(f"<h2>{self.words['equivalents']}</h2>\n<table class=\"arguments\">{rows}</table>")
            if note := equivalents.note(page.name, self.name):
                parts.append(f"<p>{self.inline(note)}</p>")
        links = [f'<a href="{name}.html">{self.topics[name].title if name in self.topics else name}</a>'
                 for name in page.see]
        if links:
            parts.append(f"<h2>{self.words['see']}</h2>\n<p>{', '.join(links)}</p>")
        if page.function:
            parts.append(f'<p class="category">{self.words["category"]}: '
                         f"{html.escape(registration.category_name(page.function, self.name))}</p>")
        return self.document(page.title, "\n".join(parts))

    def index(self):
        parts = [f"<h1>{self.words['title']}</h1>"]
        parts.append("<ul>" + "".join(f'<li><a href="{topic.name}.html">{html.escape(topic.title)}</a></li>'
                                      for topic in self.topics.values()) + "</ul>")
        for title, names in pages.contents():
            parts.append(f"<h2>{self.language.group(title)}</h2>\n<table class=\"arguments\">")
            for name in names:
                summary = markdown_pages.first_sentence(self.functions[name].summary(self.name))
                parts.append(f'<tr><th><a href="{name}.html">{name}</a></th><td>{self.inline(summary)}</td></tr>')
            parts.append("</table>")
        return self.document(self.words["title"], "\n".join(parts))

    def files(self):
        """The files by name."""
        made = {"index.html": self.index(), "help.css": STYLE.read_text(encoding="utf-8")}
        for page in [*self.functions.values(), *self.topics.values()]:
            made[f"{page.name}.html"] = self.page(page)
        return made


def write(files, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in files.items():
        (folder / name).write_text(text, encoding="utf-8", newline="\n")


def build(folder):
    """Writes folders en, de, ... in `folder`."""
    for name in languages.NAMES:
        write(Renderer(name).files(), folder / name)
