"""Replaces a section of a page with standard input.

Usage: write_section.py PAGE NAME

The section is between the lines "<!-- NAME -->" and "<!-- end of NAME -->".
"""

import sys
from pathlib import Path


def main():
    page, name = Path(sys.argv[1]), sys.argv[2]
    begin, end = f"<!-- {name} -->\n", f"<!-- end of {name} -->\n"
    text = page.read_text()
    if text.count(begin) != 1 or text.count(end) != 1:
        sys.exit(f"{page} needs one section {name}")
    before, rest = text.split(begin)
    after = rest.split(end)[1]
    page.write_text(before + begin + sys.stdin.read() + end + after)


if __name__ == "__main__":
    main()
