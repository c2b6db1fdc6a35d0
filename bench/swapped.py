#!/usr/bin/env python3
"""Time and memory of a computation with its working copies in memory and on disk.

    swapped.py ROWS COLUMNS COMMAND...

COMMAND is bench/swapped_scores of a build, after cmake/wine-run for the one for Windows. Prints the seconds, and the
process's peaks of memory of its own and of mapped files: the system can take the latter away at any time.
"""
import re
import subprocess
import sys
import time


def peaks_of(process):
    """Both in bytes, looked at every 5 ms until the process ends."""
    own = mapped = 0
    while process.poll() is None:
        try:
            with open(f"/proc/{process.pid}/status") as status:
                sizes = dict(re.findall(r"^Rss(Anon|File|Shmem):\s+(\d+) kB", status.read(), re.M))
        except OSError:
            continue  # it has just ended
        own = max(own, int(sizes.get("Anon", 0)) << 10)
        mapped = max(mapped, int(sizes.get("File", 0)) + int(sizes.get("Shmem", 0)) << 10)
        time.sleep(0.005)
    return own, mapped


def main():
    shape, command = sys.argv[1:3], sys.argv[3:]
    matrix = int(shape[0]) * int(shape[1]) * 8
    print(f"a matrix of {matrix / 1e6:.0f} MB")
    for place in ("memory", "disk"):
        process = subprocess.Popen([*command, *shape, place], stdout=subprocess.PIPE, text=True)
        own, mapped = peaks_of(process)
        seconds = process.communicate()[0].strip()
        print(f"{place}: {seconds} s, {own / 1e6:.0f} MB of its own, {mapped / 1e6:.0f} MB of files")


if __name__ == "__main__":
    main()
