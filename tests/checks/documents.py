"""The documents, the commands and the data files are there, and say the same as the build.

Links between documents lead to files; the table in docs/third-party.md names the libraries that CMake links and
the packages that ./run and ./test install; the commands pass shellcheck; the category list keeps its grammar; the
desktop entry, the metainfo file and the version agree.
"""

import configparser
import os
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from tree import project_files, report, text_of

DOCUMENTS = [
    "README.md",
    "CONTRIBUTING.md",
    "LICENSE",
    "docs/architecture.md",
    "docs/catalogue-format.md",
    "docs/third-party.md",
    "docs/user-guide.md",
]
COMMANDS = ["run", "test", ".ci/run"]
SOURCED = ["scripts/steps.sh", "scripts/packages.sh"]
DATA = ["data/kvt.ini", "data/com.quorlen.Discaro.desktop", "data/com.quorlen.Discaro.metainfo.xml", "data/discaro.1"]


def missing_files(root):
    for name in DOCUMENTS + COMMANDS + SOURCED + DATA:
        path = root / name
        if not path.is_file() or not path.stat().st_size:
            yield f"{name}: missing"
        elif name in COMMANDS and not os.access(path, os.X_OK):
            yield f"{name}: not executable"


def broken_links(root):
    for path in project_files(root):
        if path.suffix != ".md":
            continue
        for target in re.findall(r"\]\(([^)#\s]+)[^)]*\)", text_of(root / path)):
            if "://" not in target and not (root / path.parent / target).exists():
                yield f"{path}: the link to {target} leads nowhere"


def linked_by_cmake(root):
    """The names by which CMake looks libraries up, tests' and benchmarks' included."""
    names = set()
    for path in project_files(root):
        if path.name != "CMakeLists.txt" and path.suffix != ".cmake":
            continue
        text = re.sub(r"#.*", "", text_of(root / path))
        for arguments in re.findall(r"pkg_check_modules\(([^)]*)\)", text):
            names.update(
                word for word in arguments.split()[1:] if word not in ("REQUIRED", "IMPORTED_TARGET", "QUIET")
            )
        for package, rest in re.findall(r"find_package\(\s*(\w+)([^)]*)\)", text):
            parts = rest.partition("COMPONENTS")[2].split()
            names.update(f"{package}::{part}" for part in parts if package.startswith("Qt"))
            if not package.startswith("Qt"):
                names.add(package)
    return names - {"PkgConfig", "Python3", "Threads"}


def table_rows(root):
    """The cells of the table in docs/third-party.md: library, CMake name, Debian package, licence, use."""
    text = text_of(root / "docs/third-party.md")
    rows = [[cell.strip() for cell in line.strip("| \n").split("|")] for line in text.splitlines() if line[:1] == "|"]
    return [row for row in rows if len(row) == 5][2:]


def in_backquotes(cell):
    return set(re.findall(r"`([^`]+)`", cell))


def third_party_findings(root):
    linked = linked_by_cmake(root)
    rows = table_rows(root)
    told = set().union(*(in_backquotes(row[1]) for row in rows))
    for name in sorted(linked - told):
        yield f"docs/third-party.md: CMake links {name}, which the table does not name"
    for name in sorted(told - linked):
        yield f"docs/third-party.md: the table names {name}, which CMake does not link"
    installed = set(re.findall(r"[\w.+-]+", text_of(root / "scripts/packages.sh")))
    for row in rows:
        if not row[3] or not row[4]:
            yield f"docs/third-party.md: {row[0]} lacks its licence or its use"
        for package in sorted(in_backquotes(row[2])):
            if package not in installed:
                yield f"docs/third-party.md: {package} is in no list of scripts/packages.sh"


def script_findings(root):
    command = ["shellcheck", "-x", *COMMANDS, *SOURCED]
    done = subprocess.run(command, cwd=root, capture_output=True, text=True)
    if done.returncode:
        yield done.stdout + done.stderr


def category_findings(root):
    """Headers are "[Name]" to the last character; each has subcategories, and an empty line behind them."""
    categories = {}
    current = None
    for number, line in enumerate(text_of(root / "data/kvt.ini").splitlines(), 1):
        place = f"data/kvt.ini:{number}"
        if line != line.rstrip():
            yield f"{place}: ends in a blank, which belongs to the name"
        if line.startswith("["):
            current = line[1:-1]
            if not re.fullmatch(r"\[[^\[\]]+\]", line):
                yield f"{place}: a header is [Name]"
            if current in categories:
                yield f"{place}: the category {current} stands here a second time"
            categories[current] = []
        elif not line:
            current = None
        elif current is not None:
            if line in categories[current]:
                yield f"{place}: {line} stands here a second time"
            if len(line) > 50:
                yield f"{place}: longer than the 50 characters that the entry box takes"
            categories[current].append(line)
        elif categories:
            yield f"{place}: belongs to no category"
    for name, entries in categories.items():
        if not entries:
            yield f"data/kvt.ini: the category {name} has no subcategory"
    if len(categories) < 20:
        yield f"data/kvt.ini: {len(categories)} categories are too few to be useful"


def desktop_findings(root):
    parser = configparser.ConfigParser(interpolation=None)
    parser.optionxform = str
    parser.read(root / "data/com.quorlen.Discaro.desktop", encoding="utf-8")
    entry = parser["Desktop Entry"] if parser.has_section("Desktop Entry") else {}
    expected = {"Type": "Application", "Name": "Discaro", "Exec": "discaro", "Icon": "discaro", "Terminal": "false"}
    for key, value in expected.items():
        if entry.get(key) != value:
            yield f"data/com.quorlen.Discaro.desktop: {key} is {entry.get(key)}, not {value}"


def metainfo_findings(root):
    name = "data/com.quorlen.Discaro.metainfo.xml"
    component = ElementTree.parse(root / name).getroot()
    if component.findtext("launchable") != "com.quorlen.Discaro.desktop":
        yield f"{name}: does not launch com.quorlen.Discaro.desktop"
    if f"{component.findtext('id')}.metainfo.xml" != Path(name).name:
        yield f"{name}: the id is not the file's name"
    version = re.search(r"project\(\s*Discaro\s+VERSION\s+([\d.]+)", text_of(root / "CMakeLists.txt"))
    release = component.find("releases/release")
    told = release.get("version") if release is not None else None
    if version is None or told != version.group(1):
        yield f"{name}: release {told}, but CMakeLists.txt says {version and version.group(1)}"


CHECKS = [
    broken_links, third_party_findings, script_findings, category_findings, desktop_findings, metainfo_findings,
]


def findings(root):
    root = Path(root)
    missing = list(missing_files(root))
    if missing:
        return missing
    return [finding for check in CHECKS for finding in check(root)]


if __name__ == "__main__":
    sys.exit(report(findings(sys.argv[1]), "documents, commands and data files are there and agree"))
