#!/usr/bin/python3
"""What is left on the disk when it is full, and when the program is killed while it writes.

    writing_test.py ZAVHOST SCRATCH_FOLDER [KILLS]

A limit for the size of files stands for the full disk: each write in turn is the one that fails. Processes are killed
at random moments, and as soon as there is something on the disk. Either way the target is what it was or what it
should become, and the next run leaves nothing else beside it. A target that is protected stays as it is.
"""
import os
import pathlib
import random
import re
import resource
import shutil
import subprocess
import sys
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
ZAVHOST, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:3])
KILLS = int(sys.argv[3]) if len(sys.argv) > 3 else 60
BOOK = ROOT / "examples/iris.xlsx"
DATA = ROOT / "examples/iris.csv"
TEMPORARY = re.compile(r"\.[0-9a-f]{16}\.tmp$")
problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


class Case:
    """A way to write a workbook: the arguments, where it goes, and what is there before."""

    def __init__(self, name, arguments, target, before):
        self.folder = scratch / name
        self.target = self.folder / target
        self.before = before
        self.arguments = [argument.format(folder=self.folder, target=self.target) for argument in arguments]
        self.prepare()
        done = self.run()
        check(done.returncode == 0, f"{name}: {done.stderr}")
        self.after = self.state()

    def prepare(self):
        """The folder as before. What else is in it, a killed program left behind."""
        self.folder.mkdir(parents=True, exist_ok=True)
        self.target.parent.mkdir(exist_ok=True)
        if self.before is None:
            self.target.unlink(missing_ok=True)
        else:
            self.target.write_bytes(self.before)

    def run(self, file_size=None):
        def limit():
            resource.setrlimit(resource.RLIMIT_FSIZE, (file_size, file_size))
        return subprocess.run([ZAVHOST, *self.arguments], capture_output=True, text=True,
                              preexec_fn=limit if file_size is not None else None)

    def others(self):
        return [file for file in self.target.parent.iterdir() if file != self.target]

    def state(self):
        """The content of the target, of a report without the time in its properties."""
        if not self.target.exists():
            return None
        content = self.target.read_bytes()
        if not content.startswith(b"PK") or self.folder.name != "report":
            return content
        with zipfile.ZipFile(self.target) as book:
            return {part: book.read(part) for part in book.namelist() if part != "docProps/core.xml"}


def cases():
    old = b"an older output"
    return (Case("new", ["run", str(BOOK), "-o", "{target}"], "out.xlsx", None),
            Case("old", ["run", str(BOOK), "-o", "{target}"], "out.xlsx", old),
            Case("in-place", ["run", "--in-place", "{target}"], "book.xlsx", BOOK.read_bytes()),
            Case("batch", ["run", str(BOOK), "--output-folder", "{folder}/out"], "out/iris.xlsx", old),
            Case("report", ["report", "correlations", str(DATA), "-o", "{target}"], "out.xlsx", old))


def fill_disk(case):
    size = case.target.stat().st_size
    for limit in sorted({0, 1, size - 1, *range(0, size, max(1, size // 12))}):
        case.prepare()
        done = case.run(limit)
        where = f"{case.folder.name}, {limit} of {size} bytes: "
        check(done.returncode == 1, f"{where}code {done.returncode}")
        said = done.stdout if case.folder.name == "batch" else done.stderr  # of a batch, a line for the workbook
        check("cannot be" in said or "iris.xlsx: failed: " in said, f"{where}{said!r}")
        # The library that writes reports adds lines of its own.
        lines = [line for line in done.stderr.splitlines() if not line.startswith("[ERROR]")]
        check(len(lines) <= 1, f"{where}several lines: {done.stderr!r}")
        check(case.state() == case.before, f"{where}the target has changed")
        check(not case.others(), f"{where}left: {case.others()}")
    case.prepare()
    check(case.run(max(size, 1 << 20)).returncode == 0 and case.state() == case.after, f"{case.folder.name}: no success")


def fill_output():
    with open("/dev/full", "wb") as full:
        for arguments in ["run", BOOK], ["run", "--json", BOOK], ["eval", "=1"], ["functions"], ["check", BOOK]:
            done = subprocess.run([ZAVHOST, *arguments], stdout=full, stderr=subprocess.PIPE, text=True)
            check(done.returncode == 1 and "is the disk full?" in done.stderr, f"{arguments} to a full disk: {done}")
    done = subprocess.run([ZAVHOST, "run", BOOK, "-o", "/dev/full"], capture_output=True, text=True)
    check(done.returncode == 1 and "not a regular file" in done.stderr, f"/dev/full as target: {done}")


def keep_protected():
    """What its owner has protected against writing, a program of the owner's does not replace."""
    folder = scratch / "protected"
    folder.mkdir()
    book = folder / "book.xlsx"
    shutil.copy(BOOK, book)
    book.chmod(0o444)
    nobody = 65534
    as_owner = {}
    if os.geteuid() == 0:  # whom nothing is protected against
        for path in folder, book:
            os.chown(path, nobody, nobody)
        as_owner = {"user": nobody, "group": nobody, "extra_groups": []}
    for arguments in (["run", "--in-place", book], ["run", BOOK, "-o", book],
                      ["report", "correlations", DATA, "-o", book]):
        done = subprocess.run([ZAVHOST, *arguments], capture_output=True, text=True, **as_owner)
        check(done.returncode == 1 and done.stderr == f"zavhost: {book}: the file is write-protected\n",
              f"protected, {arguments}: {done}")
        check(book.read_bytes() == BOOK.read_bytes() and list(folder.iterdir()) == [book], f"protected, {arguments}: changed")


def kill(case, number):
    """Kills at a random moment, or when a file appears. Returns whether it was killed with something on the disk."""
    case.prepare()
    started = time.monotonic()
    process = subprocess.Popen([ZAVHOST, *case.arguments], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    if number % 2:
        time.sleep(random.uniform(0, case.seconds))
    else:
        while process.poll() is None and not case.others() and time.monotonic() - started < 10:
            pass
    process.kill()
    process.wait()
    if case.folder.name == "batch":
        time.sleep(0.05)  # its processes end with it
    check(case.state() in (case.before, case.after), f"{case.folder.name}: the target is neither the old nor the new")
    others = case.others()
    check(all(TEMPORARY.search(file.name) for file in others), f"{case.folder.name}: left {others}")
    return bool(others)


def kill_many(all_cases):
    random.seed(5)
    for case in all_cases:
        case.prepare()
        started = time.monotonic()
        case.run()
        case.seconds = time.monotonic() - started
    hits = 0
    for number in range(KILLS):
        case = all_cases[number // 2 % len(all_cases)]
        hits += kill(case, number)
        if number % 10 >= 8 or number >= KILLS - 10:
            case.prepare()
            check(case.run().returncode == 0 and case.state() == case.after, f"{case.folder.name}: the next run fails")
            check(not case.others(), f"{case.folder.name}: the next run leaves {case.others()}")
    print(f"{KILLS} processes killed, {hits} of them with an unfinished file")
    check(hits > KILLS // 20, f"only {hits} of {KILLS} processes were killed while they wrote")


def main():
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    all_cases = cases()
    for case in all_cases:
        fill_disk(case)
    fill_output()
    keep_protected()
    kill_many(all_cases)
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
