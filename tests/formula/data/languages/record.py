#!/usr/bin/env python3
"""record.py FOLDER: records LibreOffice Calc's German names of functions in libreoffice.tsv.

FOLDER is resource/de/LC_MESSAGES of Debian's package libreoffice-l10n-de, installed or unpacked. Run it by hand. Calc
takes the names that users see from these catalogues: for.mo has its own functions, sca.mo those of its add-ins.
"""
import gettext
import pathlib
import sys

names = {}
for catalogue in ("for", "sca"):
    with open(pathlib.Path(sys.argv[1]) / f"{catalogue}.mo", "rb") as file:
        texts = gettext.GNUTranslations(file)._catalog
    for key, german in texts.items():
        context, _, english = key.partition("\x04") if isinstance(key, str) else ("", "", "")
        if "FUNCTION_NAMES" in context or "FUNCNAME" in context:
            names.setdefault(english, german)
lines = [f"{english}\t{german}\n" for english, german in sorted(names.items())]
(pathlib.Path(__file__).parent / "libreoffice.tsv").write_text("".join(lines), encoding="utf-8")
