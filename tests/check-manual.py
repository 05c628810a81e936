#!/usr/bin/env python3
"""Checks that the manual knows every command: each row of the command table has a heading
"### `Name`" in a page of docs/commands, once, and no heading there names a command that the table lacks. The index has
a line for each row, in alphabetical order, and is what script/draw-index makes of the pages. What a page links to is
there.

Usage: tests/check-manual.py, from anywhere. Says what is missing and exits with 1."""
import pathlib
import re
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent
table = (root / "src/Commands/CommandRows.h").read_text(encoding="utf-8")
rows = re.findall(r"^TVX_COMMAND\((\w+),\s*(\d+),", table, flags=re.M)
if len(rows) != 115:
    sys.exit(f"expected 115 rows of commands, found {len(rows)}: has their form changed?")

numbers = [int(number) for _, number in rows]
if numbers != [number for number in range(116) if number != 93] or len({name for name, _ in rows}) != len(rows):
    sys.exit("the rows of the command table are not those of 0 to 115 without 93, each with a name of its own")

pages = {page: page.read_text(encoding="utf-8") for page in [root / "README.md", *sorted(root.glob("docs/**/*.md"))]}
# The same without what stands in fences.
texts = {page: re.sub(r"^```.*?^```$", "", text, flags=re.M | re.S) for page, text in pages.items()}
titles = {page: re.findall(r"^#+ (.*)", text, flags=re.M) for page, text in texts.items()}
anchors = {page: {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for title in titles[page]} for page in titles}

headings = {}
for page, text in texts.items():
    if page.parent.name == "commands":
        for title in re.findall(r"^### (.*)", text, flags=re.M):
            # One heading may name a pair: "### `CopyFile`, `CopyFileRedir`".
            for name in re.findall(r"`(\w+)`", title):
                headings.setdefault(name, []).append(page.name)

faults = []
for name, _ in rows:
    if name not in headings:
        faults.append(f"{name}: no heading in docs/commands")
known = {name for name, _ in rows}
for name, places in headings.items():
    if name not in known:
        faults.append(f"{name}: heading in {places[0]}, but no such command")
    if len(places) > 1:
        faults.append(f"{name}: headings in {', '.join(places)}")

# Every command is a step of a run somewhere: in an example of the manual, a case page or a test of the whole program.
stepped = set()
for page in [*pages, *sorted((root / "tests/cases").glob("*.md"))]:
    text = page.read_text(encoding="utf-8")
    blocks = re.findall(r"^```(?:steps|ini|groups)\n(.*?)^```$", text, flags=re.M | re.S)
    cells = re.split(r"(?<!\\)\||<br>", "|".join(re.findall(r"^\|.*", text, flags=re.M)))
    for line in [line for block in blocks for line in block.split("\n")] + cells:
        if step := re.match(r"\s*`?(?:<[^>]*>)?(\w+)(?=[;\s`]|$)", line):
            stepped.add(step[1])
for test in (root / "tests/system").glob("*Test.cpp"):
    stepped |= set(re.findall(r'Steps\(\s*"(\w+)', test.read_text(encoding="utf-8")))
faults += [f"{name}: no run has it as a step" for name, _ in rows if name not in stepped]

index = re.findall(r"^\| \[?`(\w+)", texts.get(root / "docs/commands/index.md", ""), flags=re.M)
faults += [f"{name}: not in the index" for name in sorted(known - set(index))]
if index != sorted(index, key=str.lower):
    faults.append("the index is not in alphabetical order")
if (drawn := subprocess.run([root / "script/draw-index", "--check"], capture_output=True, text=True)).returncode:
    faults.append(drawn.stderr.strip())

for page, text in texts.items():
    for target, anchor in re.findall(r"\]\((?!\w+:)([^)#]*)(?:#([^)]*))?\)", text):
        there = (page.parent / target).resolve() if target else page
        if not there.exists() or (anchor and anchor not in anchors.get(there, ())):
            faults.append(f"{page.relative_to(root)}: a link to {target}#{anchor}, which is not there")
print("\n".join(faults) if faults else f"{len(rows)} commands, {len(headings)} headings")
sys.exit(1 if faults else 0)
