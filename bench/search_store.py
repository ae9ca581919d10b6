#!/usr/bin/env python3
"""search_store.py BIN CATALOGUE [ROUNDS] [pairs]: the searches of search_store, and beside each the sqlite3 shell with
the same condition in the engine's own words, which writes the row numbers alone. Prints processor times in milliseconds
and the store's share of the shell's, the longest shares last."""
import os
import re
import subprocess
import sys
import tempfile

CONDITION = re.compile(r"\[([^]]+)\] ?(like '([^']*)'|[=<>-][=<>0-9-]*)")


def translated(match):
    field, rest, pattern = match.groups()
    if pattern is None:
        return f'"{field}" {rest}'
    if "#" in pattern:
        return f'"{field}" GLOB \'{pattern.replace("#", "[0-9]")}\''
    return f'"{field}" LIKE \'{pattern.replace("*", "%").replace("?", "_")}\''


def shell_time(catalogue, condition, rounds, output):
    """The least user and system time of the rounds, in milliseconds."""
    sql = f'SELECT "id number" FROM Files WHERE 1 {CONDITION.sub(translated, condition)} ORDER BY "file name";'
    commands = f".timer on\n.output {output}\n" + f"{sql}\n" * rounds
    told = subprocess.run(["sqlite3", "-readonly", catalogue], input=commands, capture_output=True, text=True, check=True)
    times = re.findall(r"user ([0-9.]+) sys ([0-9.]+)", told.stdout + open(output, encoding="ascii").read())
    if len(times) != rounds:
        raise SystemExit(f"the shell gave no time for: {sql}\n{told.stderr}")
    return min(1000 * (float(user) + float(system)) for user, system in times)


def main():
    if len(sys.argv) < 3:
        raise SystemExit(__doc__)
    binary = os.path.join(sys.argv[1], "search_store")
    rounds = int(sys.argv[3]) if len(sys.argv) > 3 else 3
    told = subprocess.run([binary, sys.argv[2], str(rounds), *sys.argv[4:5]], capture_output=True, text=True, check=True)
    shares = []
    with tempfile.TemporaryDirectory() as folder:
        for line in told.stdout.splitlines():
            found = re.match(r" *([0-9.]+) +[0-9.]+ +([0-9]+)  (.*)", line)
            if not found or found.group(3) == "no condition":
                continue
            condition = found.group(3) if found.group(3).startswith("and ") else "and " + found.group(3)
            shell = shell_time(sys.argv[2], condition, rounds, os.path.join(folder, "rows"))
            own = float(found.group(1))
            shares.append((own / max(shell, 0.001), own, shell, int(found.group(2)), condition))
    for share, own, shell, rows, condition in sorted(shares):
        print(f"{own:8.1f} {shell:8.1f} {share:6.2f} {rows:8d}  {condition}")
    print(f"{len(shares)} searches, longest {max(own for _, own, *_ in shares):.1f}, "
          f"largest share {max(shares)[0]:.2f} of the shell's time")


main()
