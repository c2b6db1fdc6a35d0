"""Formulas and values as a German Excel shows them."""

import re

_NAMES = {"TRUE": "WAHR", "FALSE": "FALSCH", "IF": "WENN", "AND": "UND", "SUM": "SUMME", "COUNT": "ANZAHL",
          "#VALUE!": "#WERT!", "#NUM!": "#ZAHL!", "#N/A": "#NV", "#REF!": "#BEZUG!",
          "(blank)": "(leer)", "(empty text)": "(leerer Text)"}
_TOKEN = re.compile(r'"[^"]*"|#[A-Z/0]+[!?]?|[A-Za-z_][A-Za-z_0-9.]*|\d+\.\d+|.')


def formula(text):
    """Arguments and rows of arrays are parted by semicolons, cells of an array by full stops."""
    parts = []
    depth = -1 if text.startswith("{=") else 0  # an array formula's braces are no array's
    for token in _TOKEN.findall(text):
        depth += (token == "{") - (token == "}")
        if token == ",":
            token = "." if depth > 0 else ";"
        elif re.fullmatch(r"\d+\.\d+", token):
            token = token.replace(".", ",")
        parts.append(_NAMES.get(token, token))
    return "".join(parts)


def value(text):
    if re.fullmatch(r"-?\d+\.\d+(E[-+]?\d+)?", text):
        return text.replace(".", ",")
    return _NAMES.get(text, text)
