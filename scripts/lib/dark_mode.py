"""Gives a picture dark colours for dark pages: light and dark change places, hues stay. Browsers do this
in an <img> too."""
STYLE = ("<style>@media (prefers-color-scheme: dark) "
         "{ :root { filter: invert(0.93) hue-rotate(180deg) } }</style>\n")


def with_dark_mode(svg):
    return svg.replace("<g ", f"{STYLE}<g ", 1)
