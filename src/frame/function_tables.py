#!/usr/bin/env python3
"""function_tables.py FUNCTIONS.json OUTPUT.cpp: writes the tables of an add-in's functions as C++.

The table "main" becomes MainTable(), and so on; a header of the add-in declares them.
"""
import json
import pathlib
import sys

import function_data


def _literal(text):
    return json.dumps(text, ensure_ascii=False)


def _text(text):
    return _literal(text) if isinstance(text, str) else str(text)


def _camel(words):
    return "".join(word.capitalize() for word in words.split())


def _row(function):
    mask = [f"1u << {application}" for application in function.applications]
    if function.always:
        mask.append("kAlwaysRegistered")
    helps = [_text(text) for text in function.argument_helps]
    if function.repeats:
        helps.append("TextReference::RepeatLast()")
    return f"""    {{.application_mask = {' | '.join(mask)},
     .export_name = {_literal(function.export)},
     .type_text = {_literal(function.types)},
     .visible_name = {_literal(function.name)},
     .argument_text = {_text(function.argument_text)},
     .macro_type = {0 if function.hidden else 1},
     .help_topic_id = {-1 if function.topic is None else function.topic},
     .category = WizardCategory::k{_camel(function.category)},
     .function_help = {_text(function.help)},
     .argument_helps = {{{{{', '.join(helps)}}}}}}},
"""


def make(data):
    source = """// Made by function_tables.py; change the add-in's functions.json instead.
#include <span>

#include "frame/registration_row.h"

namespace zavrel {
"""
    for table in dict.fromkeys(function.table for function in data.functions):
        rows = "".join(_row(function) for function in data.functions if function.table == table)
        name = _camel(table) + "Table"
        source += f"""
static constinit const RegistrationRow k{name}[] = {{
{rows}}};
std::span<const RegistrationRow> {name}() {{ return k{name}; }}
"""
    return source + "\n}  // namespace zavrel\n"


def main():
    data, output = map(pathlib.Path, sys.argv[1:])
    output.write_text(make(function_data.read(data)), encoding="utf-8")


if __name__ == "__main__":
    main()
