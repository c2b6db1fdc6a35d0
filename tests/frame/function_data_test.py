#!/usr/bin/env python3
"""What the reader of functions.json accepts, and that it names place and field of what it refuses."""
import copy
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "src/frame"))
import function_data  # noqa: E402
import function_tables  # noqa: E402

GOOD = {
    "applications": {"companion": 5},
    "tables": {"main": {
        "defaults": {"applications": ["companion"], "category": "charts"},
        "functions": [
            {"name": "Mean", "export": "MeanOf", "types": "PR*3C%!", "argument_text": 7, "topic": 1,
             "argument_helps": [8, "\"9\"", "..."]},
            {"name": "Twenty", "export": "TwentyOf", "types": "J", "applications": ["always", "companion"],
             "hidden": True, "argument_helps": [""] * 20}]}},
    "entry_points": [{"what": "opening", "called_by": "Excel", "source": "a.cpp", "exports": ["xlAutoOpen"]}],
}

# Changed fields of the first function, and what the message has to say; None takes a field away.
BAD_FUNCTIONS = [
    ({"topik": 1}, "Mean: unknown field 'topik'"),
    ({"export": None}, "Mean: no 'export'"),
    ({"name": None}, "main, function 1: no 'name'"),
    ({"name": "M" * 256}, "M, name: "),
    ({"name": "Twenty"}, "Twenty: the name Twenty stands twice"),
    ({"export": "TwentyOf"}, "Twenty: the export TwentyOf stands twice"),
    ({"argument_text": 1714}, "Mean, argument_text: 1714 is not"),
    ({"help": "x" * 256}, "Mean, help: "),
    ({"argument_helps": [""] * 21}, "Mean, argument_helps: "),
    ({"argument_helps": [1, 2, 3, 4, 5]}, "Mean, argument_helps: 5 for 4 arguments"),
    ({"types": "PZ"}, "Mean, types: "),
    ({"category": "chart"}, "Mean, category: "),
    ({"applications": ["compagnon"]}, "Mean, applications: "),
    ({"hidden": 1}, "Mean, hidden: 1 is not true or false"),
    ({"topic": 40000}, "Mean, topic: 40000 is not"),
]
BAD_GROUPS = [
    ({"called_by": "me"}, "opening, called_by: "),
    ({"source": None}, "opening: no 'source'"),
    ({"exports": ["a", "a"]}, "opening: the entry point a stands twice"),
]


def message_of(change, place):
    document = copy.deepcopy(GOOD)
    part = place(document)
    part.update(change)
    for field in [field for field, value in change.items() if value is None]:
        del part[field]
    try:
        function_data.parse(document)
    except ValueError as mistakes:
        return str(mistakes)
    return ""


def main():
    wrong = []
    for cases, place in ((BAD_FUNCTIONS, lambda document: document["tables"]["main"]["functions"][0]),
                         (BAD_GROUPS, lambda document: document["entry_points"][0])):
        for change, expected in cases:
            message = message_of(change, place)
            if expected not in message or "\n" in message:
                wrong.append(f"{change}: '{message}', not '{expected}'")

    source = function_tables.make(function_data.parse(GOOD))
    for expected in ('.type_text = "PRRRC%!",', ".macro_type = 1,", ".help_topic_id = 1,", "WizardCategory::kCharts,",
                     r'.argument_helps = {{8, "\"9\"", TextReference::RepeatLast()}}},',
                     ".application_mask = 1u << 5 | kAlwaysRegistered,", ".macro_type = 0,", ".help_topic_id = -1,",
                     "MainTable() { return kMainTable; }"):
        if expected not in source:
            wrong.append(f"the table lacks {expected}")
    print("\n".join(wrong) or f"{len(BAD_FUNCTIONS) + len(BAD_GROUPS)} mistakes are named")
    return 1 if wrong else 0


sys.exit(main())
