#!/usr/bin/env python3
"""Whole-process ratios, measured side by side in one run.

usage: ratios.py BIN_FOLDER [FILES DIRECTORIES [RUNS]]

Makes a tree of small files once (in $TMPDIR), then runs the floor program and the scan without a window in turn and
prints the medians, their ratio and the scan's peak memory.
"""
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def timed(command):
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.perf_counter()
    result = subprocess.run(command, check=True, capture_output=True, text=True)
    seconds = time.perf_counter() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    return seconds, after.ru_maxrss, after.ru_utime - before.ru_utime, result.stdout


def main():
    binaries = sys.argv[1]
    files = sys.argv[2] if len(sys.argv) > 2 else "100000"
    directories = sys.argv[3] if len(sys.argv) > 3 else "2000"
    runs = int(sys.argv[4]) if len(sys.argv) > 4 else 5
    work = tempfile.mkdtemp(prefix="discaro-bench-")
    try:
        tree = os.path.join(work, "tree")
        subprocess.run([os.path.join(binaries, "make_tree"), tree, files, directories], check=True)
        times = {"floor_scan": [], "scan_once": []}
        memory = {}
        output = ""
        for run in range(runs + 1):  # the first run warms the caches and does not count
            for program in times:
                folder = os.path.join(work, program)
                shutil.rmtree(folder, ignore_errors=True)
                os.mkdir(folder)
                seconds, peak, _, output = timed([os.path.join(binaries, program), folder, tree])
                memory[program] = peak
                if run > 0:
                    times[program].append(seconds)
        medians = {program: statistics.median(values) for program, values in times.items()}
        print(f"{files} files in {directories} directories, medians of {runs}")
        for program, seconds in medians.items():
            print(f"  {program:<10} {seconds:7.3f} s   (min {min(times[program]):.3f}, max {max(times[program]):.3f})")
        print(f"  ratio      {medians['scan_once'] / medians['floor_scan']:7.2f}   peak {memory['scan_once'] // 1024} MB")
        print("  last scan: " + output.replace("\n", "; "))
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
