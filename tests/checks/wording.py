"""Code, comments, tests, documents, file names and commit messages explain the system by what stands in this tree.

Whoever reads them has the tree and nothing else. A word that sends them to a text elsewhere, by its name or by a number
in it, stands in place of the reason that they look for, and says nothing where that text is not at hand. An absolute
path of one computer is wrong on every other.

The patterns below are written with brackets in them so that this file does not find itself.
"""

import re
import sys
from pathlib import Path

from tree import git, is_repository, project_files, report, text_of

WORDS = [r"\b(the )?specificatio[n]s?\b", r"\bthe spe[c]\b", r"\bpart[s]? [0-9]+\.[0-9]+\b", r"\bissue[s]? #?[0-9]+\b"]
# In names and messages, where nothing stands around it.
STRICT_WORDS = WORDS + [r"\bspe[c]s?\b"]
WORDING = re.compile("|".join(WORDS), re.IGNORECASE)
STRICT_WORDING = re.compile("|".join(STRICT_WORDS), re.IGNORECASE)

DOCUMENT = re.compile(r"(?<![\w./{*-])([\w-]+\.md)\b")

# Folders that every system has; one of the user's own lies below.
SHARED_FOLDERS = {"home", "media", "mnt", "opt", "srv", "tmp", "usr", "var"}


def own_places(root):
    """Where this tree lies and whose home it is, as a pattern: absolute paths alone, not a folder of such a name.

    A folder at the root that is called like one of the tree's, as /src or /app, says nothing of a computer.
    """
    tree = Path(root).resolve()
    top = Path(*tree.parts[: 3 if tree.parts[1] in SHARED_FOLDERS else 2])
    common = {"build", "dist", ""} | {part for path in project_files(root) for part in Path(path).parts}
    places = {place for place in (top, Path.home()) if len(place.parts) > 2 or place.name not in common}
    return re.compile(rf"(?<![\w.)}}])({'|'.join(re.escape(str(place)) for place in places) or '(?!)'})\b")


def names_missing_document(line, documents):
    return any(name not in documents for name in DOCUMENT.findall(line))


def lines_found(name, text, place, documents):
    for number, line in enumerate(text.splitlines(), 1):
        if WORDING.search(line) or names_missing_document(line, documents):
            yield f"{name}:{number}: refers to a text that is not in this tree: {line.strip()[:120]}"
        if place.search(line):
            yield f"{name}:{number}: names a place on one computer: {line.strip()[:120]}"


def file_findings(root, place):
    paths = list(project_files(root))
    documents = {Path(path).name for path in paths}
    for path in paths:
        if STRICT_WORDING.search(str(path)):
            yield f"{path}: the name refers to a text that is not in this tree"
        text = text_of(Path(root) / path)
        if text is not None:
            yield from lines_found(path, text, place, documents)


def message_findings(root, place):
    if not is_repository(root) or git(root, "rev-parse", "-q", "--verify", "HEAD") is None:
        return
    for entry in git(root, "log", "-z", "--format=%h%n%B").split("\0"):
        commit, _, message = entry.partition("\n")
        for line in message.splitlines():
            if STRICT_WORDING.search(line) or place.search(line):
                yield f"commit {commit}: refers to a text that is not in this tree: {line.strip()[:120]}"


def findings(root):
    place = own_places(root)
    return list(file_findings(root, place)) + list(message_findings(root, place))


if __name__ == "__main__":
    sys.exit(report(findings(sys.argv[1]), "every text explains itself by what is in this tree"))
