"""clang-tidy over the program's sources: all of them, or those that a change since a revision can have spoilt.

    lint.py ROOT BUILD [REVISION]

BUILD is a folder that CMake has configured; nothing need be built in it. With a revision come the .cpp files that
differ from it and those that include a header that differs, and all where the choice of checks itself differs.
"""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

from tree import git, report, sources, text_of

FOLDER = "src"
CHOICE_OF_CHECKS = Path(".clang-tidy")
FINDING = re.compile(r"^(?=\S[^\n]*:\d+:\d+: (?:error|warning): )", re.MULTILINE)


def changed_files(root, revision):
    """What differs from the revision, new files that git does not follow yet included."""
    differing = git(root, "diff", "--name-only", "-z", "--no-renames", "--relative", revision, "--")
    if differing is None:
        sys.exit(f"git knows no revision {revision}")
    untracked = git(root, "ls-files", "-z", "--others", "--exclude-standard")
    return {Path(name) for name in (differing + untracked).split("\0") if name}


def included_headers(root, path):
    return {Path(FOLDER, name) for name in re.findall(r'^#include "([^"]+)"', text_of(root / path), re.MULTILINE)}


def chosen(root, revision):
    """The .cpp files to look at: all without a revision."""
    files = [path for path in sources(root, {FOLDER}) if path.suffix == ".cpp"]
    if revision is None:
        return files
    changed = changed_files(root, revision)
    if CHOICE_OF_CHECKS in changed:
        return files
    return [path for path in files if path in changed or not changed.isdisjoint(included_headers(root, path))]


def tidy(root, build, path):
    """What clang-tidy says of one file, a finding with its lines as one text each."""
    command = ["clang-tidy", "-quiet", "-p", str(build), str(path)]
    done = subprocess.run(command, cwd=root, capture_output=True, text=True)
    if done.returncode == 0:
        return []
    told = done.stdout.replace(f"{Path(root).resolve()}/", "")
    return [text for text in FINDING.split(told) if text.strip()] or [f"{path}: {done.stderr}"]


def findings(root, build, paths):
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        told = pool.map(lambda path: tidy(root, build, path), paths)
        return list(dict.fromkeys(text for texts in told for text in texts))


def main(root, build, revision=None):
    paths = chosen(Path(root), revision)
    since = f" for what changed since {revision}" if revision else ", all there are"
    print(f"clang-tidy over {len(paths)} files{since}", flush=True)
    return report(findings(root, build, paths), "nothing to mend")


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
