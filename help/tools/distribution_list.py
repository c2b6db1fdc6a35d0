"""The topic that lists the distributions of the ZavDist functions, made from what the distributions say of themselves
(`zavhost distributions --json`), in each language. Names, formulas and sources are the same in all of them."""

import re

from . import registration

NAME = "distribution-list"

_HEADS = {
    "en": """title: List of distributions
see: ZavDistNames, ZavDistProperty, ZavDistFit

These are the distributions that the ZavDist functions know by name. Letter case, blanks and hyphens do not matter. Parameters are given in their order; one with a value in brackets may be left out and has this value then.

In the formulas, f is the density or the probability of x, F the cumulative probability.
""",
    "de": """title: Liste der Verteilungen

Diese Verteilungen kennen die ZavDist-Funktionen mit ihrem englischen Namen. Groß- und Kleinschreibung, Leerzeichen und Bindestriche sind gleichgültig. Die Parameter stehen in ihrer Reihenfolge; einer mit einem Wert in Klammern darf fehlen und hat dann diesen Wert.

In den Formeln ist f die Dichte oder die Wahrscheinlichkeit von x, F die Verteilungsfunktion.
""",
}
_WORDS = {"en": {"also": "also", "parameters": "parameters", "support": "support", "formula": "formula",
                 "source": "source", "discrete": "discrete, on", "continuous": "continuous, on"},
          "de": {"also": "auch", "parameters": "Parameter", "support": "Träger", "formula": "Formel",
                 "source": "Quelle", "discrete": "diskret:", "continuous": "stetig:"}}
# Of domains and supports, the longer phrases first. What is not here stays English.
_PHRASES = {
    "en": [("must be ", ""), (" by default", "")],
    "de": [("must be a whole number at least ", "ganze Zahl ab "), ("must be a whole number", "ganze Zahl"),
           ("must be a number", "Zahl"), ("must be at least ", "ab "), ("must be at most ", "bis "),
           ("must be greater than ", "größer als "), ("must be less than ", "kleiner als "), (" and at most ", " und höchstens "),
           (" and less than ", " und kleiner als "), ("whole numbers from ", "ganze Zahlen von "),
           ("whole numbers", "ganze Zahlen"), ("numbers from ", "Zahlen von "), ("all numbers", "alle Zahlen"),
           ("numbers where ", "Zahlen, bei denen "), (" is not negative", " nicht negativ ist"),
           ("; from ", "; von "), ("; to ", "; bis "), (" if the shape is negative", ", wenn shape negativ ist"),
           (" if log scale is negative", ", wenn log scale negativ ist"), (" to ", " bis "), (" and ", " und ")],
}


def _translated(text, language):
    for phrase, replacement in _PHRASES[language]:
        text = text.replace(phrase, replacement)
    return text


def _number(value):
    return re.sub(r"\.0$", "", repr(value))


def _parameter(parameter, language):
    default = f" ({_number(parameter['default'])})" if "default" in parameter else ""
    return f"`{parameter['name']}`{default} {_translated(parameter['domain'], language)}"


def _section(described, language):
    words = _WORDS[language]
    lines = [f"## {described['name']}", ""]
    if described["other_names"]:
        lines.append(f"- {words['also']}: {described['other_names']}")
    lines += [f"- {words['parameters']}: " + "; ".join(_parameter(one, language) for one in described["parameters"]),
              f"- {words[described['kind']]} {_translated(described['support'], language)}",
              f"- {words['formula']}: `{described['formula']}`",
              f"- {words['source']}: {described['source']}"]
    if language != "en":
        lines = lines[2:]  # the headings are the English page's
    return "\n".join(lines) + "\n"


def file(language):
    return registration.ROOT / "help" / language / "topics" / f"{NAME}.md"


def make(descriptions, language):
    """The source of the topic."""
    return "\n".join([_HEADS[language], *(_section(one, language) for one in descriptions)])
