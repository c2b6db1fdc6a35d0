#!/usr/bin/env python3
"""What every language's texts must keep to, whatever they say. Says all that is wrong."""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "help"))
from tools import registration  # noqa: E402

LONGEST = 253  # Excel's limit is 255, and an argument help gets two spaces
MESSAGES = dict(re.findall(r"kMessage(\w+) = (\d+);", (ROOT / "contracts/message_ids.h").read_text(encoding="utf-8")))
# Companions compare these.
AGREED = {"Title": "Zavrel Functions", "ArrayNotTwoDimensional": "VB array is not 2-dimensional",
          "MatrixNotSquare": "Matrix is ({1} x {2}), not square.",
          "MatrixNotSymmetric": "Matrix is symmetric at element ({1}, {2}) ({3} vs {4}).",
          "EigenInvalidValues": "Eigenvalues could not be calculated; matrix had invalid values.",
          "EigenNoConvergence": "Eigenvalues could not be calculated; convergence failed.",
          "DllLoadError": "Could not load {1}.",
          "FunctionNotFound": "The function {1} could not be found in {2}"}
WIZARD_TEXTS = range(1066, 1714)  # of arguments and functions; the table takes no higher ids
ENGLISH_ALONE = ("#VALUE!", "#N/A", "#NUM!", "#REF!", "TRUE", "FALSE")


def ids(texts):
    return {text for text in texts if isinstance(text, int)}


FUNCTIONS = registration.functions()
ARGUMENT_TEXTS = ids(function.argument_text for function in FUNCTIONS)
HELPS = ids(text for function in FUNCTIONS for text in (function.help, *function.argument_helps))
REQUIRED = ARGUMENT_TEXTS | HELPS | {*range(400, 412), *map(int, MESSAGES.values())}
ENGLISH = registration.messages("en")


def placeholders(text):
    """The numbers of the placeholders, sorted; a brace that is none stands for itself."""
    return sorted(number or brace for number, brace in re.findall(r"\{([1-9])\}|([{}])", text))


def in_one(language):
    texts = registration.messages(language)
    for number in sorted(REQUIRED ^ texts.keys()):
        yield f"text {number} is {'missing' if number in REQUIRED else 'needless'}"
    for number, text in texts.items():
        found = placeholders(text)
        if len(text.encode("utf-16-le")) > 2 * LONGEST or "  " in text or text != text.strip():
            yield f"text {number} is too long, or has blanks too many"
        if number in WIZARD_TEXTS and (number in HELPS) == (number in ARGUMENT_TEXTS):
            yield f"text {number} is a help and an argument text, or neither"
        stop = text.endswith(".") and (number in HELPS or not text.endswith(", ..."))
        if number in WIZARD_TEXTS and stop != (number in HELPS):
            yield f"text {number} ends otherwise than a text of its kind: {text}"
        if found != placeholders(ENGLISH.get(number, text)) or found != [str(i + 1) for i in range(len(found))]:
            yield f"text {number}: placeholders {found}"
        if found and number < 2400:
            yield f"text {number} is no message, but has placeholders"
        if language == "de" and any(word in text for word in ENGLISH_ALONE):
            yield f"text {number} has a name of English Excel: {text}"
    for function in FUNCTIONS:
        if function.argument_text in texts:
            names, english = (len(registration.argument_names(function, name)) for name in (language, "en"))
            if names != english or (ids(function.argument_helps) and not function.repeats
                                    and names != len(ids(function.argument_helps))):
                yield f"{function.name}: {names} arguments"


def main():
    wrong = [f"{language}.txt: {problem}" for language in registration.LANGUAGES for problem in in_one(language)]
    wrong += [f"en.txt: {name} is not as agreed" for name, text in AGREED.items() if ENGLISH[int(MESSAGES[name])] != text]
    for language, number in (("en", 9), ("de", 7)):
        if f"language_id = {number}\n" not in (registration.TEXTS / f"{language}.txt").read_text(encoding="utf-8"):
            wrong.append(f"{language}.txt: another language_id")
    if not registration.messages("de")[1123].startswith("W\u00f6lbung"):
        wrong.append("de.txt: umlauts read otherwise")
    print("\n".join(wrong) or f"{len(REQUIRED)} texts in {', '.join(registration.LANGUAGES)}")
    return 1 if wrong else 0


sys.exit(main())
