#!/usr/bin/python3
"""The product for Linux as it ships: what its files need and export, and how the program behaves among others.

    product_test.py OUT_FOLDER ADD_IN_WITH_FAULTS SCRATCH_FOLDER
"""
import os
import pathlib
import re
import signal
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "src/frame"), str(ROOT / "bench")]
import function_data  # noqa: E402
import make_large_workbook  # noqa: E402

# Every machine with glibc has these. The linker names the loader where a library calls it.
NEEDED = {"libc.so.6", "libm.so.6", "ld-linux-x86-64.so.2"}
ADD_INS = {"libZavrelFuncs8.so": "functions", "libZavrelDistributions8.so": "distribution_functions"}
LIBRARIES = (*ADD_INS, "libZavrelMessages8.so", "libPdflib8.so", "libEUtilityLibrary8.so",
             "ZavrelFuncs Extensions/libNonparametricTests8.so")
out, faults, scratch = (pathlib.Path(argument).resolve() for argument in sys.argv[1:])
ZAVHOST = out / "zavhost"
problems = []


def check(condition, problem):
    if not condition:
        problems.append(problem)


def run(*arguments, **options):
    return subprocess.run([ZAVHOST, *arguments], capture_output=True, text=True, encoding="utf-8", **options)


def exports_of(file):
    listed = subprocess.run(["nm", "-D", "--defined-only", file], capture_output=True, text=True, check=True)
    return {line.split()[-1] for line in listed.stdout.splitlines()}


def check_files():
    for name in (*LIBRARIES, "zavhost"):
        dump = subprocess.run(["objdump", "-p", out / name], capture_output=True, text=True, check=True).stdout
        needed = set(re.findall(r"NEEDED +(\S+)", dump))
        check(needed <= NEEDED, f"{name} needs {sorted(needed - NEEDED)}")
        check(not re.search("RUNPATH|RPATH", dump), f"{name} searches a path of this machine")
    check(exports_of(ZAVHOST) == {"MdCallBack12", "ZavrelMemoryExhausted"}, f"zavhost exports {sorted(exports_of(ZAVHOST))}")
    for add_in, folder in ADD_INS.items():
        data = function_data.read(ROOT / "src" / folder / "functions.json")
        functions = {function.export for function in data.functions}
        exports = exports_of(out / add_in)
        check(functions <= exports, f"{add_in}: not exported: {sorted(functions - exports)}")
        declared = {name for group in data.entry_points for name in group.exports}
        undeclared = sorted(exports - functions - declared)
        check(not undeclared, f"{add_in}: exported, but not declared: {undeclared}")


def check_doctor():
    doctor = run("doctor")
    check(doctor.returncode == 0 and "The installation is sound." in doctor.stdout, f"doctor: {doctor.stdout}")
    check("OLE automation" in doctor.stdout, "the doctor says nothing of the macro entry points")


def check_crash():
    for formula, cause in ("FaultCrash()", "accessing address 0x0"), ("FaultAbort()", "abort"):
        crashed = run("eval", f"={formula}", "--add-in", faults)
        check(crashed.returncode == 3 and f"={formula}: the add-in crashed ({cause})" in crashed.stderr,
              f"{formula}: code {crashed.returncode}, {crashed.stderr!r}")


def check_names():
    """A name is any bytes, in any locale."""
    book = (ROOT / "examples/iris.xlsx").read_bytes()
    for name in b"caf\xe9.xlsx", "Luftgüte.xlsx".encode(), b" -o.xlsx", b"two\nlines.xlsx":
        file = os.path.join(os.fsencode(scratch), name)
        with open(file, "wb") as stream:
            stream.write(book)
        written = file + b".new"
        done = subprocess.run([ZAVHOST, "run", file, "-o", written], capture_output=True,
                              env={"LC_ALL": "C", "PATH": "/nowhere"})
        check(done.returncode == 0 and os.path.getsize(written) > 0, f"{name}: {done.stderr}")
        batch = subprocess.run([ZAVHOST, "run", file, "--output-folder", scratch / "names"], capture_output=True)
        check(batch.returncode == 0 and os.path.exists(os.path.join(os.fsencode(scratch / "names"), name)),
              f"{name} in a batch: {batch.stdout} {batch.stderr}")


def check_interrupts():
    """Whenever the user interrupts, there is the whole output or none, and nothing else."""
    large = scratch / "large.xlsx"
    make_large_workbook.ROWS, make_large_workbook.FORMULAS = 4000, 2000
    make_large_workbook.write(large)
    folder = scratch / "interrupted"
    folder.mkdir(exist_ok=True)
    started = time.monotonic()
    subprocess.run([ZAVHOST, "run", large, "-o", folder / "whole.xlsx"], stdout=subprocess.DEVNULL, check=True)
    whole, seconds = (folder / "whole.xlsx").read_bytes(), time.monotonic() - started
    (folder / "whole.xlsx").unlink()
    ends = set()
    for number, sent in enumerate((signal.SIGINT, signal.SIGTERM, signal.SIGHUP) * 14):
        process = subprocess.Popen([ZAVHOST, "run", large, "-o", folder / "new.xlsx"], stdout=subprocess.DEVNULL)
        if number % 2:
            time.sleep(seconds * number / 42)
        else:  # as soon as something is written
            while process.poll() is None and not any(folder.iterdir()):
                pass
        process.send_signal(sent)
        ends.add(process.wait())
        left = [file.name for file in folder.iterdir()]
        check(left in ([], ["new.xlsx"]), f"after {sent!r} there are {left}")
        if left == ["new.xlsx"]:
            check((folder / "new.xlsx").read_bytes() == whole, "a half-written output")
            (folder / "new.xlsx").unlink()
    check({-signal.SIGINT, -signal.SIGTERM, -signal.SIGHUP} <= ends, f"processes ended with {ends}")


def check_memory():
    large = scratch / "large.xlsx"
    make_large_workbook.ROWS, make_large_workbook.FORMULAS = 150_000, 100
    make_large_workbook.write(large)
    check(run("run", large, "--memory", "200").returncode == 0, "200 MB are not enough")
    for options in [], ["--jobs", "2"]:
        hungry = run("run", large, "--memory", "30", *options)
        check(hungry.returncode == 1 and "not enough memory" in hungry.stdout + hungry.stderr,
              f"30 MB are enough, or not said to be too few: {hungry}")


def check_pipes():
    reader = subprocess.Popen([ZAVHOST, "functions"], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
    reader.stdout.close()
    reader.wait()
    check(reader.stderr.read() == b"", "a closed pipe is reported")


def main():
    scratch.mkdir(parents=True, exist_ok=True)
    for each in check_files, check_doctor, check_crash, check_names, check_interrupts, check_memory, check_pipes:
        each()
        print(f"{each.__name__}: {'fine so far' if not problems else 'problems'}", flush=True)
    print("\n".join(problems))
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
