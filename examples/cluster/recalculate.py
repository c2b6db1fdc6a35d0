#!/usr/bin/python3
"""Recalculates workbooks on a Dask cluster, as `zavhost run` does on one machine: with the same lines, the same
summary and the same exit code.

    recalculate.py tcp://SCHEDULER:8786 BOOK.xlsx... [FOLDER...] --output-folder FOLDER

Each workbook is a task that starts `zavhost run` for it, a batch of one, on some worker. The workbooks and the output
folder are on a shared folder with the same path on every machine. A workbook whose worker dies is tried again on
another one, as often as the scheduler's setting `allowed-failures` says, and then reported as failed.
"""

import argparse
import contextlib
import json
import logging
import os
import pathlib
import queue
import re
import subprocess
import sys
import time
import uuid

from distributed import CancelledError, Client, KilledWorker

# The words for exit codes, from the worst to the best, as in host/cli/batch.cpp.
STATUSES = {3: "crashed", 2: "broke a rule", 6: "out of time", 1: "failed", 4: "with errors", 7: "in doubt", 5: "differs",
            0: "done"}
CRASH, ERROR, SUCCESS, USAGE = 3, 1, 0, 64
INTERRUPTED = 130  # as of a program that Ctrl-C ended
# A cluster that has had no worker for so many seconds is given up.
PATIENCE = 60


class Refusal(Exception):
    """Why the batch cannot start; one line."""


def as_status(code):
    """An exit code that has a word; a process that a signal ended is as bad as a crash."""
    return code if code in STATUSES else CRASH


def worse(one, other):
    return min(as_status(one), as_status(other), key=list(STATUSES).index)


# What becomes of the workbooks of the command line, as in host/cli/batch.cpp.

def workbooks_in(folder, output_folder):
    """The workbooks in a folder and below it, but not those below the output folder, in the order of names."""
    found = []
    for parent, folders, files in os.walk(folder):
        folders[:] = [name for name in folders if not is_same(os.path.join(parent, name), output_folder)]
        found += [os.path.join(parent, name) for name in files
                  if name.lower().endswith(".xlsx") and not name.startswith((".", "~$"))]
    if not found:
        raise Refusal(f"{printable(folder)}: no workbooks in this folder")
    return sorted(found, key=lambda path: os.fsencode(path).split(b"/"))


def is_same(folder, other):
    return os.path.isdir(other) and os.path.samefile(folder, other)


def batch_items(named, output_folder):
    """Pairs of a workbook and its output."""
    items, workbook_of = [], {}
    for name in named:
        books = workbooks_in(name, output_folder) if os.path.isdir(name) else [name]
        for book in books:
            relative = os.path.relpath(book, name) if os.path.isdir(name) else os.path.basename(book)
            output = os.path.join(output_folder, relative)
            resolved = os.path.realpath(output)
            if resolved == os.path.realpath(book):
                raise Refusal(f"{printable(book)}: the output would replace the workbook")
            if resolved in workbook_of:
                raise Refusal(f"{printable(book)}: the output would be that of {printable(workbook_of[resolved])}")
            workbook_of[resolved] = book
            items.append((book, output))
    return items


def is_up_to_date(book, output):
    with contextlib.suppress(OSError):
        return os.stat(output).st_mtime_ns >= os.stat(book).st_mtime_ns
    return False


# On the workers. Dask sends these functions there, so a worker needs no file of this program.

def inspect(zavhost, folder, mark):
    """The version of zavhost on this worker, which must see the output folder's mark."""
    version = subprocess.run([zavhost, "--version"], cwd=folder, capture_output=True, text=True, check=True).stdout
    if not os.path.exists(os.path.join(folder, mark)):
        raise FileNotFoundError(f"the output folder is another one there than here: it has no {mark}")
    return version.strip()


def recalculate(book, output, zavhost, options, folder):
    """Recalculates one workbook in a process of its own and returns the line of JSON that tells about it.

    The process ends with this worker, or it would still be running when the workbook is tried again elsewhere.
    """
    started = time.monotonic()
    command = ["setpriv", "--pdeathsig", "TERM", "--", zavhost, "run", "--json", "--jobs", "1", *options,
               "--output-folder", os.path.dirname(output), "--", book]
    try:
        run = subprocess.run(command, cwd=folder, stdin=subprocess.DEVNULL, capture_output=True, text=True,
                             encoding="utf-8", errors="surrogateescape")
    except OSError as error:
        return failure_line(book, f"its process cannot be started: {error}", time.monotonic() - started)
    line, errors = run.stdout.strip(), run.stderr.strip()
    if line.startswith("{") and "\n" not in line:
        return line
    message = errors.splitlines()[-1] if errors else f"its process ended with code {run.returncode}"
    return failure_line(book, message.removeprefix("zavhost: "), time.monotonic() - started)


def failure_line(book, message, seconds):
    return json.dumps({"workbook": book, "status": STATUSES[ERROR], "exit_code": ERROR, "seconds": seconds,
                       "message": message}, ensure_ascii=False)


# What the user sees, as in host/cli/batch_command.cpp.

def printable(path):
    return re.sub("[\x00-\x1f\x7f-\x9f\u2028-\u202e\u2066-\u2069]", " ", path)


def plural(count, what):
    return f"{count} {what}{'' if count == 1 else 's'}"


def text_line(outcome):
    status = "" if outcome["exit_code"] == SUCCESS else outcome["status"] + ": "
    told = (outcome.get("message") or
            f"{plural(outcome.get('formulas', 0), 'formula')}, {outcome.get('changed', 0)} changed")
    return f"{printable(outcome['workbook'])}: {status}{told} ({outcome['seconds']:.2f} s)"


class Report:
    def __init__(self, as_json, total, skipped):
        self.as_json, self.total, self.skipped = as_json, total, skipped
        self.bar = sys.stderr.isatty() and not as_json
        self.done = self.failed = self.formulas = 0
        self.worst = SUCCESS
        self.started = time.monotonic()

    def add(self, line):
        outcome = json.loads(line)
        code = outcome["exit_code"]
        self.done += 1
        self.failed += code != SUCCESS
        self.formulas += outcome.get("formulas", 0)
        self.worst = worse(self.worst, code)
        if self.as_json:
            print(line, flush=True)
        elif not self.bar or code != SUCCESS:  # a terminal shows the bar, and what went wrong above it
            self.clear_bar()
            print(text_line(outcome), flush=True)

    def show_progress(self):
        if not self.bar:
            return
        width = 24
        filled = width * self.done // max(self.total, 1)
        text = f"[{'#' * filled}{'-' * (width - filled)}] {self.done} of {self.total}"
        if self.failed:
            text += f", {self.failed} failed"
        if self.done:
            text += f", {self.seconds() / self.done * (self.total - self.done):.0f} s left"
        print(f"\r{text:<70}", end="", file=sys.stderr, flush=True)

    def clear_bar(self):
        if self.bar:
            print(f"\r{'':70}\r", end="", file=sys.stderr, flush=True)

    def seconds(self):
        return time.monotonic() - self.started

    def finish(self):
        self.clear_bar()
        text = f"{plural(self.total + self.skipped, 'workbook')}: {self.done - self.failed} done"
        if self.skipped:
            text += f", {self.skipped} already up to date"
        if self.failed:
            text += f", {self.failed} not (the worst {STATUSES[self.worst]})"
        text += f"; {plural(self.formulas, 'formula')} in {self.seconds():.1f} s."
        print(text, file=sys.stderr if self.as_json else sys.stdout, flush=True)
        return self.worst


# The cluster.

def inspect_workers(client, zavhost, folder, output_folder):
    """Every worker must have the same zavhost, and see the shared folder."""
    try:
        client.wait_for_workers(1, timeout=PATIENCE)
    except TimeoutError:
        raise Refusal(f"the scheduler has had no workers for {PATIENCE} s") from None
    mark = pathlib.Path(output_folder, f".shared-{uuid.uuid4().hex}")
    try:
        mark.parent.mkdir(parents=True, exist_ok=True)
        mark.touch()
    except OSError as error:
        raise Refusal(f"{printable(output_folder)}: {error.strerror}") from None
    try:
        answers = client.run(inspect, zavhost, folder, str(mark), on_error="return")
    finally:
        mark.unlink()
    for worker, answer in answers.items():
        if isinstance(answer, Exception):
            raise Refusal(f"{worker} cannot take part: {answer}")
    (first, version), *others = answers.items()
    for worker, other in others:
        if other != version:
            raise Refusal(f"{worker} has {other}, but {first} has {version}")


class Batch:
    """The workbooks on the cluster."""

    def __init__(self, client, report, settings):
        self.client, self.report, self.settings = client, report, settings
        self.patience = Patience(client)

    def run(self, items):
        lost = self.run_together(items)
        if len(lost) > 1:
            # A worker takes with it whatever it has at the time. Alone, a workbook has only itself to blame.
            lost = [again for item, _ in lost for again in self.run_together([item])]
        for _, line in lost:
            self.report.add(line)

    def run_together(self, items):
        """Reports the workbooks that come to an end, and returns those whose workers died, with their lines."""
        finished, lost, started = queue.SimpleQueue(), [], time.monotonic()
        books, outputs = zip(*items)
        pending = dict(zip(self.client.map(recalculate, books, outputs, pure=False, **self.settings), items))
        for future in pending:
            future.add_done_callback(finished.put)
        while pending:
            self.report.show_progress()
            try:
                future = finished.get(timeout=1)
            except queue.Empty:
                if self.patience.is_over():
                    for book, _ in pending.values():
                        self.report.add(failure_line(book, f"no workers for {PATIENCE} s", time.monotonic() - started))
                    self.client.cancel(list(pending))
                    return lost
                continue
            self.patience.renew()
            item = pending.pop(future)
            try:
                self.report.add(future.result())
            except KilledWorker as killed:
                message = (f"its worker died {plural(killed.allowed_failures + 1, 'time')}, "
                           f"at last {killed.last_worker.address}")
                lost.append((item, failure_line(item[0], message, time.monotonic() - started)))
            except CancelledError:
                self.report.add(failure_line(item[0], "the scheduler has ended", time.monotonic() - started))
            except Exception as error:  # such as a worker with another Python, which cannot read our functions
                message = f"the cluster cannot run it: {type(error).__name__}: {' '.join(str(error).split())}"
                self.report.add(failure_line(item[0], message, time.monotonic() - started))
        return lost


class Patience:
    """Ends when the cluster has had no worker for a while."""

    def __init__(self, client):
        self.client, self.missing_since = client, None

    def renew(self):
        self.missing_since = None

    def is_over(self):
        if self.client.scheduler_info()["workers"]:
            self.renew()
            return False
        self.missing_since = self.missing_since or time.monotonic()
        return time.monotonic() - self.missing_since > PATIENCE


def remove_remains(items):
    """Deletes the unfinished files of processes that ended with their workers."""
    outputs = {}
    for _, output in items:
        outputs.setdefault(os.path.dirname(output), set()).add(os.path.basename(output))
    for folder, names in outputs.items():
        for file in pathlib.Path(folder).glob("*.tmp"):
            if re.sub(r"\.[0-9a-f]{16}\.tmp$", "", file.name) in names:
                file.unlink(missing_ok=True)


def whole_number(low, high):
    def read(text):
        if not (text.isdecimal() and low <= int(text) <= high):
            raise argparse.ArgumentTypeError(f"{text} is not a whole number from {low} to {high}")
        return text
    return read


class Parser(argparse.ArgumentParser):
    def error(self, message):
        print(f"{self.prog}: {message}\nRun with --help for more information.", file=sys.stderr)
        sys.exit(USAGE)


def read_command_line():
    parser = Parser(description="Recalculates workbooks on a Dask cluster, with the lines, the summary and the exit "
                    "code of zavhost run. A worker has as many workbooks at the same time as threads. All paths must "
                    "be the same on every machine.", allow_abbrev=False)
    parser.add_argument("scheduler", metavar="SCHEDULER", help="address of the scheduler: tcp://HOST:8786")
    parser.add_argument("workbooks", metavar="BOOK.xlsx", nargs="+", help="workbooks, or folders with workbooks")
    parser.add_argument("--output-folder", metavar="FOLDER", required=True,
                        help="write every workbook with its new values to this folder")
    parser.add_argument("--resume", action="store_true",
                        help="leave out workbooks whose output is there and newer than they are")
    parser.add_argument("--json", action="store_true", help="write one line of JSON for each workbook")
    parser.add_argument("--zavhost", metavar="FILE", default="zavhost",
                        help="the program on the workers (default: the one in their PATH)")
    passed_on = parser.add_argument_group("options that every workbook's zavhost run gets").add_argument
    passed_on("--all", action="store_true", help="no effect but in the report of a single workbook")
    passed_on("--values-only", action="store_true", help="write values in place of the formulas")
    passed_on("--max-formulas", metavar="N", type=whole_number(1, 100_000_000),
              help="refuse a workbook with more formulas")
    passed_on("--timeout", metavar="SECONDS", type=whole_number(1, 1_000_000),
              help="give up a workbook that takes longer")
    passed_on("--memory", metavar="MB", type=whole_number(16, 16_000_000),
              help="give up a workbook that needs more memory")
    passed_on("--add-in", metavar="FILE", help="load this add-in instead of the one in zavhost's folder")
    passed_on("--language", choices=["en", "de"], help="language of the add-in's texts")
    return parser.parse_args()


def options_passed_on(line):
    options = ["--" + name.replace("_", "-") for name in ("all", "values_only") if getattr(line, name)]
    for name in ("max_formulas", "timeout", "memory", "add_in", "language"):
        value = getattr(line, name)
        if value is not None:
            options += ["--" + name.replace("_", "-"), value]
    return options


def recalculate_all(line):
    items = batch_items(line.workbooks, line.output_folder)
    waiting = [item for item in items if not (line.resume and is_up_to_date(*item))]
    report = Report(line.json, len(waiting), len(items) - len(waiting))
    if not waiting:
        return report.finish()
    # Relative paths need the same working folder on the workers.
    paths = [line.output_folder, *line.workbooks, line.add_in or "/"]
    folder = "/" if all(map(os.path.isabs, paths)) else os.getcwd()
    settings = {"zavhost": line.zavhost, "options": options_passed_on(line), "folder": folder}
    try:
        client = Client(line.scheduler, timeout=10)
    except (OSError, ValueError) as error:
        raise Refusal(f"{line.scheduler}: {error}") from None
    with client:
        inspect_workers(client, line.zavhost, folder, line.output_folder)
        Batch(client, report, settings).run(waiting)
    remove_remains(waiting)
    return report.finish()


def main():
    for stream in (sys.stdout, sys.stderr):
        stream.reconfigure(encoding="utf-8", errors="surrogateescape")
    # What goes wrong is in the lines; Dask's own words about it are in the logs of the scheduler and the workers.
    logging.disable()
    line = read_command_line()
    try:
        return recalculate_all(line)
    except Refusal as refusal:
        print(f"recalculate.py: {refusal}", file=sys.stderr)
        return ERROR
    except KeyboardInterrupt:  # workbooks that are not begun are dropped; those that are run to their end
        print("recalculate.py: interrupted", file=sys.stderr)
        return INTERRUPTED


if __name__ == "__main__":
    sys.exit(main())
