#!/usr/bin/env python3
"""The scan through the window, its display running, against the scan without a window, side by side in one run.

usage: scan_window.py BIN_FOLDER [FILES DIRECTORIES [RUNS]]

Makes a tree of small files once (in $TMPDIR), then scans it in turn without a window, with one on the offscreen
platform, and with one on a virtual display with a window manager where these are installed. Prints the medians and
the ratios of two times: the scan's, from its first statement to its commit; and the processor time of the whole
program, its start and the quick scan included, which other work on the machine disturbs less.
"""
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def seconds_of(output):
    """From "scan 0.5", or the sum of "walk 0.3 totals 0.1 commit 0.1"."""
    words = output.split("\n")[-2].split()
    return sum(float(word) for word in words[1::2])


def virtual_display(work):
    """Its name, and the processes behind it; nothing where there is none to be had."""
    if not shutil.which("Xvfb") or not shutil.which("openbox"):
        return "", []
    read, write = os.pipe()
    quiet = {"stdin": subprocess.DEVNULL, "stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
    server = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                               "-noreset"], pass_fds=[write], **quiet)
    os.close(write)
    with os.fdopen(read) as number:
        name = ":" + number.readline().strip()
    manager = subprocess.Popen(["openbox", "--sm-disable"], env=dict(os.environ, DISPLAY=name, HOME=work), **quiet)
    time.sleep(1)  # the manager takes the display over
    return name, [manager, server]


def measure(binaries, work, tree, ways, runs):
    """For each way the seconds of the scans, and the processor seconds of the programs."""
    times = {way: ([], []) for way in ways}
    for run in range(runs + 1):  # the first run warms the caches and does not count
        for way, (program, environment) in ways.items():
            folder = os.path.join(work, "catalogue")
            shutil.rmtree(folder, ignore_errors=True)
            os.mkdir(folder)
            before = resource.getrusage(resource.RUSAGE_CHILDREN)
            output = subprocess.run([os.path.join(binaries, program), folder, tree], check=True, text=True,
                                    stdout=subprocess.PIPE,
                                    env=dict(os.environ, XDG_RUNTIME_DIR=work, **environment)).stdout
            after = resource.getrusage(resource.RUSAGE_CHILDREN)
            if run > 0:
                times[way][0].append(seconds_of(output))
                times[way][1].append(after.ru_utime - before.ru_utime + after.ru_stime - before.ru_stime)
    return times


def main():
    binaries = sys.argv[1]
    files, directories = sys.argv[2:4] if len(sys.argv) > 3 else ("100000", "2000")
    runs = int(sys.argv[4]) if len(sys.argv) > 4 else 5
    work = tempfile.mkdtemp(prefix="discaro-bench-")
    display, processes = virtual_display(work)
    try:
        tree = os.path.join(work, "tree")
        subprocess.run([os.path.join(binaries, "make_tree"), tree, files, directories], check=True)
        ways = {"no window": ("scan_once", {}), "offscreen": ("scan_window", {"QT_QPA_PLATFORM": "offscreen"})}
        if display:
            ways["display"] = ("scan_window", {"QT_QPA_PLATFORM": "xcb", "DISPLAY": display})
        times = measure(binaries, work, tree, ways, runs)
        scan, processor = (statistics.median(values) for values in times["no window"])
        print(f"{files} files in {directories} directories, medians of {runs}")
        for way, (scans, processors) in times.items():
            print(f"  {way:<10} {statistics.median(scans):7.3f} s (min {min(scans):.3f}, max {max(scans):.3f}),"
                  f" ratio {statistics.median(scans) / scan:.2f};   processor {statistics.median(processors):7.3f} s,"
                  f" ratio {statistics.median(processors) / processor:.2f}")
    finally:
        for process in processes:
            process.terminate()
            process.wait()
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
