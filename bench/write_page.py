#!/usr/bin/env python3
"""Writes the tables of docs/benchmarks.md from what one run of the benchmarks printed.

    write_page.py PAGE NATIVE WINDOWS HOST PEERS

The last four are the outputs of `bench/run native`, `bench/run windows`, `bench/host.py` and `bench/peers.py`. A table
stands between two comments in the page, which name it; all else of the page is written by hand.
"""
import pathlib
import re
import subprocess
import sys

RATIO = re.compile(r"^ *([\d.]+)( us)? +(?:of +([\d.]+)(?: OVER)? +)?(\S.*)$")
TIME = re.compile(r"^(\w+) +([\d.]+) us")
# The work of peers.py, in words, and the benchmarks whose times make up ours.
TASKS = {
    "percentile": ("a percentile of 1,000,000 numbers", ("FirstPercentile", "-HostReading")),
    "categories": ("categories of 1,000,000 texts, ten thousand different", ("FirstCategories", "-HostReadingOfLabels")),
    "median": ("the median difference of 1,000,000 pairs", ("FirstPairMedian", "-HostReading", "-HostReading")),
    "correlation": ("correlation, 27 x 100,000", ("Correlation",)),
    "gaps": ("the same with 1 % gaps, pair by pair", ("CorrelationWithGaps",)),
    "ranks": ("rank correlation, 27 x 100,000", ("RankCorrelation",)),
}


def ratios_of(text):
    """By meaning, which is unique: the ratio, " us" if it is a time, the limit or an empty text."""
    table = text.rpartition("of what to which floor\n")[2]
    found = (RATIO.match(line) for line in table.splitlines())
    return {match[4]: (float(match[1]), match[2] or "", match[3] or "") for match in found if match}


def times_of(text):
    return {match[1]: float(match[2]) for match in map(TIME.match, text.splitlines()) if match}


def short(number):
    """Two digits, or all before the point."""
    return f"{number:.0f}" if number >= 10 else f"{number:.1f}" if number >= 1 else f"{number:.2f}"


def ratio_lines(native, windows):
    here, there = ratios_of(native), ratios_of(windows)
    if not here or not there:
        sys.exit("write_page.py: a run has no ratios")
    yield "| what | floor | at most | native | under Wine |"
    yield "|---|---|---|---|---|"
    for meaning, (_, unit, limit) in here.items():
        floor, _, what = meaning.rpartition(": ")
        cells = [what, "" if unit else floor, limit.removesuffix(".00") + (unit if limit else "")]
        for run in (here, there):
            ratio = run[meaning][0] if meaning in run else None
            is_long = bool(unit) and ratio is not None and ratio >= 1000
            text = "" if ratio is None else short(ratio / 1000) + " ms" if is_long else short(ratio) + unit
            cells.append(f"**{text}**" if ratio and limit and ratio > float(limit) else text)
        yield f"| {' | '.join(cells)} |"


def peer_lines(native, peers):
    times = times_of(native)
    rows = [line.split("\t") for line in peers.splitlines()]
    programs = list(dict.fromkeys(program for _, program, _ in rows))
    found = {(task, program): float(milliseconds) for task, program, milliseconds in rows}
    yield "| milliseconds for | here | " + " | ".join(programs) + " |"
    yield "|---|---|" + "---|" * len(programs)
    for task, (words, terms) in TASKS.items():
        own = sum(-times[term[1:]] if term[0] == "-" else times[term] for term in terms) / 1e3
        cells = [short(found[task, program]) if (task, program) in found else "" for program in programs]
        yield f"| {words} | {short(own)} | {' | '.join(cells)} |"


def machine_lines(native):
    fields = dict(re.findall(r"^([^:\n]+): +(.*)$", subprocess.run(
        ["lscpu"], env={"LC_ALL": "C"}, stdout=subprocess.PIPE, text=True, check=True).stdout, re.MULTILINE))
    compiler = subprocess.run(["g++", "-dumpfullversion"], stdout=subprocess.PIPE, text=True, check=True).stdout.strip()
    widest = next((name for flag, name in (("avx512f", "AVX-512"), ("avx2", "AVX2"))
                   if flag in fields.get("Flags", "")), "SSE")
    scan = times_of(native)["Scan"] / 1e3
    yield (f"{fields['CPU(s)']} processors, {fields['Model name']} with {widest}, third-level cache "
           f"{fields.get('L3 cache', 'unknown').partition(' (')[0]}; GCC {compiler}. S was {scan:.2f} ms.")


def host_lines(host):
    return (f"- {line}" for line in host.splitlines() if line and not line.startswith("=="))


def replaced(page, name, lines):
    begin, end = f"<!-- {name}: written by ./dev bench --write -->\n", f"<!-- end of {name} -->"
    before, found, rest = page.partition(begin)
    if not found or end not in rest:
        sys.exit(f"write_page.py: the page has no table '{name}'")
    return before + begin + "\n" + "\n".join(lines) + "\n\n" + end + rest.partition(end)[2]


def main():
    page = pathlib.Path(sys.argv[1])
    native, windows, host, peers = (pathlib.Path(name).read_text(encoding="utf-8") for name in sys.argv[2:6])
    text = page.read_text(encoding="utf-8")
    for name, lines in (("machine", machine_lines(native)), ("ratios", ratio_lines(native, windows)),
                        ("peers", peer_lines(native, peers)), ("program", host_lines(host))):
        text = replaced(text, name, lines)
    page.write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
