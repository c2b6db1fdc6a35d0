#!/usr/bin/python3
"""Builds the help from its sources: the pages in help, the registration table and the message texts.

    build_help.py markdown [--check]     docs/functions; --check only reports files that are out of date
    build_help.py html FOLDER            HTML pages, in a folder for each language
    build_help.py compiled FOLDER        compiled help; needs chmcmd, 7z and unshare
    build_help.py intellisense FOLDER    help while typing
    build_help.py distributions ZAVHOST [--check]    the source of the list of distributions, from the program

The English compiled help and help while typing go to FOLDER, those of other languages to FOLDER/help/LANGUAGE.
"""

import argparse
import json
import pathlib
import subprocess
import sys

from tools import compiled_help, distribution_list, html_pages, intellisense, languages, markdown_pages, registration


def markdown(check):
    files = markdown_pages.make()
    folder = markdown_pages.FOLDER
    current = {file.name: file.read_text(encoding="utf-8") for file in folder.glob("*.md")}
    if check:
        stale = sorted(name for name in {*files, *current} if files.get(name) != current.get(name))
        if stale:
            sys.exit(f"docs/functions is out of date (run ./dev docs): {', '.join(stale)}")
        return
    html_pages.write(files, folder)
    for name in current.keys() - files.keys():
        (folder / name).unlink()


def place(folder, name):
    """The folder for a language's version of a file that is English in the add-in's folder."""
    return folder if name == "en" else folder / "help" / name


def write_intellisense(folder):
    for name in languages.NAMES:
        files = {intellisense.file_name(add_in): intellisense.make(add_in, name) for add_in in registration.ADD_INS}
        html_pages.write(files, place(folder, name))


def distributions(program, check):
    run = subprocess.run([program, "distributions", "--json"], check=True, capture_output=True, text=True,
                         encoding="utf-8")
    for language in registration.LANGUAGES:
        file, text = distribution_list.file(language), distribution_list.make(json.loads(run.stdout), language)
        if not check:
            file.write_text(text, encoding="utf-8")
        elif not file.exists() or file.read_text(encoding="utf-8") != text:
            sys.exit(f"{file} is out of date (run ./dev docs)")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("what", choices=["markdown", "html", "compiled", "intellisense", "distributions"])
    parser.add_argument("folder", nargs="?", type=pathlib.Path)
    parser.add_argument("--check", action="store_true")
    arguments = parser.parse_args()
    if arguments.what == "markdown":
        return markdown(arguments.check)
    if arguments.folder is None:
        parser.error("a folder is missing")
    if arguments.what == "html":
        html_pages.build(arguments.folder)
    elif arguments.what == "distributions":
        distributions(arguments.folder, arguments.check)
    elif arguments.what == "compiled":
        for name in languages.NAMES:
            compiled_help.build(name, place(arguments.folder, name))
    else:
        write_intellisense(arguments.folder)


if __name__ == "__main__":
    main()
