#!/usr/bin/env python3
"""Starts the program over catalogues that can't be opened: each time it must say so in a box, then end with status 1.

The real program runs on a virtual display of its own. Run as root it gives its rights away where a file is to be closed
to it.
"""
import argparse
import contextlib
import os
import shutil
import sqlite3
import subprocess
import sys
import tempfile

import catalogue
import desktop

NOBODY = 65534


class Start(desktop.Program):
    """A start of which it is not yet known how it goes."""

    def wait_for_start(self):
        pass

    def box_came(self):
        """Whether a box came up; the menu, of the same title, is square."""
        self.wait_for_window(self.MENU)
        self.wait_until_idle()
        catalogue.expect(self.is_running(), "the program has ended without waiting for an answer")
        width, height = self.display.active_size()
        return width != height

    def answer(self):
        self.display.press("space")
        return self.wait_for_end()


def own_rights_taken():
    """The command that runs another one without the rights of root; none where there are none."""
    return [] if os.geteuid() else ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups"]


def read_only(folder):
    """The command that runs another one with the folder on a read-only file system; none where that is not allowed."""
    by = ["unshare", "--mount" if os.geteuid() == 0 else "--map-root-user", "--mount", "sh", "-c",
          'mount --bind "$0" "$0" && mount -o remount,bind,ro "$0" && exec "$@"', folder]
    return by if subprocess.run([*by, "true"], stderr=subprocess.DEVNULL).returncode == 0 else []


def close_to_others(path):
    """Takes the right to write away from whoever runs without the rights of root."""
    for place, _, names in os.walk(path):
        for name in names:
            os.chmod(os.path.join(place, name), 0o555 if name == "discaro" else 0o444)
    os.chmod(path, 0o555)


def random_bytes(path):
    with open(path, "wb") as file:
        file.write(os.urandom(100_000))


def text_of_another(path, text):
    with open(path, "w") as file:
        file.write(text)


def cut_short(path):
    os.truncate(path, os.path.getsize(path) // 2)


def head_alone(path):
    os.truncate(path, 100)


def another_schema(path):
    os.remove(path)
    change(path, "CREATE TABLE Drive(name TEXT)")


def change(path, *statements):
    with catalogue.opened(path) as connection, connection:
        for statement in statements:
            connection.execute(statement)


def replaced(path, make):
    os.remove(path)
    make(path)


def interrupted(path):
    """Leaves a change half done: part of it in the file, and the journal that takes it back."""
    whole = path + ".whole"
    shutil.copyfile(path, whole)
    with catalogue.opened(whole) as connection:
        connection.execute("PRAGMA cache_size=2")
        connection.execute("BEGIN")
        connection.executemany('INSERT INTO "Prog Tag"("Prog name", "CD number") VALUES (?, 1)',
                               [("x" * 500,) for _ in range(2000)])
        shutil.copyfile(whole, path)
        shutil.copyfile(whole + "-journal", path + "-journal")
        connection.rollback()
    os.remove(whole)
    with open(path + "-journal", "rb") as journal:
        catalogue.expect(journal.read(8) == b"\xd9\xd5\x05\xf9\x20\xa1\x63\xd7", "the journal would not be played")


# What is done to the file, by what a user would say of it.
SPOILT = {
    "random bytes": random_bytes,
    "a text": lambda path: text_of_another(path, "not a catalogue\n" * 40),
    "empty": lambda path: os.truncate(path, 0),
    "cut short": cut_short,
    "cut to its head": head_alone,
    "another schema": another_schema,
    "another program's": lambda path: change(path, "PRAGMA application_id=1"),
    "a missing table": lambda path: change(path, "DROP TABLE Files"),
    "a missing column": lambda path: change(path, 'ALTER TABLE Drive RENAME COLUMN "Comments" TO "Remarks"'),
    "a directory": lambda path: replaced(path, os.mkdir),
    "a FIFO": lambda path: replaced(path, os.mkfifo),
    "a dangling link": lambda path: replaced(path, lambda name: os.symlink("/nowhere/kvt.mde", name)),
    "a link to itself": lambda path: replaced(path, lambda name: os.symlink("kvt.mde", name)),
    "a device": lambda path: replaced(path, lambda name: os.symlink("/dev/zero", name)),
}


class Starts:
    def __init__(self, binary, base):
        self.base = base
        self.binary = shutil.copy2(binary, os.path.join(base, "program"))
        self.display = desktop.Display(base)
        self.sound = self.folder_of("sound")

    def folder_of(self, name):
        """An application folder with the program, and with a sound catalogue once there is one."""
        folder = os.path.join(self.base, name.replace(" ", "-"))
        os.makedirs(folder)
        os.link(self.binary, os.path.join(folder, "discaro"))
        if hasattr(self, "sound"):
            shutil.copyfile(os.path.join(self.sound, catalogue.NAME), os.path.join(folder, catalogue.NAME))
        return folder

    def sound_one(self):
        """Makes the catalogue, and shows that a start without a fault comes to the menu."""
        start = Start(self.display, self.sound)
        catalogue.expect(not start.box_came(), "a box over a sound catalogue")
        start.kill()

    def fails(self, name, folder, by=()):
        for each in (folder, os.path.join(folder, catalogue.NAME)):
            catalogue.expect(os.path.lexists(each), f"{each} is not there")
        start = Start(self.display, folder, by=by)
        catalogue.expect(start.box_came(), f"{name}: the menu came instead of a box")
        status = start.answer()
        catalogue.expect(status == 1, f"{name}: status {status}")
        print(f"  {name}: told, then ended with status 1", flush=True)

    def spoilt(self, name, spoil):
        folder = self.folder_of(name)
        spoil(os.path.join(folder, catalogue.NAME))
        self.fails(name, folder)

    def not_permitted(self):
        folder = self.folder_of("no permission")
        os.chmod(os.path.join(folder, catalogue.NAME), 0)
        by = own_rights_taken()
        if by:
            os.makedirs(os.path.join(folder, "runtime"), mode=0o700)
            for each in (folder, os.path.join(folder, "runtime")):
                os.chown(each, NOBODY, NOBODY)
        self.fails("no permission", folder, by)

    def locked(self):
        folder = self.folder_of("locked")
        with contextlib.closing(sqlite3.connect(os.path.join(folder, catalogue.NAME))) as other:
            other.execute("BEGIN EXCLUSIVE")
            self.fails("locked by another program", folder)

    def interrupted_and_read_only(self):
        folder = self.folder_of("interrupted")
        interrupted(os.path.join(folder, catalogue.NAME))
        runtime = os.path.join(folder, "runtime")
        os.symlink(tempfile.mkdtemp(dir=self.base), runtime)
        by = read_only(folder)
        if not by:
            print("  no right to mount: a folder that can't be written to", flush=True)
            by = own_rights_taken()
            if by:
                os.chown(os.path.realpath(runtime), NOBODY, NOBODY)
            close_to_others(folder)
        self.fails("a half done change, read-only", folder, by)
        os.chmod(folder, 0o755)

    def run(self):
        self.sound_one()
        for name, spoil in SPOILT.items():
            self.spoilt(name, spoil)
        self.not_permitted()
        self.locked()
        self.interrupted_and_read_only()


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="the built program")
    options = parser.parse_args()
    base = tempfile.mkdtemp(prefix="st-")
    os.chmod(base, 0o711)
    starts = Starts(os.path.abspath(options.program), base)
    try:
        starts.run()
    except (catalogue.Wrong, desktop.Lost, subprocess.TimeoutExpired) as problem:
        starts.display.photograph(os.path.join(base, "screen.png"))
        print(f"FAILED: {problem}; all of it is left in {base}", flush=True)
        return 1
    finally:
        starts.display.close()
    shutil.rmtree(base)
    return 0


if __name__ == "__main__":
    sys.exit(main())
