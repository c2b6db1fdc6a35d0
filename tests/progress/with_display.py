#!/usr/bin/env python3
"""Runs the tests that need a display, on a virtual one and in a Wine of their own: one that was started without a
display shows nothing.

    with_display.py WINE_RUN SERVICES_TEST WINE_PREFIX
"""
import os
import subprocess
import sys


def main():
    wine_run, program, prefix = sys.argv[1:]
    ready, answer = os.pipe()
    display = subprocess.Popen(["Xvfb", "-displayfd", str(answer), "-screen", "0", "1024x768x24", "-nolisten", "tcp"],
                               pass_fds=[answer], stderr=subprocess.DEVNULL)
    try:
        os.close(answer)
        number = os.read(ready, 16).decode().strip()
        environment = {**os.environ, "ZAV_DISPLAY": f":{number}", "ZAV_WINEPREFIX": prefix}
        subprocess.run([wine_run, "--up"], env=environment, check=True)
        tests = subprocess.run([wine_run, program, "--no-skip", "--test-suite=with a display"], env=environment)
        subprocess.run([wine_run, "--down"], env=environment)
        return tests.returncode
    finally:
        display.terminate()
        display.wait()


if __name__ == "__main__":
    sys.exit(main())
