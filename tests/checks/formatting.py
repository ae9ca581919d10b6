"""Every C++ file stands as clang-format writes it, and its comments end where its code does."""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from tree import report, sources, text_of

# clang-format leaves comments as they are, and a literal whole.
COLUMNS = 120

# One start of clang-format costs more than many files do.
FILES_A_CALL = 40
# One line of clang-format's for one place: the file, the line and the column.
PLACE = re.compile(r"(.+?):\d+:\d+: ")


def badly_formatted(root, paths):
    """The first place in each of the files that is to be mended."""
    command = ["clang-format", "--style=file", "--dry-run", "-Werror", *map(str, paths)]
    done = subprocess.run(command, cwd=root, capture_output=True, text=True)
    if done.returncode == 0:
        return []
    first = {}
    for line in done.stderr.splitlines():
        if place := PLACE.match(line):
            first.setdefault(place[1], line)
    return list(first.values()) or [f"clang-format refuses {paths[0]} or one of the next: {done.stderr.strip()}"]


def overlong(root, path):
    """Lines of code and comments that are too long; one with a literal may be."""
    for number, line in enumerate((text_of(Path(root) / path) or "").splitlines(), 1):
        if len(line) > COLUMNS and '"' not in line:
            yield f"{path}:{number}: {len(line)} columns, more than {COLUMNS}"


def findings(root):
    paths = sources(root, {"src", "tests", "bench"})
    calls = [paths[start : start + FILES_A_CALL] for start in range(0, len(paths), FILES_A_CALL)]
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        faults = [fault for faults in pool.map(lambda call: badly_formatted(root, call), calls) for fault in faults]
    return faults + [fault for path in paths for fault in overlong(root, path)]


if __name__ == "__main__":
    if not Path(sys.argv[1], ".clang-format").is_file():
        sys.exit(".clang-format is missing")
    sys.exit(report(findings(sys.argv[1]), "every file is formatted"))
