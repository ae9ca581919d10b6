"""Every C++ file stands as clang-format writes it."""

import os
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from tree import report, sources


def badly_formatted(root, path):
    command = ["clang-format", "--style=file", "--dry-run", "-Werror", str(path)]
    done = subprocess.run(command, cwd=root, capture_output=True, text=True)
    if done.returncode == 0:
        return None
    first = done.stderr.splitlines()[0] if done.stderr else "clang-format refuses the file"
    return first if str(path) in first else f"{path}: {first}"


def findings(root):
    paths = sources(root, {"src", "tests", "bench"})
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        return [fault for fault in pool.map(lambda path: badly_formatted(root, path), paths) if fault]


if __name__ == "__main__":
    if not Path(sys.argv[1], ".clang-format").is_file():
        sys.exit(".clang-format is missing")
    sys.exit(report(findings(sys.argv[1]), "every file is formatted"))
