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

WORDS = [
    r"\bspe[c]\.md\b",
    r"\b(the )?specificatio[n]s?\b",
    r"\bthe spe[c]\b",
    r"\bdesig[n]\.md\b",
    r"\bpart[s]? [0-9]+\.[0-9]+\b",
    r"\bissue[s]? #?[0-9]+\b",
    r"\bthe brie[f]\b",
]
MESSAGE_WORDS = WORDS + [r"\bspe[c]s?\b"]
# Absolute paths only: a folder of that name inside another one is something else.
PLACES = [r"(?<![\w.)}])" + place for place in (r"/[w]ork\b", r"/[f]arm\b", r"/[r]oot\b", r"/tmp/[b]ash_jobs")]

WORDING = re.compile("|".join(WORDS), re.IGNORECASE)
MESSAGE_WORDING = re.compile("|".join(MESSAGE_WORDS), re.IGNORECASE)
PLACE = re.compile("|".join(PLACES))


def lines_found(name, text):
    for number, line in enumerate(text.splitlines(), 1):
        if WORDING.search(line):
            yield f"{name}:{number}: refers to a text that is not in this tree: {line.strip()[:120]}"
        if PLACE.search(line):
            yield f"{name}:{number}: names a place on one computer: {line.strip()[:120]}"


def file_findings(root):
    for path in project_files(root):
        if WORDING.search(str(path)) or PLACE.search(str(path)):
            yield f"{path}: the name refers to a text that is not in this tree"
        text = text_of(Path(root) / path)
        if text is not None:
            yield from lines_found(path, text)


def message_findings(root):
    if not is_repository(root) or git(root, "rev-parse", "-q", "--verify", "HEAD") is None:
        return
    for entry in git(root, "log", "-z", "--format=%h%n%B").split("\0"):
        commit, _, message = entry.partition("\n")
        for line in message.splitlines():
            if MESSAGE_WORDING.search(line) or PLACE.search(line):
                yield f"commit {commit}: refers to a text that is not in this tree: {line.strip()[:120]}"


def findings(root):
    return list(file_findings(root)) + list(message_findings(root))


if __name__ == "__main__":
    sys.exit(report(findings(sys.argv[1]), "every text explains itself by what is in this tree"))
