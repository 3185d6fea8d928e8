#!/usr/bin/python3
"""Holds the core to budgets that a busy machine does not change: allocations, and with valgrind's help instructions.

    budgets.py PROGRAM [VALGRIND]

The work took half of the instructions, and two thirds of the allocations, when this was written down, built by the debug
preset.
"""

import re
import subprocess
import sys
import tempfile
from pathlib import Path

# For one round: allocations, instructions.
MOST = {
    "own-link": (2, 27_000),
    "parsing-own-link": (2, 150_000),
    "link-into-another-app": (5, 47_000),
    "parsing-link-into-another-app": (6, 180_000),
    "foreign-link": (5, 56_000),
    "parsing-foreign-link": (2, 180_000),
    "redirected-link": (14, 410_000),
    "parsing-redirected-link": (2, 170_000),
    "parsing-query-2000": (2, 1_900_000),
    "parsing-query-20000": (2, 19_000_000),
    "title": (0, 9_400),
    "hostile-title-2000": (0, 920_000),
    "mailto-2000": (24, 2_500_000),
    "script-literal-2000": (15, 2_700_000),
    "hostile-title-20000": (0, 9_200_000),
    "mailto-20000": (29, 24_000_000),
    "script-literal-20000": (20, 27_000_000),
    "notification-shown-and-closed": (75, 680_000),
    "message-nested-deep": (111, 46_000_000),
    "profiles-loaded-1": (108, 1_300_000),
    "profile-menu-1": (21, 49_000),
    "profiles-loaded-10": (614, 8_500_000),
    "profile-menu-10": (203, 590_000),
    "profiles-loaded-100": (5490, 81_000_000),
    "profile-menu-100": (1962, 5_600_000),
}
# The second is ten times as much work as the first.
GROWS = (
    ("parsing-query-2000", "parsing-query-20000"),
    ("hostile-title-2000", "hostile-title-20000"),
    ("mailto-2000", "mailto-20000"),
    ("script-literal-2000", "script-literal-20000"),
    ("profiles-loaded-10", "profiles-loaded-100"),
    ("profile-menu-10", "profile-menu-100"),
)
MOST_GROWTH = 11


def instructions(folder):
    """Of each piece of work: callgrind names each dump after what asked for it."""
    counts = {}
    for dump in folder.glob("dump.*"):
        text = dump.read_text()
        name = re.search(r"^desc: Trigger: Client Request: (.+)$", text, re.MULTILINE)
        if name:
            counts[name[1]] = int(re.search(r"^(?:summary|totals): (\d+)$", text, re.MULTILINE)[1])
    return counts


def run(program, valgrind):
    """What one round of each took: allocations, and instructions or None."""
    with tempfile.TemporaryDirectory() as folder:
        tool = [valgrind, "--quiet", "--tool=callgrind", "--instr-atstart=no", f"--callgrind-out-file={folder}/dump"]
        output = subprocess.run([*(tool if valgrind else ()), program], check=True, capture_output=True, text=True).stdout
        counted = instructions(Path(folder))
    lines = [line.split() for line in output.splitlines()]
    return {
        name: (int(taken) / int(rounds), counted[name] / int(rounds) if valgrind else None) for name, rounds, taken in lines
    }


def main():
    spent = run(sys.argv[1], sys.argv[2] if len(sys.argv) > 2 else None)
    faults = []
    for name, figures in spent.items():
        for what, figure, most in zip(("allocations", "instructions"), figures, MOST.get(name, (-1, -1))):
            if figure is None:
                continue
            print(f"{name}: {figure:.0f} {what}, of {most}")
            if figure > most:
                faults.append(f"{name} takes {figure:.0f} {what}, and may take {most}")
    for small, large in GROWS:
        for what, before, after in zip(("allocations", "instructions"), spent[small], spent[large]):
            if before and after > MOST_GROWTH * before:
                faults.append(f"{large} takes {after / before:.1f} times the {what} of {small}")
    if missing := MOST.keys() - spent.keys():
        faults.append(f"not done: {', '.join(missing)}")
    sys.exit("\n".join(faults) or None)


main()
