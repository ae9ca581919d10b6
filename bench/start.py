#!/usr/bin/env python3
"""The time from the program's start to a painted main menu, on a virtual display.

usage: start.py PROGRAM [RUNS]

The menu counts as painted when the middle row of the display has many colours. PROGRAM starts in a folder of its own.
Needs xvfb.
"""
import os
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

DISPLAY = ":93"
SIZE = 1024
MANY = 20


def picture(folder):
    """The display's bytes, from the file that the virtual display keeps them in."""
    with open(os.path.join(folder, "Xvfb_screen0"), "rb") as screen:
        return screen.read()


def colours(folder):
    """How many colours the middle row has: one on an empty display, many across the menu's face."""
    shot = picture(folder)
    row = len(shot) - SIZE * SIZE * 4 + (SIZE // 2) * SIZE * 4
    return len({shot[at:at + 4] for at in range(row, row + SIZE * 4, 4)})


def main():
    program = os.path.abspath(sys.argv[1])
    runs = int(sys.argv[2]) if len(sys.argv) > 2 else 9
    work = tempfile.mkdtemp(prefix="discaro-start-")
    server = subprocess.Popen(["Xvfb", DISPLAY, "-screen", "0", f"{SIZE}x{SIZE}x24", "-fbdir", work, "-nolisten", "tcp",
                               "-noreset"],
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    try:
        time.sleep(1)
        folder = os.path.join(work, "application")
        os.mkdir(folder)
        shutil.copy(program, folder)
        surroundings = dict(os.environ, DISPLAY=DISPLAY, XDG_RUNTIME_DIR=work, QT_QPA_PLATFORM="xcb")
        times = []
        for run in range(runs + 1):  # the first makes the catalogue and warms the caches
            if colours(work) >= MANY:
                sys.exit("the display is not empty before the start")
            start = time.perf_counter()
            process = subprocess.Popen([os.path.join(folder, "discaro")], cwd=folder, env=surroundings)
            while colours(work) < MANY and time.perf_counter() - start < 10:
                time.sleep(0.002)
            if run > 0:
                times.append(time.perf_counter() - start)
            process.kill()
            process.wait()
            time.sleep(0.3)
        print(f"start to a painted menu: median of {runs} {statistics.median(times):.3f} s, "
              f"from {min(times):.3f} to {max(times):.3f}")
    finally:
        server.kill()
        server.wait()
        shutil.rmtree(work, ignore_errors=True)


if __name__ == "__main__":
    main()
