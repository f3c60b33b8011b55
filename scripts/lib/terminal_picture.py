"""Draws a terminal's screen as an SVG: characters in a grid, in the colours that the text asks for.

Every piece of text is stretched to its columns, so that the picture is the same with any
monospaced font.
"""

import re
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 7.8, 17  # of a character
MARGIN = 14
BACKGROUND, FOREGROUND, PROMPT = "#1c2128", "#d0d7de", "#7ee787"
WORDS = re.compile(r"\S+(?: \S+)*")
STYLES = {"1;34": 'fill="#6cb6ff" font-weight="bold"', "0": ""}


def pieces(line):
    """The (style, text) pieces of a line, by the escape sequences in it."""
    style = ""
    for index, part in enumerate(re.split(r"\x1b\[([\d;]*)m", line)):
        if index % 2:
            style = STYLES[part]
        elif part:
            yield style, part


def rows(text, columns):
    """The rows that `text` takes on a terminal, each a list of (column, style, text)."""
    for line in text.splitlines():
        row, column = [], 0
        for style, part in pieces(line):
            if line.startswith("$ "):
                style = f'fill="{PROMPT}"'
            while part:
                if column == columns:
                    yield row
                    row, column = [], 0
                fitting, part = part[:columns - column], part[columns - column:]
                row.append((column, style, fitting))
                column += len(fitting)
        yield row


def draw(text, columns):
    drawn = list(rows(text, columns))
    width = round(columns * WIDTH + 2 * MARGIN)
    height = len(drawn) * HEIGHT + 2 * MARGIN
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
             f'viewBox="0 0 {width} {height}">',
             f'<rect width="100%" height="100%" rx="8" fill="{BACKGROUND}"/>',
             f'<g font-family="monospace" font-size="13" fill="{FOREGROUND}">']
    for number, row in enumerate(drawn):
        for start, style, part in row:
            for words in WORDS.finditer(part):  # not every browser keeps several spaces
                column = start + words.start()
                lines.append(
                    f'<text x="{column * WIDTH + MARGIN:.1f}" y="{number * HEIGHT + MARGIN + 12}" '
                    f'textLength="{len(words[0]) * WIDTH:.1f}" lengthAdjust="spacingAndGlyphs"'
                    f'{" " + style if style else ""}>{escape(words[0])}</text>')
    return "\n".join([*lines, "</g>", "</svg>", ""])
