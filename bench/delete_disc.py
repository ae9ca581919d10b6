#!/usr/bin/env python3
"""The deletion of a large disc through the window, over a catalogue that holds another such disc.

usage: delete_disc.py BIN_FOLDER [FILES DIRECTORIES [RUNS]]

Makes a tree of small files and a catalogue with two discs of it (in $TMPDIR), then deletes the second one in copies of
it, in turn with one bare statement of SQLite that does the same deletion. Prints the medians and their ratio.
"""
import os
import shutil
import sqlite3
import statistics
import subprocess
import sys
import tempfile
import time


def through_the_window(binaries, folder):
    output = subprocess.run([os.path.join(binaries, "delete_disc"), folder], check=True, text=True,
                            stdout=subprocess.PIPE, env=dict(os.environ, QT_QPA_PLATFORM="offscreen")).stdout
    return float(output.split()[-1])


def bare(folder):
    connection = sqlite3.connect(os.path.join(folder, "kvt.mde"), isolation_level=None)
    connection.execute("PRAGMA synchronous=FULL")
    start = time.perf_counter()
    connection.execute('DELETE FROM Drive WHERE "id number" = 2')
    seconds = time.perf_counter() - start
    connection.close()
    return seconds


def main():
    binaries = sys.argv[1]
    files, directories = sys.argv[2:4] if len(sys.argv) > 3 else ("100000", "2000")
    runs = int(sys.argv[4]) if len(sys.argv) > 4 else 5
    work = tempfile.mkdtemp(prefix="discaro-bench-")
    try:
        tree, whole, copy = (os.path.join(work, name) for name in ("tree", "whole", "copy"))
        os.mkdir(whole)
        subprocess.run([os.path.join(binaries, "make_tree"), tree, files, directories], check=True)
        for _ in range(2):
            subprocess.run([os.path.join(binaries, "scan_once"), whole, tree], check=True, stdout=subprocess.DEVNULL)
        ways = {"window": lambda: through_the_window(binaries, copy), "bare": lambda: bare(copy)}
        times = {way: [] for way in ways}
        for run in range(runs + 1):  # the first run warms the caches and does not count
            for way, delete in ways.items():
                shutil.rmtree(copy, ignore_errors=True)
                shutil.copytree(whole, copy)
                os.sync()
                seconds = delete()
                if run > 0:
                    times[way].append(seconds)
        print(f"a disc of {files} files in {directories} directories beside another such disc, medians of {runs}")
        for way, values in times.items():
            print(f"  {way:<7} {statistics.median(values):7.3f} s   (min {min(values):.3f}, max {max(values):.3f})")
        print(f"  ratio   {statistics.median(times['window']) / statistics.median(times['bare']):7.2f}")
    finally:
        shutil.rmtree(work)


if __name__ == "__main__":
    main()
