#!/usr/bin/env python3
"""command_line_test.py PROGRAM: holds the manual page and the completion of the command line against the program's
own help: the same commands, options and exit codes, and no others."""

import pathlib
import re
import subprocess
import sys

SOURCES = pathlib.Path(__file__).resolve().parents[2] / "packaging" / "linux"
PAGE = (SOURCES / "zavhost.1").read_text(encoding="utf-8")
failures = []


def check(what, found, expected):
    if found != expected:
        missing, more = sorted(map(str, expected - found)), sorted(map(str, found - expected))
        failures.append(f"{what}: missing {', '.join(missing) or 'nothing'}; too many {', '.join(more) or 'none'}")


def help_of(*command):
    return subprocess.run([sys.argv[1], *command, "--help"], capture_output=True, text=True, check=True).stdout


def options_of(text):
    """The options in a help text: for each its names, and whether it takes a value."""
    options = {}
    for names, rest in re.findall(r"^  (-[\w,-]+)(.*)", text, re.MULTILINE):
        value = re.match(r":?\s?[A-Z]", re.sub(r"^ (Excludes|Needs):.*", "", rest)) is not None
        options[tuple(sorted(names.split(",")))] = value
    return options


def section(title):
    return re.search(rf'^\.Sh {title}\n(.*?)(?=^\.Sh |\Z)', PAGE, re.MULTILINE | re.DOTALL)[1]


def page_options(line):
    """The same in a line of the page's macros."""
    return {f"-{name}": bool(value) for name, value in re.findall(r"\bFl (\S+)( Ar)?", line)}


def completions(*words):
    script = f'. "{SOURCES}/zavhost-completion.sh"; COMP_WORDS=("$@") COMP_CWORD=$(($# - 1)); _zavhost "$1"; ' \
             'printf "%s\\n" "${COMPREPLY[@]}"'
    run = subprocess.run(["bash", "-c", script, "bash", sys.argv[1], *words],
                         capture_output=True, text=True, check=True)
    if run.stderr:
        failures.append(f"completing {' '.join(words)}: {run.stderr}")
    return set(run.stdout.split())


top = help_of()
commands = set(re.findall(r"^  (\w+) ", top.split("Subcommands:")[1].split("\n\n")[0], re.MULTILINE))
options = {command: options_of(help_of(command)) for command in commands}
everywhere = ("--help", "-h")

synopses = dict(re.findall(r"^\.Nm\n\.Cm (\w+)\n(.*?)(?=^\.Nm\n|\Z)", section("SYNOPSIS"),
                           re.MULTILINE | re.DOTALL))
check("commands in the synopsis", set(synopses), commands)
check("commands described", set(re.findall(r"^\.It Cm (\w+)", section("DESCRIPTION"), re.MULTILINE)), commands)
check("commands completed", completions(""), commands)

described = {}
for item in re.findall(r"^\.It (.*)", section("OPTIONS"), re.MULTILINE):
    names = page_options(item)
    described[tuple(sorted(names))] = any(names.values())
expected = options_of(top)
for own in options.values():
    expected |= own
check("options described", set(described.items()), set(expected.items()))

for command, own in options.items():
    # A command's line has one name of each option.
    name_of = {name: names for names in own for name in names}
    synopsis = page_options(synopses.get(command, ""))
    check(f"options of {command} in the synopsis",
          {(name_of.get(name, name), value) for name, value in synopsis.items()},
          {(names, value) for names, value in own.items() if names != everywhere})
    check(f"options of {command} completed", completions(command, "-"), {max(names, key=len) for names in own})
    for names, value in own.items():
        if value:
            check(f"{command}: options instead of a value of {max(names)}",
                  {word for word in completions(command, max(names), "-") if word.startswith("-")}, set())
check("options without a command completed", completions("-"), {max(names, key=len) for names in options_of(top)})

codes = set(re.findall(r"(?:Exit codes:|;)\s+(\d+)\s", top))
check("exit codes", set(re.findall(r"^\.It (\d+)$", section("EXIT STATUS"), re.MULTILINE)), codes)

listing = subprocess.run([sys.argv[1], "functions", "--json"], capture_output=True, text=True, check=True).stdout
functions = set(re.findall(r'"name": ?"(ZavPair\w*)"', listing))
if not functions:
    failures.append("no functions are listed")
check("functions completed", completions("functions", "zavpair"), functions)
languages = re.search(r"--language TEXT:\{([\w,]+)\}", help_of("eval"))[1]
check("languages completed", completions("eval", "--language", ""), set(languages.split(",")))

for failure in failures:
    print("FAILED:", failure)
print(f"compared {len(commands)} commands, {len(expected)} options, {len(codes)} exit codes")
sys.exit(bool(failures))
