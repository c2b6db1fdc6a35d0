"""Converts formulas in a small part of TeX to HTML for old viewers: nested spans with styles from help.css."""

import html
import re

_SYMBOLS = {
    "lambda": "λ", "mu": "μ", "nu": "ν", "pi": "π", "sigma": "σ", "Phi": "Φ", "Gamma": "Γ", "cdot": "·", "le": "≤",
    "ge": "≥", "dots": "…", "lvert": "|", "rvert": "|", "top": "⊤", "quad": "\u2003", "qquad": "\u2003\u2003",
    ",": "\u2009", ";": "\u2005", "{": "{", "}": "}",
}
_WORDS = {"max", "min", "ln", "log", "exp"}
_BIG = {"sum": "∑", "prod": "∏"}
_RELATIONS = set("=<>≤≥+−·")
_TOKEN = re.compile(r"\\text\{[^}]*\}|\\[A-Za-z]+|\\.|\s+|[\d.]+|.")


def _span(kind, content):
    return f'<span class="{kind}">{content}</span>'


class _Reader:
    def __init__(self, text):
        self.tokens = [token for token in _TOKEN.findall(text) if not token.isspace()]
        self.at = 0

    def peek(self):
        return self.tokens[self.at] if self.at < len(self.tokens) else None

    def next(self):
        token = self.peek()
        self.at += 1
        return token

    def group(self):
        """The next argument: a group in braces, or a single symbol."""
        if self.peek() == "{":
            self.next()
            return self.sequence("}")
        return self.symbol(self.next())

    def sequence(self, end):
        parts = []
        while (token := self.next()) != end:
            if token is None:
                raise SystemExit(f"formula without its {end}: {' '.join(self.tokens)}")
            parts.append(self.with_scripts(token))
        return "".join(parts)

    def with_scripts(self, token):
        name = token[1:] if token.startswith("\\") else ""
        scripts = {}
        base = self.symbol(token) if name not in _BIG else None
        while self.peek() in ("^", "_"):
            place = self.next()
            scripts[place] = self.group()
        if base is None:
            return _span("big", _span("limit", scripts.get("^", "&nbsp;")) + _span("op", _BIG[name]) +
                         _span("limit", scripts.get("_", "&nbsp;")))
        if len(scripts) == 2:  # one above the other
            return base + _span("scripts", f"<sup>{scripts['^']}</sup><sub>{scripts['_']}</sub>")
        return base + "".join(f"<{tag}>{scripts[place]}</{tag}>"
                              for place, tag in (("_", "sub"), ("^", "sup")) if place in scripts)

    def symbol(self, token):
        if token == "{":
            return self.sequence("}")
        if token is None or not token.startswith("\\"):
            return self.character(token)
        name = token[1:]
        if name.startswith("text{"):
            return _span("word", html.escape(name[5:-1]))
        if name == "frac":
            above, below = self.group(), self.group()
            return _span("frac", _span("above", above) + _span("below", below))
        if name == "sqrt":
            return "√" + _span("root", self.group())
        if name == "bar":
            return _span("bar", self.group())
        if name in ("left", "right"):
            bracket = self.next()
            return _span("bracket", html.escape(_SYMBOLS.get(bracket.lstrip("\\"), bracket)))
        if name in _WORDS:
            return _span("word", name) + "\u2009"
        if name not in _SYMBOLS:
            raise SystemExit(f"unknown in formulas: {token}")
        return self.character(_SYMBOLS[name])

    @staticmethod
    def character(token):
        token = {"-": "−", "~": " "}.get(token, token)
        escaped = html.escape(token)
        if token in _RELATIONS:
            return f" {escaped} "
        return f"<i>{escaped}</i>" if token.isalpha() and token not in "ΦΓ" else escaped


def to_html(text):
    reader = _Reader(text + "\0")
    spaced = re.sub(r" +", " ", reader.sequence("\0")).strip()
    return re.sub(r"(<su[bp]>|\()( −) ", lambda m: m[1] + m[2].strip(), spaced)  # a sign, not an operation
