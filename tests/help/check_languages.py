#!/usr/bin/env python3
"""check_languages.py PROGRAM: translates every formula of the help with `PROGRAM formula`: into German as the help
writes it, and back from every language and reference style to what it was."""

import pathlib
import re
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "help"))
from tools import equivalents, languages, pages  # noqa: E402

# Some variables in the equivalents are translated by the help, and df1 is a cell, which Excel writes in capitals.
VARIABLES = {name for name in languages.named("de").excel["names"] if name.islower()} | {"df"}


def run(formulas, *options):
    return subprocess.run([sys.argv[1], "formula", "--cell", "E7", *options, "--", *formulas],
                          capture_output=True, text=True, encoding="utf-8")


def translated(formulas, *options):
    done = run(formulas, *options)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(options)}: {done.stderr}")
    return done.stdout.splitlines()


english = [example.formula for page in pages.function_pages().values() for example in page.examples]
english += [code for name in equivalents.functions()
            for code in equivalents.codes(equivalents.equivalent(name, "Excel"))
            if not VARIABLES & set(re.findall(r"[a-z]+", code))]
german = [languages.named("de").formula(formula) for formula in english]
r1c1 = translated(english, "--to", "en", "--to-style", "r1c1")
german_r1c1 = translated(r1c1, "--to", "de", "--style", "r1c1")
wrong = [f"{formula} becomes {found}, not {expected}" for formulas, expectations, options in (
    (english, german, ("--to", "de")),
    (german, english, ("--from", "de", "--to", "en")),
    (german_r1c1, r1c1, ("--from", "de", "--to", "en", "--style", "r1c1")),
    (german_r1c1, english, ("--from", "de", "--to", "en", "--style", "r1c1", "--to-style", "a1")),
    (german, german_r1c1, ("--from", "de", "--to", "de", "--to-style", "r1c1")),
) for formula, found, expected in zip(formulas, translated(formulas, *options), expectations, strict=True)
    if found != expected]
for what, formula, options in (("character 6 of =1+A1)", "=1+A1)", ("--to", "de")),
                               ("cannot be read", "=1.5", ("--from", "de", "--to", "en")),
                               ("ZavrelFormulas.fr.txt", "=1", ("--to", "fr")),
                               ("leaves the sheet", "=R[-7]C", ("--to", "en", "--style", "r1c1", "--to-style", "a1"))):
    refused = run([formula], *options)
    if refused.returncode != 1 or what not in refused.stderr or refused.stdout:
        wrong.append(f"{formula}: {refused.returncode}, {refused.stderr}{refused.stdout}")
print("\n".join(wrong) or f"{len(english)} formulas are the same after every way")
sys.exit(bool(wrong))
