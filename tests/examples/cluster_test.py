#!/usr/bin/python3
"""Recalculates workbooks on Dask clusters on this machine and holds every line and every output against a batch without
a cluster: among 200 workbooks one whose worker is killed each time it is tried, and then workbooks of every status.

    cluster_test.py ZAVHOST FAULTY_ADD_IN SCRATCH_FOLDER

FAULTY_ADD_IN has functions that crash or break rules. Without Dask the exit code is 77.
"""

import contextlib
import importlib.util
import json
import os
import pathlib
import random
import re
import shutil
import signal
import subprocess
import sys
import time

from openpyxl import Workbook

ROOT = pathlib.Path(__file__).resolve().parents[2]
RECALCULATE = str(ROOT / "examples/cluster/recalculate.py")
HOSTILE = "hostile.xlsx"
COUNT = 200
TIMEOUT = 5  # seconds for a workbook; that of the slow ones takes many times as long
problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


# The workbooks.

def save(file, data, formulas):
    """Rows of data from A1, and formulas in column D."""
    book = Workbook()
    for row in data:
        book.active.append(row)
    for number, formula in enumerate(formulas, 1):
        book.active.cell(number, 4, formula)
    file.parent.mkdir(parents=True, exist_ok=True)
    book.save(file)


def make_books(folder):
    """COUNT workbooks, and files that are none."""
    numbers = random.Random(1)
    names = [f"book {i:03}.xlsx" for i in range(COUNT - 8)]
    names += ["deep/er/book.xlsx", "Größe.XLSX", "-minus.xlsx", "bell\a.xlsx"]
    for name in names:
        data = [[numbers.gauss(0, 1), numbers.random()] for _ in range(numbers.randint(5, 40))]
        save(folder / name, data, ["=_xll.ZavMean(A1:A40)", "=_xll.ZavAveDev(A1:B40)",
                                   "=_xll.ZavCorrelationCoeff(A1:A40,B1:B40)", "=_xll.ZavNormal(0,1,\"CDF\",A1)"])
    save(folder / "circle.xlsx", [[1]], ["=_xll.ZavMean(A1,D1)"])
    (folder / "text.xlsx").write_text("no workbook")
    data = [[i * 7919 % 20011, i * 5779 % 20011] for i in range(20000)]
    save(folder / HOSTILE, data, ["=_xll.ZavCorrelationCoeff(A$1:A$20000,B$1:B$20000,TRUE)"] * 60000)
    shutil.copy(folder / HOSTILE, folder / "slow.xlsx")
    (folder / "~$book 001.xlsx").write_text("left by an office program")
    (folder / "read me.txt").write_text("no workbook")


def make_faults(folder):
    """A workbook of every status. The slow one comes second, and so is at work together with the hostile one."""
    formulas = {"good": "GoodSum(A1:A3)", "crash": "FaultCrash()", "leak": "FaultLeak(A1:A3)",
                "circle": "GoodSum(D1:D2)"}
    for name, formula in formulas.items():
        save(folder / f"{name}.xlsx", [[1], [2], [3]], [f"=_xll.{formula}"])
    (folder / "text.xlsx").write_text("no workbook")
    # Values that only one formula has, so that nothing can be computed once for all.
    slow = [f"=_xll.GoodSum(A$1:A$60000)+{i}" for i in range(60000)]
    save(folder / "0 slow.xlsx", [[i] for i in range(60000)], slow)
    shutil.copy(folder / "0 slow.xlsx", folder / f"0 {HOSTILE}")


# The processes.

def parent_of(process):
    """The parent's id; 0 once the process has ended."""
    with contextlib.suppress(OSError):
        return int(pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[1])
    return 0


def processes_with(book):
    """The ids of the zavhost processes that work on a workbook, those that wait for another one included."""
    found = set()
    for folder in pathlib.Path("/proc").glob("[0-9]*"):
        with contextlib.suppress(OSError):
            words = os.fsdecode((folder / "cmdline").read_bytes()).split("\0")
            if pathlib.Path(words[0]).name == "zavhost" and any(word.endswith(book) for word in words):
                found.add(int(folder.name))
    return found


class Cluster:
    """A scheduler and workers on the loopback address, each worker with a nanny that starts it again."""

    def __init__(self, folder, workers, threads, allowed_failures):
        folder.mkdir(parents=True)
        self.folder, self.processes, self.nannies = folder, [], []
        self.settings = {**os.environ, "DASK_DISTRIBUTED__SCHEDULER__ALLOWED_FAILURES": str(allowed_failures),
                         "DASK_DISTRIBUTED__COMM__TIMEOUTS__CONNECT": "10s"}  # not to ask the dead for long
        self.start("scheduler", "dask-scheduler", "--host", "127.0.0.1", "--port", "0", "--no-dashboard",
                   "--scheduler-file", folder / "scheduler.json")
        for number in range(workers):
            self.nannies.append(self.start(
                f"worker{number}", "dask-worker", "--scheduler-file", folder / "scheduler.json", "--host", "127.0.0.1",
                "--nthreads", str(threads), "--no-dashboard", "--local-directory", folder / f"worker{number}"))

    def start(self, name, *command):
        with open(self.folder / f"{name}.log", "wb") as log:
            self.processes.append(subprocess.Popen(command, env=self.settings, stdout=log, stderr=log))
        return self.processes[-1].pid

    def address(self, workers):
        """Waits until so many workers are there."""
        from distributed import Client
        deadline = time.monotonic() + 60
        while not (self.folder / "scheduler.json").exists() and time.monotonic() < deadline:
            time.sleep(0.1)
        with Client(scheduler_file=str(self.folder / "scheduler.json"), timeout=60) as client:
            client.wait_for_workers(workers, timeout=60)
            return client.scheduler.address

    def worker_of(self, process):
        """The worker that a process descends from; 0 if it is none of this cluster's."""
        while process > 1:
            parent = parent_of(process)
            if parent in self.nannies:
                return process
            process = parent
        return 0

    def stop(self):
        for process in reversed(self.processes):
            process.terminate()
        for process in self.processes:
            try:
                process.wait(timeout=10)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()


class Killer:
    """Kills the worker of a cluster that works on the hostile workbook, as a machine without memory does."""

    def __init__(self, cluster, first_together_with=None):
        self.cluster, self.together_with, self.victims = cluster, first_together_with, []

    def look(self):
        at_work = self.by_worker(HOSTILE)
        if self.together_with and not self.victims:
            others = self.by_worker(self.together_with)
            at_work = {worker: processes for worker, processes in at_work.items() if worker in others}
        for worker, processes in at_work.items():
            os.kill(worker, signal.SIGKILL)
            self.victims.append(worker)
            deadline = time.monotonic() + TIMEOUT / 2
            while processes & processes_with(HOSTILE):
                if time.monotonic() > deadline:
                    problems.append("a workbook's process outlived its worker")
                    return
                time.sleep(0.01)

    def by_worker(self, book):
        """The processes that work on it."""
        found = {}
        for process in processes_with(book):
            found.setdefault(self.cluster.worker_of(process), set()).add(process)
        found.pop(0, None)
        return found


# The runs. Both kinds get the same relative paths, each in a folder of its own.

def run(command, folder, killer=None):
    """The exit code, the lines of the output and what is on stderr."""
    folder.mkdir(parents=True, exist_ok=True)
    with open(folder / "stdout", "wb") as output, open(folder / "stderr", "wb") as errors:
        process = subprocess.Popen(command, cwd=folder, stdout=output, stderr=errors)
        while process.poll() is None:
            if killer:
                killer.look()
            time.sleep(0.03)
    lines, errors = ((folder / name).read_text(encoding="utf-8") for name in ("stdout", "stderr"))
    return process.returncode, lines.splitlines(), errors


def outcomes(lines):
    """By workbook, without the time that it took."""
    found = {}
    for line in lines:
        outcome = json.loads(line)
        seconds = outcome.pop("seconds")
        check(seconds >= 0, f"{line} took {seconds} s")
        check(outcome["workbook"] not in found, f"two lines for {outcome['workbook']}")
        found[outcome["workbook"]] = outcome
    return found


def without_seconds(text):
    return re.sub(r"[0-9.]+ s\b", "... s", text)


def files_in(folder):
    return {str(file.relative_to(folder)): file.read_bytes() for file in sorted(folder.rglob("*")) if file.is_file()}


def compare(what, local, cluster):
    for key in sorted(local.keys() | cluster.keys()):
        one, other = local.get(key), cluster.get(key)
        check(one == other, f"{what} {key!r}: alone {str(one)[:300]}, on the cluster {str(other)[:300]}")


def compare_runs(scratch, local, cluster, hostile):
    """Everything but the hostile workbook is the same; the outcome of that one on the cluster."""
    local_outcomes, cluster_outcomes = outcomes(local[1]), outcomes(cluster[1])
    of_hostile = [found.pop(hostile, None) for found in (local_outcomes, cluster_outcomes)]
    check(of_hostile[0] and of_hostile[0]["status"] == "out of time", f"alone: {of_hostile[0]}")
    compare("line of", local_outcomes, cluster_outcomes)
    compare("output", files_in(scratch / "local/new"), files_in(scratch / "cluster/new"))
    check(local[0] == cluster[0], f"exit codes: alone {local[0]}, on the cluster {cluster[0]}")
    return of_hostile[1] or {}


def is_lost(outcome, times):
    text = f"its worker died {times} time{'' if times == 1 else 's'}, at last tcp://127.0.0.1:"
    return outcome.get("status") == "failed" and outcome["exit_code"] == 1 and outcome["message"].startswith(text)


class Trial:
    """One folder of workbooks, by both programs."""

    def __init__(self, scratch, zavhost, cluster, workers):
        self.scratch, self.zavhost, self.cluster = scratch, zavhost, cluster
        self.address = cluster.address(workers)

    def local(self, *options):
        return run([self.zavhost, "run", *options], self.scratch / "local")

    def on_cluster(self, *options, killer=None):
        command = [RECALCULATE, self.address, "--zavhost", self.zavhost, *options]
        return run(command, self.scratch / "cluster", killer)


def try_many(scratch, zavhost, cluster):
    trial = Trial(scratch, zavhost, cluster, workers=2)
    options = ["../books", "--output-folder", "new", "--timeout", str(TIMEOUT), "--json"]
    local = trial.local(*options)
    check(len(local[1]) == COUNT, f"{len(local[1])} lines for {COUNT} workbooks")
    killer = Killer(cluster)
    began = time.monotonic()
    outcome = compare_runs(scratch, local, trial.on_cluster(*options, killer=killer), f"../books/{HOSTILE}")
    print(f"{COUNT} workbooks on the cluster: {time.monotonic() - began:.1f} s, {len(killer.victims)} workers killed")
    check(is_lost(outcome, 2), f"the hostile workbook: {outcome}")
    check(len(set(killer.victims)) >= 2, f"workers killed: {killer.victims}")

    # Again, with text, what is missing or older than its workbook.
    for name in (HOSTILE, "slow.xlsx"):
        (scratch / "books" / name).unlink()
    os.utime(scratch / "books/book 001.xlsx", (time.time() + 1000,) * 2)
    for side in ("local", "cluster"):
        (scratch / side / "new/book 002.xlsx").unlink()
        (scratch / side / f"new/book 002.xlsx.{'0' * 16}.tmp").touch()
        (scratch / side / "new/of somebody else.tmp").touch()
    options = ["../books", "--output-folder", "new", "--resume"]
    local, on_cluster = trial.local(*options), trial.on_cluster(*options)
    check(any(f"{COUNT - 2} workbooks: 2 done" in line for line in local[1]), f"resumed: {local[1]}")
    compare("resumed", *({line: True for line in map(without_seconds, run[1])} for run in (local, on_cluster)))
    check(local[0] == on_cluster[0] and not on_cluster[2], f"resumed: {local[0]} and {on_cluster}")
    left = [name for name in files_in(scratch / "cluster/new") if name.endswith(".tmp")]
    check(left == ["of somebody else.tmp"], f"unfinished files: {left}")

    # What is refused before anything begins.
    (scratch / "none").mkdir()
    circle = "../books/circle.xlsx"
    for books, output in ((["../none"], "other"), ([circle, circle], "other"), (["../books"], "../books")):
        one, other = (side(*books, "--output-folder", output) for side in (trial.local, trial.on_cluster))
        other = (*other[:2], other[2].replace("recalculate.py: ", "zavhost: "))
        check(one == other and one[0] == 1, f"refused: alone {one}, on the cluster {other}")
    check(trial.on_cluster("../books", "--output-folder", "other", "--timeout", "0")[0] == 64, "a wrong option")
    code, lines, errors = run([RECALCULATE, trial.address, "../books", "--output-folder", "new", "--zavhost", "absent"],
                              scratch / "cluster")
    check((code, lines) == (1, []) and "cannot take part" in errors and "absent" in errors, f"no zavhost: {errors}")


def try_faults(scratch, zavhost, add_in, cluster):
    """Here the first death gives up everything that the worker had, so that the slow workbook is tried alone."""
    trial = Trial(scratch, zavhost, cluster, workers=1)
    options = ["../books", "--output-folder", "new", "--timeout", str(TIMEOUT), "--json", "--add-in", add_in]
    local = trial.local(*options)
    killer = Killer(cluster, first_together_with="slow.xlsx")
    outcome = compare_runs(scratch, local, trial.on_cluster(*options, killer=killer), f"../books/0 {HOSTILE}")
    statuses = {json.loads(line)["status"] for line in local[1]}
    check(statuses == {"done", "crashed", "broke a rule", "with errors", "out of time", "failed"}, f"{statuses}")
    check(is_lost(outcome, 1), f"the hostile workbook: {outcome}")
    check(len(set(killer.victims)) == 2, f"workers killed: {killer.victims}")


def main():
    zavhost, add_in, scratch = sys.argv[1], sys.argv[2], pathlib.Path(sys.argv[3]).resolve()
    if importlib.util.find_spec("distributed") is None:
        print("skipped: Dask is missing; install python3-distributed")
        sys.exit(77)
    shutil.rmtree(scratch, ignore_errors=True)
    with contextlib.ExitStack() as stack:
        many = Cluster(scratch / "many/dask", workers=2, threads=1, allowed_failures=1)
        stack.callback(many.stop)
        faults = Cluster(scratch / "faults/dask", workers=1, threads=2, allowed_failures=0)
        stack.callback(faults.stop)
        make_books(scratch / "many/books")
        make_faults(scratch / "faults/books")
        try_many(scratch / "many", zavhost, many)
        try_faults(scratch / "faults", zavhost, add_in, faults)
    print("\n".join(problems))
    sys.exit(1 if problems else 0)


if __name__ == "__main__":
    main()
