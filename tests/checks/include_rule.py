"""Who may include whom: the rooms of src/ and what each may use, as docs/architecture.md tells it.

Reads the includes of every file in src/ and the targets in src/*/CMakeLists.txt. A file belongs to the windows when
its target links Qt or the room `kit`; all other files are windowless, and stay so. Within a room the units, each a
X.h with its X.cpp, include each other in no circle.
"""

import re
import sys
from dataclasses import dataclass, field
from pathlib import Path

from tree import report, sources, text_of

# The rooms below the subsystems, each with the rooms that it may use.
LOWER_ROOMS = {
    "base": set(),
    "db": {"base"},
    "disc": {"base"},
    "kit": {"base", "db"},
}
# The rooms within a large room, each with those that it may use beside itself. What stands directly in the large room
# may use all of them, and they do not look up to it.
INNER_ROOMS = {
    "disc": {
        "medium": set(),
        "system": {"medium"},
        "text": {"medium"},
        "executable": {"medium"},
        "folder": {"medium", "system"},
        "iso": {"medium"},
        "udf": {"medium"},
        "image": {"medium", "system", "iso", "udf"},
        "drives": {"medium", "system", "folder", "image"},
    },
    "db": {
        "value": set(),
        "schema": {"value"},
        "pattern": set(),
        "sqlite": {"value", "schema", "pattern"},
        "dialect": {"value", "schema", "pattern"},
        "engine": {"value", "schema", "sqlite"},
        "rows": {"value", "schema", "pattern", "sqlite", "dialect", "engine"},
    },
    "kit": {
        "common": set(),
        "controls": {"common"},
        "display": {"common", "controls"},
        "lists": {"common"},
        "program": {"common", "controls", "display"},
        "form": {"common", "controls", "display", "program"},
    },
}
# Of a large room's inner rooms others include these headers alone; a large room that is not here hides none.
OPEN_HEADERS = {
    "db": {
        "db/value/Value.h",
        "db/schema/Definitions.h",
        "db/schema/FileFormat.h",
        "db/sqlite/DatabaseFile.h",
        "db/sqlite/FileNaming.h",
        "db/sqlite/SchemaReader.h",
        "db/sqlite/SqliteError.h",
        "db/sqlite/WaitOnce.h",
    },
}
SUBSYSTEMS = {
    "app", "catalogue", "scanner", "explorer", "search", "programs", "workshop", "dirsim", "about",
}
# Puts the program together, so it may include everything; the windows, though, in one file alone.
WIRING = "program"
WIRING_FILE = "Wiring"

# What subsystems share, though they do not include each other.
SHARED_HEADERS = {
    "app/Module1.h",
    "app/Windows.h",
    "app/HandOver.h",
    "app/OpenSource.h",
    "catalogue/Discs.h",
    "catalogue/Names.h",
    "catalogue/Totals.h",
}

WINDOWS = (
    "Switch", "Loading", "Searching", "Scanform", "DeleteCD", "EXMain", "EXCDROM", "EXDir", "EXFile",
    "Search", "Results", "ProgTag", "Programs", "Workshop", "DirSim", "About",
)


@dataclass
class Library:
    """A library from outside: how its headers look, which rooms use it, and whether its headers stay in .cpp files."""

    headers: str
    rooms: set
    only_in_cpp: bool = True


WITH_WINDOWS = {"kit", WIRING} | SUBSYSTEMS
LIBRARIES = {
    "SQLite": Library(r"sqlite3(ext)?\.h", {"db"}),
    "utf8proc": Library(r"utf8proc\.h", {"base"}),
    "Qt": Library(r"Q[A-Za-z0-9]+(/.*)?|q[a-z]+\.h", WITH_WINDOWS, only_in_cpp=False),
    "the operating system": Library(
        r"(sys|linux|netinet|arpa|asm)/.*"
        r"|(unistd|fcntl|dirent|errno|signal|time|mntent|pwd|poll|dlfcn|endian|byteswap|spawn|glob|ftw|utime|iconv|stdio)\.h",
        {"base", "db", "disc", "kit", WIRING} | SUBSYSTEMS,
        only_in_cpp=False,
    ),
    "the standard library": Library(
        r"[a-z_0-9]+", set(LOWER_ROOMS) | SUBSYSTEMS | {WIRING}, only_in_cpp=False
    ),
}

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*([<"])([^">]+)[">]', re.MULTILINE)
GENERATED = re.compile(r"(moc_\w+\.cpp|\w+\.moc|ui_\w+\.h)")


@dataclass
class Target:
    room: str
    name: str
    stems: set = field(default_factory=set)  # names without extension; empty stands for all that is left
    links: list = field(default_factory=list)

    def has_windows(self):
        return any(link.startswith("Qt6::") or link == "discaro_kit" for link in self.links)


def read_targets(root):
    """The library targets that the rooms' CMakeLists.txt declare."""
    targets = []
    for path in sorted(Path(root, "src").glob("*/CMakeLists.txt")):
        room = path.parent.name
        text = re.sub(r"#.*", "", text_of(path))
        for name, rest in re.findall(r"\bdiscaro_room\(\s*(\w+)([^)]*)\)", text):
            targets.append(Target(room, name, links=rest.split()))
        for name, body in re.findall(r"\bdiscaro_library\(\s*(\w+)([^)]*)\)", text):
            files, _, links = body.partition("LINKS")
            named = [word for word in files.replace("SOURCES", " ").split() if "$" not in word]
            targets.append(Target(room, name, {Path(word).stem for word in named}, links.split()))
    return targets


class Tree:
    """The source tree with what the CMake files say of it."""

    def __init__(self, root):
        self.root = Path(root)
        self.targets = read_targets(root)
        self.paths = sources(root, {"src"})

    def target_of(self, path):
        """The target that a file of a room belongs to: the one that names it, else the one that takes the rest."""
        own = [target for target in self.targets if target.room == path.parts[1]]
        for target in own:
            if path.stem in target.stems:
                return target
        rest = [target for target in own if not target.stems]
        return rest[0] if rest else None

    def is_windowless(self, path):
        room = path.parts[1]
        if room in ("kit", WIRING):
            return False
        if room in LOWER_ROOMS:
            return True
        target = self.target_of(path)
        if target is not None:
            return not target.has_windows()
        # A header that no target names is a window's only where the room has nothing else.
        own = [target for target in self.targets if target.room == room]
        return not own or not all(target.has_windows() for target in own)


def library_of(header):
    for name, library in LIBRARIES.items():
        if re.fullmatch(library.headers, header):
            return name, library
    return None, None


def library_fault(path, room, windowless, header):
    name, library = library_of(header)
    if name is None:
        return f"<{header}> belongs to no library that the project uses"
    if room not in library.rooms:
        return f"{name} (<{header}>) is not for the room {room}"
    if name == "Qt" and windowless:
        return f"<{header}>: a part without windows includes no Qt header"
    if library.only_in_cpp and path.suffix == ".h":
        return f"<{header}>: {name} stays in .cpp files"
    return None


def window_of(stem):
    """The window that a file belongs to by its name, the longest name first: SearchFields.cpp is part of Search."""
    fitting = [window for window in WINDOWS if stem.startswith(window)]
    return max(fitting, key=len, default=None)


def inner_room_of(path):
    """The inner room that a file of src/ stands in, "" directly in its room."""
    return path.parts[2] if len(path.parts) > 3 else ""


def inner_room_fault(path, header):
    rooms = INNER_ROOMS.get(path.parts[1], {})
    inner, other = inner_room_of(path), inner_room_of(Path("src") / header)
    if inner in ("", other) or other in rooms.get(inner, ()):
        return None
    return f'"{header}": {inner} does not use {other or "what stands above it"}'


def own_room_fault(tree, path, windowless, header):
    other = Path("src") / header
    if fault := inner_room_fault(path, header):
        return fault
    if windowless and not tree.is_windowless(other):
        return f'"{header}": a part without windows includes no window'
    if other.stem in WINDOWS and window_of(path.stem) not in (None, other.stem):
        return f'"{header}": windows reach each other through app/Windows.h'
    return None


def room_fault(tree, path, room, windowless, header):
    """What is wrong with including a header of the project, if anything."""
    other = header.split("/")[0]
    if room == WIRING:
        wired = path.stem == WIRING_FILE or Path(header).stem not in WINDOWS
        return None if wired else f'"{header}": only {WIRING_FILE}.cpp includes windows'
    if other == room:
        return own_room_fault(tree, path, windowless, header)
    if other in OPEN_HEADERS and header.count("/") > 1 and header not in OPEN_HEADERS[other]:
        return f'"{header}": {other} keeps it to itself'
    if room in LOWER_ROOMS:
        return None if other in LOWER_ROOMS[room] else f'"{header}": {room} does not use {other}'
    if header in SHARED_HEADERS:
        if windowless and not tree.is_windowless(Path("src") / header):
            return f'"{header}": a part without windows includes no window'
        return None
    if other == "kit" and windowless:
        return f'"{header}": a part without windows does not use kit'
    if other in LOWER_ROOMS:
        return None
    return f'"{header}": subsystems do not include each other'


def file_faults(tree, path):
    room = path.parts[1] if len(path.parts) > 2 else None
    if room not in LOWER_ROOMS and room not in SUBSYSTEMS and room != WIRING:
        return ["this folder is no room of the table"]
    if inner_room_of(path) not in {"", *INNER_ROOMS.get(room, {})}:
        return ["this folder is no inner room of the table"]
    windowless = tree.is_windowless(path)
    faults = []
    for quote, header in INCLUDE.findall(text_of(tree.root / path) or ""):
        if quote == "<":
            faults.append(library_fault(path, room, windowless, header))
        elif GENERATED.fullmatch(header):
            continue
        elif "/" not in header or header.startswith("."):
            faults.append(f'"{header}": written as "room/File.h"')
        else:
            faults.append(room_fault(tree, path, room, windowless, header))
    return [fault for fault in faults if fault]


LINK_LIBRARIES = {
    "PkgConfig::SQLITE": {"db"},
    "PkgConfig::UTF8PROC": {"base"},
}


def room_linked(link):
    """The room of a target of ours, which is named after it."""
    return link.removeprefix("discaro_").removesuffix("_core")


def link_fault(target, link):
    if link in LINK_LIBRARIES:
        return None if target.room in LINK_LIBRARIES[link] else "is not for this room"
    if link.startswith("Qt6::"):
        return None if target.room in WITH_WINDOWS else "is not for this room"
    if not link.startswith("discaro_"):
        return "belongs to no library that the project uses"
    other = room_linked(link)
    if target.room in LOWER_ROOMS:
        allowed = LOWER_ROOMS[target.room]
    else:
        allowed = set(LOWER_ROOMS) | {"app", "catalogue", target.room}
    return None if other in allowed else "is not for this room"


def name_faults(targets):
    for target in targets:
        if target.name not in (target.room, f"{target.room}_core"):
            yield f"src/{target.room}/CMakeLists.txt: {target.name} is named neither after its room nor as its core"


def link_faults(targets):
    for target in targets:
        if target.room == WIRING:
            continue
        for link in target.links:
            if link in ("PUBLIC", "PRIVATE", "INTERFACE"):
                continue
            fault = link_fault(target, link)
            if fault:
                yield f"src/{target.room}/CMakeLists.txt: {target.name} links {link}, which {fault}"


def units_of(tree, room):
    """The units of a room, each with those of the room that its files include. A unit is a path without its ending."""
    units = {}
    for path in tree.paths:
        if path.parts[1] == room:
            headers = [Path(header) for _, header in INCLUDE.findall(text_of(tree.root / path) or "")]
            included = units.setdefault(path.relative_to("src").with_suffix(""), set())
            included.update(header.with_suffix("") for header in headers)
    return {unit: included & units.keys() - {unit} for unit, included in units.items()}


def circle_in(units):
    """The units that include each other, in a circle or on the way from one circle to another; the others go first."""
    left = dict(units)
    while True:
        included = set().union(*left.values())
        free = [unit for unit, others in left.items() if not others & left.keys() or unit not in included]
        if not free:
            return sorted(left)
        for unit in free:
            del left[unit]
        left = {unit: others & left.keys() for unit, others in left.items()}


def circle_faults(tree):
    for room in sorted({path.parts[1] for path in tree.paths}):
        circle = circle_in(units_of(tree, room))
        if circle:
            yield f"src: {', '.join(map(str, circle))} include each other in a circle"


def findings(root):
    tree = Tree(root)
    found = [f"{path}: {fault}" for path in tree.paths for fault in file_faults(tree, path)]
    return found + list(circle_faults(tree)) + list(name_faults(tree.targets)) + list(
        link_faults(tree.targets)
    )


def main(root):
    count = len(sources(root, {"src"}))
    if not count:
        return report(["src/ holds no source file"], "")
    return report(findings(root), f"{count} files include only what their rooms may use")


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
