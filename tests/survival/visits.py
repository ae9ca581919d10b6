#!/usr/bin/env python3
"""Runs the cases of test_visits side by side, each on a virtual display of its own.

usage: visits.py TEST_VISITS

A tray icon, and what the display's own platform keeps for a window, are there on a display alone.
"""
import os
import subprocess
import sys
import tempfile

import desktop

CASES = ("Explorer", "ScanWizard", "Deletion")


def main():
    with tempfile.TemporaryDirectory(prefix="vi-") as base:
        displays = []
        try:
            displays = [desktop.Display(base, managed=False) for _ in CASES]
            programs = [subprocess.Popen([sys.argv[1], "--gtest_brief=1", "--gtest_filter=Visits." + case],
                                         env=dict(display.environment, HOME=base, XDG_CONFIG_HOME=base))
                        for case, display in zip(CASES, displays)]
            return max(program.wait() != 0 for program in programs)
        finally:
            for display in displays:
                display.close()


if __name__ == "__main__":
    sys.exit(main())
