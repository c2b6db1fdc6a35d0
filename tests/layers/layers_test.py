#!/usr/bin/env python3
"""The folders and their order as docs/architecture.md lists them, held against the tree and its #include lines.

Header-only code links whatever it includes, so the linker alone does not keep the order.
"""
import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
SOURCES = {".cpp", ".h"}
# Folders with folders of their own: each of these is a layer.
GROUPS = ("src", "host", "companions")
# The host knows the add-in through its exports: it shares these layers and the record of the C API with it.
SHARED_WITH_HOST = {"contracts", "src/platform", "src/formula", "src/analyses"}
RECORD = "src/excel/xloper12.h"
# A header that declares a variant with a text includes this, which says why.
VARIANT_COPIES = pathlib.Path("src/platform/variant_copies.h")
TEXT_VARIANT = re.compile(r"std::variant<[^;{}()]*\bstd::(u16)?string\b")


def listed_layers():
    """The folders of the code block under "## Layers", topmost first."""
    block = (ROOT / "docs/architecture.md").read_text(encoding="utf-8").split("## Layers", 1)[1].split("```")[1]
    lines = (line.split() for line in block.splitlines() if line and not line[0].isspace())
    return [words[0].rstrip("/") for words in lines]


def layer_of(path):
    parts = path.parts
    return "/".join(parts[:2]) if parts[0] in GROUPS and len(parts) > 2 else parts[0]


def tracked_files():
    names = subprocess.run(["git", "ls-files"], cwd=ROOT, capture_output=True, text=True, check=True).stdout
    return [path for path in map(pathlib.Path, names.splitlines()) if (ROOT / path).is_file()]


def includes_of(path):
    """The project's own files that a file includes."""
    for line in (ROOT / path).read_text(encoding="utf-8").splitlines():
        if not line.startswith('#include "'):
            continue
        name = line.split('"')[1]
        found = [base / name for base in (pathlib.Path("src"), pathlib.Path("."), path.parent)
                 if (ROOT / base / name).is_file()]
        yield found[0] if found else pathlib.Path(name)


def is_allowed(path, included, order):
    user, used = layer_of(path), layer_of(included)
    if user == used or used == "contracts":
        return True
    if used not in order:
        return False
    if user.startswith("host/") and used.startswith("src/"):
        return used in SHARED_WITH_HOST or included.as_posix() == RECORD
    if user == "calc":  # plays the host
        return used.startswith("host/") or used in SHARED_WITH_HOST or included.as_posix() == RECORD
    if user.startswith("companions/"):
        return used.startswith("src/") and order.index(used) > order.index("src/excel")
    return used.split("/")[0] == user.split("/")[0] and order.index(user) < order.index(used)


def cycle_in(graph):
    """Files that include one another in a cycle; empty when there is none."""
    state, path = {}, []

    def visit(node):
        state[node] = "open"
        path.append(node)
        for next_node in graph.get(node, ()):
            if state.get(next_node) == "open":
                return path[path.index(next_node):] + [next_node]
            if next_node not in state and (found := visit(next_node)):
                return found
        path.pop()
        state[node] = "done"
        return []

    return next((found for node in graph if node not in state and (found := visit(node))), [])


def main():
    order = listed_layers()
    files = tracked_files()
    faults = []
    in_tree = {layer_of(path) for path in files if len(path.parts) > 1} - set(GROUPS) - {".ci"}
    faults += [f"docs/architecture.md does not name the folder {name}" for name in sorted(in_tree - set(order))]
    faults += [f"docs/architecture.md names {name}, which is not there" for name in order if name not in in_tree]

    checked = [path for path in files
               if path.suffix in SOURCES and path.parts[0] in (*GROUPS, "calc", "contracts")]
    graph = {path: list(includes_of(path)) for path in checked}
    for path, included in graph.items():
        faults += [f"{path} includes {name}, which is not below it" for name in included
                   if not is_allowed(path, name, order)]
    faults += [f"{path} has a variant with a text and does not include {VARIANT_COPIES}" for path in graph
               if path.suffix == ".h" and path != VARIANT_COPIES and VARIANT_COPIES not in graph[path]
               and TEXT_VARIANT.search((ROOT / path).read_text(encoding="utf-8"))]
    if cycle := cycle_in(graph):
        faults.append("a cycle of includes: " + " -> ".join(map(str, cycle)))

    print("\n".join(faults) or f"{len(checked)} files include only what is below them")
    return 1 if faults or not checked else 0


if __name__ == "__main__":
    sys.exit(main())
