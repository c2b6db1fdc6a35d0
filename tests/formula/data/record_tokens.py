#!/usr/bin/python3
"""Writes the tokens in tokens.txt anew: what openpyxl's tokenizer (python3-openpyxl) sees in its formulas.

A formula stands on a line "=" + formula; its tokens follow, one a line: kind, tab, text. U+2424 stands
for a line feed. Run it in its own folder after adding a formula.
"""
from openpyxl.formula.tokenizer import Tokenizer

with open("tokens.txt", encoding="utf-8") as known:
    formulas = [line.rstrip("\n") for line in known if line.startswith("=")]
with open("tokens.txt", "w", encoding="utf-8", newline="\n") as out:
    for formula in formulas:
        out.write(f"{formula}\n")
        for token in Tokenizer(formula.replace("␤", "\n")).items:
            kind = f"{token.type}-{token.subtype}" if token.subtype else token.type
            text = token.value.replace("\n", "␤")
            out.write(f"{kind}\t{text}\n")
