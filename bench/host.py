#!/usr/bin/env python3
"""What the program itself costs, beside what nobody can avoid.

    host.py LINUX_OUT LARGE_WORKBOOK_PROGRAM SCRATCH_FOLDER [WINE_RUN WINDOWS_ZAVHOST]

Start-up: `zavhost eval "=ZavMean(1,2,3)"` against /bin/true and against the Windows program under Wine, the best of
many runs each; the sizes of what is loaded. Then the large workbook, and where LibreOffice is at hand its conversion
of the same file.
"""
import pathlib
import shutil
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent))
import make_large_workbook  # noqa: E402

FORMULA = "=ZavMean(1,2,3)"


def best_milliseconds(rounds, *command):
    times = []
    for _ in range(rounds):
        start = time.perf_counter()
        subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        times.append(time.perf_counter() - start)
    return min(times) * 1e3


def main():
    out, large_workbook, scratch = map(pathlib.Path, sys.argv[1:4])
    scratch.mkdir(parents=True, exist_ok=True)
    floor = best_milliseconds(200, "/bin/true")
    own = best_milliseconds(200, out / "zavhost", "eval", FORMULA)
    print(f"start-up: /bin/true {floor:.2f} ms, zavhost {own:.2f} ms, {own - floor:.2f} ms of its own")
    if len(sys.argv) > 5:
        wine = best_milliseconds(10, *sys.argv[4:6], "eval", FORMULA)
        print(f"start-up: the Windows program under Wine {wine:.0f} ms, {wine / own:.0f} times as much")
    sizes = {file.name: file.stat().st_size / 1e6 for file in [*out.glob("zavhost"), *out.rglob("*.so")]}
    print("sizes in MB: " + ", ".join(f"{name} {size:.1f}" for name, size in sizes.items()))
    book = scratch / "large.xlsx"
    if not book.exists():
        make_large_workbook.write(book)
    subprocess.run([large_workbook, book], check=True)
    subprocess.run([large_workbook, book, "memory"], check=True)
    if office := shutil.which("soffice"):
        seconds = best_milliseconds(1, office, "--headless", "--convert-to", "xlsx:Calc MS Excel 2007 XML", "--outdir",
                                    scratch / "converted", book) / 1e3
        whole = best_milliseconds(3, out / "zavhost", "run", book, "-o", scratch / "new.xlsx") / 1e3
        print(f"the whole program: {whole:.2f} s; LibreOffice converts the same workbook in {seconds:.1f} s")


if __name__ == "__main__":
    main()
