#!/usr/bin/env python3
"""Checks that the manual knows every command: each row of the command table with a handler of its own has a heading
"### `Name`" in a page of docs/commands, once, and no heading there names a command that the table lacks.

Usage: tests/check-manual.py, from anywhere. Says what is missing and exits with 1."""
import pathlib
import re
import sys

root = pathlib.Path(__file__).resolve().parent.parent
table = (root / "src/Installer/CommandTable.cpp").read_text(encoding="utf-8")
rows = re.findall(r'\{"(\w+)",\s*(\d+),\s*(\w+)\}', table)
if len(rows) != 115:
    sys.exit(f"expected 115 rows in the command table, found {len(rows)}: has its form changed?")

numbers = [int(number) for _, number, _ in rows]
if numbers != [number for number in range(116) if number != 93] or len({name for name, _, _ in rows}) != len(rows):
    sys.exit("the rows of the command table are not those of 0 to 115 without 93, each with a name of its own")

headings = {}
for page in sorted((root / "docs/commands").glob("*.md")):
    for line in page.read_text(encoding="utf-8").splitlines():
        if line.startswith("### "):
            # One heading may name a pair: "### `CopyFile`, `CopyFileRedir`".
            for name in re.findall(r"`(\w+)`", line):
                headings.setdefault(name, []).append(page.name)

faults = []
for name, _, handler in rows:
    if handler != "StepNotAvailable" and name not in headings:
        faults.append(f"{name}: no heading in docs/commands")
known = {name for name, _, _ in rows}
for name, pages in headings.items():
    if name not in known:
        faults.append(f"{name}: heading in {pages[0]}, but no such command")
    if len(pages) > 1:
        faults.append(f"{name}: headings in {', '.join(pages)}")
print("\n".join(faults) if faults else f"{len(rows)} commands, {len(headings)} headings")
sys.exit(1 if faults else 0)
