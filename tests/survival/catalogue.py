"""The catalogue as any SQLite tool sees it: filled by hand, and counted again from its rows alone."""
import contextlib
import functools
import hashlib
import os
import shutil
import sqlite3

NAME = "kvt.mde"
JOURNAL = NAME + "-journal"
TABLES = ("Drive", "Directories", "Files", "Prog Tag", "Master Table")


class Wrong(Exception):
    """The catalogue is not as it must be."""


def expect(condition, what):
    if not condition:
        raise Wrong(what)


class Tree:
    """What is on a disc: the folders' paths, the disc's own first, and in each the files with their bytes."""

    def __init__(self, label, folders, files_in_each):
        self.label = label
        self.folders = {"": []}
        for each in range(folders):
            self.folders[f"D{each:03}"] = []
            for below in range(3):
                self.folders[f"D{each:03}/SUB{below}"] = []
        number = 0
        for files in self.folders.values():
            for _ in range(files_in_each):
                files.append((f"F{number:05}.TXT", number % 90 if number % 16 == 0 else 0))
                number += 1

    @functools.cache
    def rows(self):
        """What the catalogue holds of it: a set of paths and one of files in them."""
        shown = {path: "\\" + path.replace("/", "\\") for path in self.folders}
        return set(shown.values()), {(shown[path], name, size / 1024)
                                     for path, files in self.folders.items() for name, size in files}


def totals_of(own):
    """For each directory its own sums with those of all beneath it; beneath it, a sum of exactly 1 counts as none."""
    beneath = {directory: [0, 0, 0] for directory in own}
    for directory, sums in own.items():
        above = directory.rpartition("S")[0]
        while above:
            beneath[above] = [a + b for a, b in zip(beneath[above], sums)]
            above = above.rpartition("S")[0]
    return {directory: [a + (0 if b == 1 else b) for a, b in zip(sums, beneath[directory])]
            for directory, sums in own.items()}


def add_by_hand(connection, number, tree):
    """A disc with its rows, totals and one tag, as a scan leaves it."""
    connection.execute('INSERT INTO Drive("id number", "Drive letter", "prefered name", "volume name")'
                       " VALUES (?, 'D:\\', ?, ?)", (number, tree.label, tree.label))
    connection.execute('INSERT INTO "Prog Tag"("Prog name", "CD number") VALUES (?, ?)', (tree.label, number))
    numbers = {}
    children = {}
    for path, files in tree.folders.items():
        parent = os.path.dirname(path) if path else None
        children[parent] = children.get(parent, 0) + 1
        numbers[path] = f"C{number}D1" if parent is None else f"{numbers[parent]}S{children[parent]}"
        if path and parent == "":
            children[""] = children[parent]
        connection.execute(
            'INSERT INTO Directories("drive id number", "Parent id", "id number", "directory name", "Directory Path",'
            ' "number of files", Size) VALUES (?, ?, ?, ?, ?, ?, ?)',
            (number, "R" if parent is None else numbers[parent], numbers[path], os.path.basename(path) or "D:\\",
             "D:\\" + path.replace("/", "\\"), len(files), sum(size / 1024 for _, size in files)))
        connection.executemany('INSERT INTO Files("directory number", "file name", "file size") VALUES (?, ?, ?)',
                               [(numbers[path], name, size / 1024) for name, size in files])
    write_totals(connection, number)


def write_totals(connection, number):
    connection.execute('UPDATE Directories SET "number of subdirectories" = (SELECT count(*) FROM Directories AS below'
                       ' WHERE below."Parent id" = Directories."id number") WHERE "drive id number" = ?', (number,))
    own = {directory: sums for directory, *sums in connection.execute(
        'SELECT "id number", Size, "number of files", "number of subdirectories"'
        ' FROM Directories WHERE "drive id number" = ?', (number,))}
    connection.executemany(
        'UPDATE Directories SET "Total Size" = ?, "Total number of files" = ?,'
        ' "Total number of Subdirectories" = ? WHERE "id number" = ?',
        [(*sums, directory) for directory, sums in totals_of(own).items()])
    connection.execute(
        'UPDATE "Master Table" SET "scanned cd-roms" = max("scanned cd-roms", ?),'
        ' "real cd-roms scanned" = (SELECT count(*) FROM Drive),'
        ' "Total number of directories" = (SELECT count(*) FROM Directories),'
        ' "Total number of files" = (SELECT count(*) FROM Files),'
        ' "Total Size" = (SELECT sum("file size") FROM Files)', (number,))


def changes(folder):
    """The number that the file's head has for each committed change, read without a lock."""
    with open(os.path.join(folder, NAME), "rb") as file:
        return file.read(28)[24:28]


@contextlib.contextmanager
def opened(path):
    connection = sqlite3.connect(path)
    try:
        yield connection
    finally:
        connection.close()


def copied(folder, to):
    """The catalogue and what an interrupted change has left beside it, so that looking changes nothing."""
    shutil.rmtree(to, ignore_errors=True)
    os.makedirs(to)
    for name in (NAME, JOURNAL):
        if os.path.exists(os.path.join(folder, name)):
            shutil.copyfile(os.path.join(folder, name), os.path.join(to, name))
    return os.path.join(to, NAME)


def fingerprint(connection):
    """Of all rows of all tables."""
    digest = hashlib.sha256()
    for table in TABLES:
        for row in connection.execute(f'SELECT * FROM "{table}" ORDER BY rowid'):
            digest.update(repr(row).encode())
    return digest.hexdigest()


def check(connection, trees):
    """That it is sound and holds exactly these discs, by number, with all their rows and right totals."""
    found = connection.execute("PRAGMA integrity_check").fetchall()
    expect(found == [("ok",)], f"integrity check: {found[:3]}")
    discs = [number for number, in connection.execute('SELECT "id number" FROM Drive ORDER BY 1')]
    expect(discs == sorted(trees), f"discs {discs} instead of {sorted(trees)}")
    for number, tree in trees.items():
        check_disc(connection, number, tree)
    check_nothing_else(connection)
    check_master(connection, trees)


def check_disc(connection, number, tree):
    paths, files = tree.rows()
    rows = connection.execute(
        'SELECT "id number", coalesce(Size, -1), "number of files", "number of subdirectories", "Directory Path",'
        ' "Total Size", "Total number of files", "Total number of Subdirectories", "Parent id"'
        ' FROM Directories WHERE "drive id number" = ?', (number,)).fetchall()
    path_of = {row[0]: row[4][2:] for row in rows}
    expect(set(path_of.values()) == paths and len(rows) == len(paths), f"disc {number}: not its directories")
    held = [(path_of[directory], name, size) for directory, name, size in connection.execute(
        'SELECT "directory number", "file name", "file size" FROM Files WHERE "directory number" IN'
        ' (SELECT "id number" FROM Directories WHERE "drive id number" = ?)', (number,))]
    expect(len(held) == len(files) and set(held) == files, f"disc {number}: {len(held)} files, not its {len(files)}")
    own = {directory: [0.0, 0, 0] for directory in path_of}
    directory_of = {path: directory for directory, path in path_of.items()}
    for path, _, size in held:
        own[directory_of[path]][0] += size
        own[directory_of[path]][1] += 1
    for row in rows:
        if row[8] != "R":
            own[row[8]][2] += 1
    totals = totals_of(own)
    for row in rows:
        for place in range(3):
            expect(abs(row[1 + place] - own[row[0]][place]) < 1e-6, f"directory {row[0]}: its own sums {row}")
            expect(abs(row[5 + place] - totals[row[0]][place]) < 1e-6, f"directory {row[0]}: {row}, {totals[row[0]]}")


def check_nothing_else(connection):
    for what, query in {
            "directories of no disc":
                'SELECT count(*) FROM Directories WHERE "drive id number" NOT IN (SELECT "id number" FROM Drive)',
            "files of no directory":
                'SELECT count(*) FROM Files WHERE "directory number" NOT IN (SELECT "id number" FROM Directories)',
            "tags of no disc":
                'SELECT count(*) FROM "Prog Tag" WHERE "CD number" NOT IN (SELECT "id number" FROM Drive)'}.items():
        count, = connection.execute(query).fetchone()
        expect(count == 0, f"{count} {what}")


def check_master(connection, trees):
    row = connection.execute('SELECT "real cd-roms scanned", "Total number of directories", "Total number of files",'
                             ' "Total Size", "scan error" FROM "Master Table"').fetchone()
    directories = sum(len(tree.folders) for tree in trees.values())
    sizes = [size / 1024 for tree in trees.values() for files in tree.folders.values() for _, size in files]
    expect(row[:3] == (len(trees), directories, len(sizes)), f"master row {row}")
    expect(abs(row[3] - sum(sizes)) < 1e-6, f"total size {row[3]}, not {sum(sizes)}")
    expect(row[4] == "no error", f"scan error is {row[4]}")
