"""Draws a terminal's screen as an SVG: characters in a grid, in the colours that the text asks for. Every
piece of text is stretched to its columns, so that the picture is the same with any monospaced font."""

import itertools
import re
from xml.sax.saxutils import escape

from dark_mode import with_dark_mode

WIDTH, HEIGHT, MARGIN = 7.8, 17, 14  # of a character, and around all
BACKGROUND, FOREGROUND = "#f6f8fa", "#1f2328"
PROMPT = ' fill="#116329"'
STYLES = {"1;34": ' fill="#0550ae" font-weight="bold"', "0": ""}


def rows(text, columns):
    """The rows that `text` takes, each a list of (style, character), broken after commas and spaces."""
    for line in text.splitlines():
        style = PROMPT if line.startswith("$ ") else ""
        row = []
        for index, part in enumerate(re.split(r"\x1b\[([\d;]*)m", line)):
            if index % 2:
                style = STYLES[part]
            else:
                row += [(style, character) for character in part]
        while len(row) > columns:
            end = max(at for at in range(columns) if row[at][1] in ", ") + 1
            yield row[:end]
            row = row[end:]
        yield row


def draw(text, columns):
    drawn = list(rows(text, columns))
    width, height = round(columns * WIDTH + 2 * MARGIN), len(drawn) * HEIGHT + 2 * MARGIN
    lines = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{width}" height="{height}" '
             f'viewBox="0 0 {width} {height}">',
             f'<rect width="100%" height="100%" rx="8" fill="{BACKGROUND}"/>',
             f'<g font-family="monospace" font-size="13" fill="{FOREGROUND}">']
    for number, row in enumerate(drawn):
        column = 0
        for style, cells in itertools.groupby(row, key=lambda cell: cell[0]):
            piece = "".join(character for _, character in cells)
            unbroken = escape(piece).replace(" ", "\xa0")  # browsers run several spaces together
            lines.append(f'<text x="{column * WIDTH + MARGIN:.1f}" y="{number * HEIGHT + MARGIN + 12}" '
                         f'textLength="{len(piece) * WIDTH:.1f}" lengthAdjust="spacingAndGlyphs"{style}>'
                         f'{unbroken}</text>')
            column += len(piece)
    return with_dark_mode("\n".join([*lines, "</g>", "</svg>", ""]))
