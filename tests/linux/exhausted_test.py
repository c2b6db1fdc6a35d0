#!/usr/bin/python3
"""What zavhost does without memory: of all its requests, and those of the libraries and processes that it starts, one
fails, or all do from one on.

    exhausted_test.py ZAVHOST PRELOADED_LIBRARY SCRATCH_FOLDER [STEPS]

Requests count from main on; those before it are the system's. Each run is given one place to fail, and the next place is
a thirtieth (one of STEPS) further on, a hundredth of all at most. Whatever fails, the program ends with a documented code. If that is a failure's,
a line says that memory ran out; otherwise the results are the right ones. What it writes is whole or absent, nothing is
left beside it, and the input stays as it was.
"""
import os
import pathlib
import re
import resource
import shutil
import struct
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
ZAVHOST, PRELOADED, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
STEPS = int(sys.argv[4]) if len(sys.argv) > 4 else 30
BOOK, DATA = ROOT / "examples/nonparametric.xlsx", ROOT / "examples/iris.csv"
FAILED = 1
# The last is the dynamic loader's: where it finds no memory for a library's thread data, it ends the program itself.
OUT_OF_MEMORY = re.compile(r"not enough memory|[Cc]annot allocate memory")
LOADERS_END = 127, "cannot allocate memory for thread-local data: ABORT\n"
problems = []


class Case:
    """A command in a folder of its own, what it reads, and what it gives with memory."""

    def __init__(self, name, *arguments):
        self.name, self.arguments = name, arguments
        self.folder, self.temporary = scratch / name, scratch / (name + "-temporary")
        self.plan = scratch / (name + ".plan")
        self.right, self.requests = self.run(1 << 60, False)

    def run(self, granted, lasting):
        """The code, stdout, stderr and folder after a run, and how many requests it made."""
        for folder in self.folder, self.temporary:
            shutil.rmtree(folder, ignore_errors=True)
            folder.mkdir(parents=True)
        shutil.copy(BOOK, self.folder / "book.xlsx")
        shutil.copy(DATA, self.folder / "data.csv")
        self.plan.write_bytes(struct.pack("qqq", granted, lasting, 0))
        environment = dict(os.environ, LD_PRELOAD=str(PRELOADED), FAILING_REQUESTS=str(self.plan),
                           TMPDIR=str(self.temporary))
        done = subprocess.run([ZAVHOST, *self.arguments], cwd=self.folder, env=environment, capture_output=True, text=True)
        # Of a batch, the times.
        said = re.sub(r"\d+\.\d+ s\b|\"seconds\":[^,]+", "", done.stdout)
        state = {file.name: file.read_bytes() for file in self.folder.iterdir()}
        return (done.returncode, said, done.stderr, state), struct.unpack("qqq", self.plan.read_bytes())[2]

    def problems_of(self, granted, lasting):
        (code, said, errors, state), _ = self.run(granted, lasting)
        if self.temporary_files():
            yield f"left among the temporary files: {self.temporary_files()}"
        _, right_said, _, right_state = self.right
        before = {"book.xlsx": BOOK.read_bytes(), "data.csv": DATA.read_bytes()}
        if state not in (before, right_state):
            yield f"the folder holds {sorted(state)}, or another content"
        if (code, errors) == LOADERS_END:
            return
        if code != FAILED:
            if (code, said, errors, state) != self.right:
                yield f"code {code}, with other results than with memory: {errors!r}"
        elif "check" in self.arguments:  # a line for the workbook
            if len(OUT_OF_MEMORY.findall(said + errors)) != 1:
                yield f"no line says what happened: {said!r} {errors!r}"
        elif len(errors.splitlines()) != 1 or not OUT_OF_MEMORY.search(errors) or not right_said.startswith(said):
            yield f"lines {errors!r}, results {said[:200]!r}"

    def temporary_files(self):
        """What is left there, a moment later: the processes of a batch end with it."""
        for _ in range(20):
            left = [file.name for file in self.temporary.iterdir()]
            if not left or "check" not in self.arguments:
                break
            time.sleep(0.05)
        return left

    def fail(self):
        """Returns how often a request has failed."""
        failures = 0
        for lasting in False, True:
            granted = 0
            while granted < self.requests:
                for problem in self.problems_of(granted, lasting):
                    problems.append(f"{self.name}, {'all requests' if lasting else 'one request'} from {granted}: {problem}")
                failures += 1
                granted += 1 + min(granted // STEPS, self.requests // 100)
        return failures


def main():
    shutil.rmtree(scratch, ignore_errors=True)
    scratch.mkdir(parents=True)
    cases = [Case("run", "run", "book.xlsx", "--csv"), Case("output", "run", "book.xlsx", "-o", "out.xlsx"),
             Case("in-place", "run", "book.xlsx", "--in-place", "--json"), Case("check", "check", "book.xlsx"),
             Case("eval", "eval", "=ZavCorrelationMatrix(Sepal.Length,Petal.Length)", "--data", "data.csv")]
    for case in cases:
        code, _, errors, _ = case.right
        if code not in (0, 5) or errors or case.requests < 10_000:
            problems.append(f"{case.name} with memory: code {code}, {errors!r}, {case.requests} requests")
    failures = sum(case.fail() for case in cases)
    usage = resource.getrusage(resource.RUSAGE_CHILDREN)
    print(f"{failures} failures, {len(problems)} problems; {usage.ru_utime + usage.ru_stime:.1f} s of processor time")
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
