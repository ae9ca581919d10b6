#!/usr/bin/env python3
"""Kills the program in the middle of scans and deletions, and fills its disk, and looks whether the catalogue survives.

The real program runs on a virtual display of its own, in an application folder of its own, driven by keyboard. Its
catalogue holds discs beforehand. After each kill the catalogue must be sound and hold exactly the discs that were
committed, with all their rows and right totals; the program must start again and scan another disc.
"""
import argparse
import collections
import filecmp
import os
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

import catalogue
import desktop
import image

NEXT_NAME = "Next"
BIG_NAME = "Big"


class Work:
    """One kind of work that is interrupted: what is there before, what after, and how it is begun."""

    def __init__(self, name, folder, before, after, highest, prepare):
        self.name = name
        self.folder = folder  # the catalogue beforehand
        self.before = before  # discs by number
        self.after = after
        self.highest = highest  # number handed out, before and after
        self.prepare = prepare  # brings the program to the last key press
        self.prints = {}        # fingerprints of both states
        self.begins = 0.0       # seconds from the key press to the transaction, and to its end
        self.ends = 0.0
        self.writes = 0.0  # seconds at the end in which the catalogue's file itself is written

    def learn(self, moment, fell):
        """The machine is not always as fast as at the rehearsal: the moments follow it."""
        if fell == "after":
            self.ends = min(self.ends, moment)
        elif fell == "inside":
            self.ends = max(self.ends, moment * 1.02)


class Rounds:
    def __init__(self, binary, base, files):
        self.base = base
        self.folder = os.path.join(base, "application")
        self.kept = os.path.join(base, "looked-at")
        self.tally = collections.Counter()
        os.makedirs(self.folder)
        shutil.copy2(binary, os.path.join(self.folder, "discaro"))
        self.display = desktop.Display(base)
        self.first = {1: catalogue.Tree("First", 12, 4), 2: catalogue.Tree("Second", 30, 3)}
        self.big = catalogue.Tree(BIG_NAME, files // 160, 40)
        self.next = catalogue.Tree(NEXT_NAME, 3, 2)
        self.big_image = self.image(self.big)
        self.next_image = self.image(self.next)

    def image(self, tree):
        path = os.path.join(self.base, tree.label.lower() + ".iso")
        image.Image(tree.label, tree.folders).write(path)
        return path

    def start(self, folder=None, limit=None):
        return desktop.Program(self.display, folder or self.folder, limit)

    def restore(self, source, to=None):
        to = to or self.folder
        for name in (catalogue.NAME, catalogue.JOURNAL):
            if os.path.exists(os.path.join(to, name)):
                os.remove(os.path.join(to, name))
        shutil.copyfile(os.path.join(source, catalogue.NAME), os.path.join(to, catalogue.NAME))

    def look(self, trees, folder=None):
        """Checks the catalogue as it lies there, without touching it; returns its fingerprint."""
        with catalogue.opened(catalogue.copied(folder or self.folder, self.kept)) as connection:
            catalogue.check(connection, trees)
            return catalogue.fingerprint(connection)

    def journal(self):
        return os.path.exists(os.path.join(self.folder, catalogue.JOURNAL))

    def rehearse(self, work):
        """The work from beginning to end, its time taken and its result kept."""
        self.restore(work.folder)
        work.prints["before"] = self.look(work.before)
        program = self.start()
        work.prepare(program)
        work.begins, work.ends, work.writes = self.timed(program)
        program.wait_until_idle()
        program.kill()
        work.prints["after"] = self.look(work.after)

    def timed(self, program):
        start = time.monotonic()
        untouched = self.written()
        program.confirm()
        desktop.wait_for("the work's beginning", self.journal)
        begins = time.monotonic()
        desktop.wait_for("the work's writing", lambda: self.written() != untouched, 60)
        writing = time.monotonic()
        desktop.wait_for("the work's end", lambda: not self.journal())
        ends = time.monotonic()
        return begins - start, ends - start, ends - writing

    def written(self):
        """When the catalogue's file was written last."""
        return os.stat(os.path.join(self.folder, catalogue.NAME)).st_mtime_ns

    def rehearsed(self):
        """Scan and deletion of the big disc, each ready to be interrupted."""
        empty = os.path.join(self.base, "before-scan")
        full = os.path.join(self.base, "before-deletion")
        os.makedirs(empty)
        os.makedirs(full)
        self.start().kill()  # makes the empty catalogue
        with catalogue.opened(os.path.join(self.folder, catalogue.NAME)) as connection, connection:
            for number, tree in self.first.items():
                catalogue.add_by_hand(connection, number, tree)
        shutil.copy(os.path.join(self.folder, catalogue.NAME), empty)
        with_big = {**self.first, 3: self.big}
        scan = Work("scan", empty, self.first, with_big, (2, 3),
                    lambda program: program.to_scan(self.big_image, BIG_NAME))
        self.rehearse(scan)
        shutil.copy(os.path.join(self.folder, catalogue.NAME), full)
        deletion = Work("deletion", full, with_big, self.first, (3, 3),
                        lambda program: program.to_deletion(2))
        self.rehearse(deletion)
        return scan, deletion

    def interrupt(self, work, chance):
        """One kill at a random moment, and what it left."""
        self.restore(work.folder)
        program = self.start()
        work.prepare(program)
        moment = self.await_moment(work, chance, program)
        program.kill()
        inside = self.journal()
        half_written = not filecmp.cmp(*(os.path.join(place, catalogue.NAME) for place in (work.folder, self.folder)),
                                       shallow=False)
        with catalogue.opened(catalogue.copied(self.folder, self.kept)) as connection:
            discs = {number for number, in connection.execute('SELECT "id number" FROM Drive')}
        state = "after" if discs == set(work.after) else "before"
        there = getattr(work, state)
        catalogue.expect(self.look(there) == work.prints[state], f"rows are not those {state} the {work.name}")
        catalogue.expect(not (inside and state == "after"), "committed with its journal left")
        fell = "inside" if inside else state
        self.tally[work.name, fell] += 1
        work.learn(moment, fell)
        if inside and half_written:
            self.tally[work.name, "half written"] += 1
        self.scan_next(there, work.highest[state == "after"] + 1)
        return moment, fell

    def await_moment(self, work, chance, program):
        """Begins the work and lets some of it happen; returns the seconds since the key press.

        Some moments lie in the short time in which the catalogue's file is written, some close around the beginning,
        the others evenly from the key press to a little after the end.
        """
        kind = chance.random()
        evenly = chance.random()
        untouched = self.written()
        start = time.monotonic()
        program.confirm()
        if kind < 0.3:
            desktop.wait_for("the writing", lambda: self.written() != untouched, 60)
            time.sleep(evenly * work.writes * 1.2)
        else:
            span = 3 * work.begins if kind < 0.4 else 1.1 * work.ends
            time.sleep(max(0.0, evenly * span - (time.monotonic() - start)))
        return time.monotonic() - start

    def scan_next(self, there, number, program=None):
        """The program, started anew when none is given, scans one more disc, which gets that number."""
        program = program or self.start()
        program.to_scan(self.next_image, NEXT_NAME)
        before = catalogue.changes(self.folder)
        program.confirm()
        desktop.wait_for("the next scan", lambda: catalogue.changes(self.folder) != before and not self.journal())
        program.kill()
        self.look({**there, number: self.next})


def fill_disk(rounds, work, limits):
    """The scan under a limit of the size of files: told in a box, nothing kept, and possible again afterwards."""
    for limit in limits:
        rounds.restore(work.folder)
        program = rounds.start(limit=limit)
        work.prepare(program)
        program.confirm()
        boxes = failure_told(program)
        catalogue.expect(rounds.look(work.before) == work.prints["before"], "the failed scan left something")
        program.lift_limit()
        rounds.scan_next(work.before, work.highest[0] + 1, program)
        rounds.tally["full disk", "told"] += 1
        print(f"  limit of {limit} bytes: {boxes} box, catalogue as before, next scan well", flush=True)


def fill_file_system(rounds, work, rooms):
    """The same where the file system itself is full, which needs the right to mount one."""
    folder = os.path.join(rounds.base, "small")
    os.makedirs(folder)
    size = os.path.getsize(os.path.join(rounds.folder, "discaro")) + (48 << 20)
    if subprocess.run(["mount", "-t", "tmpfs", "-o", f"size={size}", "discaro-survival", folder],
                      stderr=subprocess.DEVNULL).returncode != 0:
        print("  no right to mount a small file system: limits of the file size alone", flush=True)
        return
    ballast = os.path.join(folder, "ballast")
    application, rounds.folder = rounds.folder, folder
    try:
        shutil.copy2(os.path.join(application, "discaro"), folder)
        for room in rooms:
            rounds.restore(work.folder)
            program = rounds.start()
            work.prepare(program)
            fill(ballast, room)
            program.confirm()
            boxes = failure_told(program)
            os.remove(ballast)
            catalogue.expect(rounds.look(work.before) == work.prints["before"], "the failed scan left something")
            rounds.scan_next(work.before, work.highest[0] + 1, program)
            rounds.tally["full disk", "told"] += 1
            print(f"  {room} bytes free: {boxes} box, catalogue as before, next scan well", flush=True)
    finally:
        rounds.folder = application
        subprocess.run(["umount", "-l", folder], check=True)


def fill(ballast, room):
    """Leaves that much room on the file system, in whole blocks."""
    place = os.statvfs(os.path.dirname(ballast))
    with open(ballast, "wb") as file:
        os.posix_fallocate(file.fileno(), 0, place.f_bavail * place.f_frsize - room)


def failure_told(program):
    """Answers the boxes that tell of the failure; returns how many there were once the menu is back."""
    program.wait_for_window(program.FAILURE, 60)
    boxes = 0
    while True:
        boxes += 1
        program.wait_until_idle()
        program.display.press("space")
        program.wait_until_idle()
        catalogue.expect(program.is_running(), "the program has ended")
        if program.display.active_title() != program.FAILURE:
            break
    program.wait_for_window(program.MENU)
    return boxes


def run(options, base):
    chance = random.Random(options.seed)
    rounds = Rounds(os.path.abspath(options.program), base, options.files)
    try:
        scan, deletion = rounds.rehearsed()
        for work in (scan, deletion):
            print(f"{work.name}: {work.begins:.3f} s to its transaction, {work.ends:.3f} s to its end", flush=True)
        for number in range(options.times):
            work = deletion if number % 3 == 2 else scan
            moment, fell = rounds.interrupt(work, chance)
            print(f"{number + 1:4} {work.name} killed {moment:.3f} s after its key press: {fell}, all well", flush=True)
        before = os.path.getsize(os.path.join(scan.folder, catalogue.NAME))
        after = os.path.getsize(os.path.join(deletion.folder, catalogue.NAME))
        print("full disk", flush=True)
        fill_disk(rounds, scan, spread(options.full, 600, after - 4096))
        fill_file_system(rounds, scan, spread(options.full, 4096, after - before))
    except Exception:
        rounds.display.photograph(os.path.join(base, "screen.png"))
        raise
    finally:
        rounds.display.close()
    report(rounds.tally)


def spread(count, lowest, highest):
    """So many sizes from the lowest on, closer together below."""
    return [int(lowest + (highest - lowest) * (place / count) ** 2) for place in range(count)]


def report(tally):
    for work in ("scan", "deletion"):
        falls = ", ".join(f"{tally[work, fell]} {fell}" for fell in ("before", "inside", "after"))
        print(f"{work}s killed: {falls} the transaction; {tally[work, 'half written']} of those inside while it was"
              " written to the file")
    print(f"full disks: {tally['full disk', 'told']}, each told and survived")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("program", help="the built program")
    parser.add_argument("--times", type=int, default=200, help="how many kills")
    parser.add_argument("--seed", type=int, default=int(time.time()), help="of the moments of the kills")
    parser.add_argument("--files", type=int, default=150000, help="on the disc whose scan is interrupted")
    parser.add_argument("--full", type=int, default=8, help="how many sizes of a full disk, of each of two kinds")
    options = parser.parse_args()
    print(f"seed {options.seed}", flush=True)
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(1))  # the display goes down, and the program with it
    base = tempfile.mkdtemp(prefix="sv-")
    try:
        run(options, base)
    except (catalogue.Wrong, desktop.Lost) as problem:
        print(f"FAILED: {problem}; all of it is left in {base}", flush=True)
        return 1
    shutil.rmtree(base)
    return 0


if __name__ == "__main__":
    sys.exit(main())
