#!/usr/bin/env python3
"""Runs the fuzz targets one after the other and says what they found.

usage: fuzz.py BUILD SECONDS [--keep] [TARGET...]

Each target runs for SECONDS, starting from tests/fuzz/corpora/TARGET and what earlier runs left in BUILD/corpus. What
it finds lands in BUILD/findings, with the command that replays it; the exit code is 1 then. --keep makes the corpus in
the repository anew: the smallest inputs that reach what all inputs together reach.
"""

import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile

CORPORA = pathlib.Path(__file__).resolve().parent / "corpora"
PACKED = "reached.packed"
# A case that takes longer, or more memory, is a finding. A formula over eight million elements takes a minute or two.
LIMITS = ["-timeout=600", "-report_slow_units=600", "-rss_limit_mb=3072", "-max_len=4096"]


def unpack(packed):
    """The inputs of a packed file, each after its size in four bytes."""
    while packed:
        (size,) = struct.unpack_from("<I", packed)
        yield packed[4 : 4 + size]
        packed = packed[4 + size :]


def pack(inputs):
    return b"".join(struct.pack("<I", len(one)) + one for one in sorted(inputs, key=lambda one: (len(one), one)))


def put_corpus(target, folder):
    folder.mkdir(parents=True, exist_ok=True)
    for file in (CORPORA / target).iterdir():
        if file.name != PACKED:
            shutil.copy(file, folder)
            continue
        for number, one in enumerate(unpack(file.read_bytes())):
            (folder / f"kept-{number}").write_bytes(one)


def keep(program, folder, target):
    """Makes the packed corpus anew, without what the named inputs reach."""
    with tempfile.TemporaryDirectory() as reached:
        subprocess.run([program, "-merge=1", *LIMITS, reached, folder], check=True, stderr=subprocess.DEVNULL)
        inputs = [file.read_bytes() for file in pathlib.Path(reached).iterdir()]
    (CORPORA / target / PACKED).write_bytes(pack(inputs))


def figure(log, pattern):
    found = re.findall(pattern, log)
    return int(found[-1]) if found else 0


def fuzz(build, target, seconds):
    """Runs a target; the figures of its run, and the files with what it found."""
    program = build / "tests" / f"{target}_fuzz"
    corpus, findings = build / "corpus" / target, build / "findings" / target
    put_corpus(target, corpus)
    findings.mkdir(parents=True, exist_ok=True)
    before = set(findings.iterdir())
    run = subprocess.run(
        [program, corpus, f"-max_total_time={seconds}", *LIMITS, "-print_final_stats=1", f"-artifact_prefix={findings}/"],
        stderr=subprocess.PIPE, text=True, errors="replace")
    (build / f"{target}.log").write_text(run.stderr)
    found = sorted(set(findings.iterdir()) - before)
    if run.returncode != 0 and not found:
        print(run.stderr[-3000:], file=sys.stderr)
        raise SystemExit(f"{target} failed without an input: see {build / (target + '.log')}")
    executions = figure(run.stderr, r"stat::number_of_executed_units:\s*(\d+)")
    return executions, figure(run.stderr, r"cov: (\d+)"), figure(run.stderr, r"ft: (\d+)"), found


def main(build, seconds, *arguments):
    build = pathlib.Path(build).resolve()
    targets = [name for name in arguments if name != "--keep"] or sorted(folder.name for folder in CORPORA.iterdir())
    all_found = []
    print(f"{'target':<24}{'executions':>12}{'per second':>12}{'edges':>8}{'features':>10}  found", flush=True)
    for target in targets:
        executions, edges, features, found = fuzz(build, target, int(seconds))
        all_found += [(target, file) for file in found]
        rate = executions // max(int(seconds), 1)
        print(f"{target:<24}{executions:>12,}{rate:>12,}{edges:>8,}{features:>10,}  {len(found) or 'nothing'}", flush=True)
        if "--keep" in arguments and not found:
            keep(build / "tests" / f"{target}_fuzz", build / "corpus" / target, target)
    for target, file in all_found:
        print(f"\n{target}: see {build.name}/{target}.log; replay with\n  {build / 'tests' / (target + '_fuzz')} {file}\n"
              f"Mended, the input stays in tests/fuzz/corpora/{target}, under a name that says what was wrong.")
    return 1 if all_found else 0


if __name__ == "__main__":
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    sys.exit(main(*sys.argv[1:]))
