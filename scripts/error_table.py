#!/usr/bin/env python3
"""Rewrites the README's error table from src/host/messages.def (between the two markers)."""
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
COMPONENTS = {"DETECTION": "TOLVEN:io:xml:detection", "COMMON": "TOLVEN:io:xml:common",
              "STRING": "TOLVEN:string", "IMPORT": "TOLVEN:import", "CLI": "TOLVEN:cli"}
LINE = re.compile(r'TOLVEN_MESSAGE\((\w+), (\w+), (\d+), "(.*)"\)\s*$')
BEGIN, END = "<!-- errors:begin -->", "<!-- errors:end -->"


def table():
    rows = ["| Identifier | Arguments | Message |", "|---|---|---|"]
    for line in (ROOT / "src/host/messages.def").read_text().splitlines():
        m = LINE.match(line)
        if m:
            text = m.group(4).replace("|", "\\|")
            rows.append(f"| `{COMPONENTS[m.group(1)]}:{m.group(2)}` | {m.group(3)} | {text} |")
    return "\n".join(rows)


def main():
    readme = ROOT / "README.md"
    content = readme.read_text()
    start, stop = content.index(BEGIN) + len(BEGIN), content.index(END)
    readme.write_text(content[:start] + "\n" + table() + "\n" + content[stop:])


if __name__ == "__main__":
    main()
