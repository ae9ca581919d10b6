#!/usr/bin/env python3
"""Changes single places of the source, one at a time, and tells which changes no test notices.

A developer's tool that no test runs: each place costs a compilation and a run of one test program. A change that is not
noticed is either a rule without a test or one that nobody can see; which of them, only a reader can tell.

    tests/mutations.py --seed 1 --count 50
"""
import argparse
import json
import os
import random
import re
import resource
import signal
import subprocess
import sys
import tempfile
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

# The test program that is to notice changes in a library.
PROGRAMS = {
    "base": "test_base",
    "db": "test_db",
    "disc": "test_disc",
    "kit": "test_kit",
    "catalogue_core": "test_catalogue_core",
    "catalogue": "test_catalogue",
    "scanner_core": "test_scanner_core",
    "scanner": "test_scanner",
    "explorer_core": "test_explorer_core",
    "explorer": "test_explorer",
    "app_core": "test_app",
    "app": "test_app",
    "program_core": "test_program",
    "program": "test_program",
}
USUAL = ["disc", "catalogue_core", "scanner_core", "explorer_core"]

SWAPS = [
    (" < ", [" <= ", " >= "]),
    (" <= ", [" < ", " > "]),
    (" > ", [" >= ", " <= "]),
    (" >= ", [" > ", " < "]),
    (" == ", [" != "]),
    (" != ", [" == "]),
    (" && ", [" || "]),
    (" || ", [" && "]),
    (" + ", [" - "]),
    (" - ", [" + "]),
    (" += ", [" -= "]),
    (" -= ", [" += "]),
    ("return true;", ["return false;"]),
    ("return false;", ["return true;"]),
]
NOT_CODE = re.compile(
    r'//[^\n]*|/\*.*?\*/|R"\((?:.|\n)*?\)"|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'|^[ \t]*#[^\n]*', re.M | re.S)
NUMBER = re.compile(r"(?<![\w.'])(?:0[xX][0-9a-fA-F]+|[0-9]+)(?![\w.'])")
CONDITION = re.compile(r"\b(?:if|while) \(")
CALL = re.compile(r"(?<=[;{})]\n)[ \t]+(?!return\b|throw\b|delete\b|if\b|for\b|while\b|switch\b)[\w.:>-]+\([^;{}]*\);$",
                  re.M)
MEMORY = 6 << 30  # bytes that a test program may take
LARGEST_FILE = 2 << 30


class Interrupted(Exception):
    pass


def code_of(text):
    """The text with comments, literals and directives blanked, places kept."""
    return NOT_CODE.sub(lambda found: re.sub(r"[^\n]", " ", found.group()), text)


def closing(code, opening):
    depth = 0
    for at in range(opening, len(code)):
        depth += {"(": 1, ")": -1}.get(code[at], 0)
        if depth == 0:
            return at
    return None


def incremented(number):
    if number.lower().startswith("0x"):
        return hex(int(number, 16) + 1)
    if len(number) > 1 and number.startswith("0"):
        return f"0{int(number, 8) + 1:o}" if set(number) <= set("01234567") else None
    return str(int(number) + 1)


def line_around(text, at):
    end = text.find("\n", at)
    return text[text.rfind("\n", 0, at) + 1:end if end >= 0 else len(text)]


def changes(text):
    """(from, to, replacement) of every change that the rules know."""
    code = code_of(text)
    for old, replacements in SWAPS:
        for found in re.finditer(re.escape(old), code):
            if "+" in old and '"' in line_around(text, found.start()):
                continue  # texts are put together by it, and nothing else would compile
            for new in replacements:
                yield found.start(), found.end(), new
    for found in NUMBER.finditer(code):
        new = incremented(found.group())
        if new is not None:
            yield found.start(), found.end(), new
    for found in CONDITION.finditer(code):
        end = closing(code, found.end() - 1)
        condition = code[found.end():end]
        if end is not None and ";" not in condition and not re.search(r"\w [*&]?\w+ = ", condition):
            yield found.end(), end, f"!({text[found.end():end]})"
    for found in CALL.finditer(code):
        statement = text[found.start():found.end()]
        indent = re.match(r"[ \t]+", statement).group()
        yield found.start(), found.end(), indent + "{ if (false) " + statement.strip() + " }"


def sources(build, libraries):
    """(file, test program) of every file of the libraries."""
    wanted = {f"discaro_{library}.dir": PROGRAMS[library] for library in libraries}
    for entry in json.loads((build / "compile_commands.json").read_text()):
        path = Path(entry["file"])
        folder = re.search(r"/CMakeFiles/([^/]+)/", entry["output"] if "output" in entry else entry["command"])
        if folder and folder.group(1) in wanted and path.is_relative_to(ROOT / "src"):
            yield path, wanted[folder.group(1)]


def run(command, seconds, folder=None):
    """The status of a command; None when it did not end. What it started ends with it."""

    def bounds():
        resource.setrlimit(resource.RLIMIT_AS, (MEMORY, MEMORY))
        resource.setrlimit(resource.RLIMIT_FSIZE, (LARGEST_FILE, LARGEST_FILE))
        resource.setrlimit(resource.RLIMIT_CORE, (0, 0))

    environment = dict(os.environ, QT_QPA_PLATFORM="offscreen")
    if folder:
        environment["TMPDIR"] = folder
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, stdin=subprocess.DEVNULL,
                               start_new_session=True, env=environment, preexec_fn=bounds if folder else None)
    try:
        return process.wait(timeout=seconds)
    except subprocess.TimeoutExpired:
        return None
    finally:
        if process.poll() is None:
            os.killpg(process.pid, signal.SIGKILL)
            process.wait()


class Runs:
    def __init__(self, build, jobs):
        self.build = build
        self.jobs = jobs
        self.seconds = {}  # after which a program that passed before counts as hanging

    def builds(self, program):
        return run(["ninja", "-C", str(self.build), f"-j{self.jobs}", program], 1800) == 0

    def passes(self, program):
        with tempfile.TemporaryDirectory(prefix="discaro-mutations-") as folder:
            os.chmod(folder, 0o755)  # some tests give up the rights of the superuser
            command = [str(self.build / "bin" / program), "--gtest_brief=1", "--gtest_fail_fast"]
            return run(command, self.seconds.get(program, 600), folder) == 0

    def require_sound(self, program):
        if program in self.seconds:
            return
        built = self.builds(program)
        begin = time.monotonic()
        if not built or not self.passes(program):
            sys.exit(f"{program} fails without any change")
        self.seconds[program] = 20 + 2 * (time.monotonic() - begin)

    def outcome(self, path, text, change, program):
        """"caught", "unnoticed" or "no program"; the file is as before afterwards."""
        start, end, new = change
        try:
            path.write_text(text[:start] + new + text[end:])
            if not self.builds(program):
                return "no program"
            return "unnoticed" if self.passes(program) else "caught"
        finally:
            path.write_text(text)


def shown(path, text, change):
    start, end, new = change
    first = text.rfind("\n", 0, start) + 1
    last = text.find("\n", end)
    place = f"{path.relative_to(ROOT)}:{text.count(chr(10), 0, start) + 1}"
    old = text[first:last].strip()
    return f"{place}\n    {old}\n    {(text[first:start] + new + text[end:last]).strip()}"


def summary(tried):
    caught = tried.count("caught")
    share = f", {100 * caught / len(tried):.0f} of 100" if tried else ""
    return f"{caught} of {len(tried)} changes noticed{share}"


def try_all(places, count, runs):
    tried = {}  # the outcomes by test program
    broken = 0
    try:
        for path, program, change in places:
            if sum(map(len, tried.values())) >= count:
                break
            runs.require_sound(program)
            text = path.read_text()
            outcome = runs.outcome(path, text, change, program)
            if outcome == "no program":
                broken += 1
                continue
            tried.setdefault(program, []).append(outcome)
            if outcome == "unnoticed":
                print(shown(path, text, change), flush=True)
    except Interrupted:
        print("interrupted")
    for program, outcomes in sorted(tried.items()):
        print(f"{program}: {summary(outcomes)}")
    print(f"{summary(sum(tried.values(), []))}; {broken} more did not compile")


def interrupt(*_):
    raise Interrupted


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--seed", type=int, required=True, help="the same seed picks the same places")
    parser.add_argument("--count", type=int, required=True, help="how many changes to try")
    parser.add_argument("--build", type=Path, default=ROOT / "build" / "test")
    parser.add_argument("--jobs", type=int, default=2)
    parser.add_argument("libraries", nargs="*", default=USUAL, metavar="library",
                        help=f"of {', '.join(PROGRAMS)}; without any: {', '.join(USUAL)}")
    given = parser.parse_args()
    if unknown := set(given.libraries) - set(PROGRAMS):
        parser.error(f"no library {', '.join(sorted(unknown))}")
    if subprocess.run(["git", "status", "--porcelain"], cwd=ROOT, check=True, capture_output=True).stdout:
        sys.exit("there are changes that are not committed")
    places = [(path, program, change) for path, program in sorted(sources(given.build.resolve(), given.libraries))
              for change in changes(path.read_text())]
    random.Random(given.seed).shuffle(places)
    print(f"{len(places)} changes are possible", flush=True)
    signal.signal(signal.SIGINT, interrupt)
    signal.signal(signal.SIGTERM, interrupt)
    try_all(places, given.count, Runs(given.build.resolve(), given.jobs))


if __name__ == "__main__":
    main()
