#!/usr/bin/python3
"""Checks that the help knows the functions as the add-in registers them, in every language.

    check_registration.py WINE_RUN ZAVHOST

Functions of the extension count where the add-in registers them.
"""

import json
import pathlib
import subprocess
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "help"))
from tools import registration  # noqa: E402


def registered(wine_run, zavhost, language):
    run = subprocess.run([wine_run, zavhost, "functions", "--json", "--language", language],
                         check=True, capture_output=True, text=True, encoding="utf-8")
    return {entry["name"]: entry for entry in json.loads(run.stdout)}


def as_registered(function, language):
    helps = [registration.resolve(text, language) for text in function.argument_helps]
    return {"arguments": registration.resolve(function.argument_text, language),
            "category": registration.category_name(function, language),
            "help": registration.resolve(function.help, language), "argument_helps": helps,
            "hidden": function.hidden, "export": function.export}


def main():
    wine_run, zavhost = sys.argv[1:]
    wrong = []
    for language in registration.LANGUAGES:
        found = registered(wine_run, zavhost, language)
        for function in registration.functions():
            entry = found.pop(function.name, None)
            if entry is None:
                if function.table != "extension":
                    wrong.append(f"{function.name} ({language}): not registered")
                continue
            for key, expected in as_registered(function, language).items():
                value = entry[key]
                if key == "argument_helps":
                    value = [text for text in value if text][:len(expected)]
                    expected = [text for text in expected if text]
                if value != expected:
                    wrong.append(f"{function.name} ({language}), {key}: {value}, not {expected}")
        wrong += [f"{name} ({language}): unknown to the help" for name in found]
    print("\n".join(wrong) or f"the help knows the functions in {', '.join(registration.LANGUAGES)}")
    sys.exit(1 if wrong else 0)


if __name__ == "__main__":
    main()
