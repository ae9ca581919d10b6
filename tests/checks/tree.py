"""The files of the source tree, as the checks see them."""

import os
import subprocess
from pathlib import Path

OUTSIDE = {".git", "build", "dist", ".cache", "__pycache__"}


def git(root, *arguments):
    """Git's output as text, or None where git says no."""
    command = ["git", "-c", "safe.directory=*", "-C", str(root), *arguments]
    try:
        done = subprocess.run(command, capture_output=True, check=True)
    except (OSError, subprocess.CalledProcessError):
        return None
    return done.stdout.decode("utf-8", "replace")


def is_repository(root):
    top = git(root, "rev-parse", "--show-toplevel")
    return top is not None and Path(top.strip()).resolve() == Path(root).resolve()


def project_files(root):
    """All files that are the project's: tracked ones and new ones, no build products. Sorted, relative to root."""
    root = Path(root)
    if is_repository(root):
        listed = git(root, "ls-files", "-z", "--cached", "--others", "--exclude-standard").split("\0")
        return sorted(Path(name) for name in listed if name and (root / name).is_file())
    found = []
    for folder, folders, names in os.walk(root):
        folders[:] = [name for name in folders if name not in OUTSIDE]
        found += [(Path(folder) / name).relative_to(root) for name in names]
    return sorted(found)


def sources(root, folders):
    """The C++ files under the folders, in the tree's order."""
    return [
        path
        for path in project_files(root)
        if path.parts[0] in folders and path.suffix in (".cpp", ".h")
    ]


def text_of(path):
    """The file's text; None for a file that is not text."""
    content = Path(path).read_bytes()
    if b"\0" in content[:8192]:
        return None
    return content.decode("utf-8", "replace")


def report(findings, good):
    """Prints what was found and gives the exit code: 1 when there is anything to mend."""
    for finding in findings:
        print(finding)
    print(good if not findings else f"{len(findings)} to mend")
    return 1 if findings else 0
