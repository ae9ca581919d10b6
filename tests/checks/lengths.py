"""Functions of at most 60 lines with a median of at most 10, files of at most 600 lines, in src/."""

import json
import statistics
import subprocess
import sys
from pathlib import Path

from tree import report, sources

FUNCTION_LIMIT = 60
MEDIAN_LIMIT = 10
FILE_LIMIT = 600


def functions(root, paths):
    """(path, name, first line, number of lines) of every function; a function without an end has no lines.

    A lambda counts as part of the function around it and not by itself.
    """
    command = [
        "ctags", "--options=NONE", "--languages=C++", "--map-C++=+.h", "--kinds-C++=f", "--fields=+ne",
        "--output-format=json", "--sort=no", "-L", "-", "-f", "-",
    ]
    listing = "\n".join(str(path) for path in paths)
    done = subprocess.run(command, cwd=root, input=listing, capture_output=True, check=True, text=True)
    for line in done.stdout.splitlines():
        tag = json.loads(line)
        if tag.get("_type") == "tag" and not tag["name"].startswith("__anon"):
            lines = tag["end"] - tag["line"] + 1 if "end" in tag else None
            yield tag["path"], tag["name"], tag["line"], lines


def function_findings(found):
    for path, name, line, lines in found:
        if lines is None:
            yield f"{path}:{line}: the end of {name} is not found"
        elif lines > FUNCTION_LIMIT:
            yield f"{path}:{line}: {name} has {lines} lines, more than {FUNCTION_LIMIT}"


def file_findings(root, paths):
    for path in paths:
        count = len((Path(root) / path).read_bytes().splitlines())
        if count > FILE_LIMIT:
            yield f"{path}: {count} lines, more than {FILE_LIMIT}"


def findings(root):
    """What is too long, and a line of figures."""
    paths = sources(root, {"src"})
    found = list(functions(root, paths))
    lengths = sorted(lines for _, _, _, lines in found if lines)
    if not lengths:
        return ["no function found in src/"], ""
    median = statistics.median(lengths)
    faults = list(function_findings(found)) + list(file_findings(root, paths))
    if median > MEDIAN_LIMIT:
        faults.append(f"the median function has {median} lines, more than {MEDIAN_LIMIT}")
    tenth = lengths[int(len(lengths) * 0.9)]
    figures = f"{len(lengths)} functions: median {median:g} lines, one in ten above {tenth}, longest {lengths[-1]}"
    return faults, figures


if __name__ == "__main__":
    faults, figures = findings(sys.argv[1])
    print(figures)
    sys.exit(report(faults, "no function and no file is too long"))
