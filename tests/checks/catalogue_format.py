"""docs/catalogue-format.md tells the tables as a new catalogue has them: every field at its position, with its type.

Arguments: the project's folder, and the tool that makes a catalogue (make_catalogue).
"""

import re
import sqlite3
import subprocess
import sys
import tempfile
from pathlib import Path

from tree import report, text_of

# The declared type that stands for each word of the document.
DECLARED = {
    "integer": "INTEGER",
    "number": "DOUBLE",
    "text": "TEXT",
    "long text": "LONGTEXT",
    "date": "DATE",
    "yes/no": "BOOLEAN",
}


def tables_in_document(text):
    """{table: [(field, type), ...]} from the document's sections; the positions must count up from 0."""
    tables = {}
    for title, body in re.findall(r"^## ([^\n]+)\n(.*?)(?=^## |\Z)", text, re.MULTILINE | re.DOTALL):
        rows = re.findall(r"^\| (\d+) \| `([^`]+)` \| ([^|]+?) \|", body, re.MULTILINE)
        if rows:
            assert [int(row[0]) for row in rows] == list(range(len(rows))), f"positions of {title}"
            tables[title] = [(field, kind) for _, field, kind in rows]
    return tables


def tables_in_catalogue(path):
    with sqlite3.connect(path) as store:
        names = [row[0] for row in store.execute("select name from sqlite_master where type = 'table'")]
        return {
            name: [(row[1], row[2]) for row in store.execute(f'pragma table_info("{name}")')]
            for name in names
            if not name.startswith("sqlite_")
        }


def table_findings(name, told, real):
    if [field for field, _ in told] != [field for field, _ in real]:
        yield f"{name}: the fields are {[field for field, _ in real]}"
        return
    for (field, kind), (_, declared) in zip(told, real):
        if declared != DECLARED[kind]:
            yield f"{name}.{field}: told as {kind}, declared as {declared}"


def compare(told, real):
    for name in sorted(told.keys() ^ real.keys()):
        yield f"{name}: only the {'document' if name in told else 'catalogue'} has this table"
    for name in sorted(told.keys() & real.keys()):
        yield from table_findings(name, told[name], real[name])


def findings(root, make_catalogue):
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([make_catalogue, folder], check=True)
        real = tables_in_catalogue(Path(folder, "kvt.mde"))
    return list(compare(tables_in_document(text_of(Path(root, "docs/catalogue-format.md"))), real))


if __name__ == "__main__":
    sys.exit(report(findings(*sys.argv[1:3]), "the document tells the tables as they are"))
