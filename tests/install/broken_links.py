"""Finds broken links of installed pages: to a missing file or a missing heading."""

import re

LINK = re.compile(r"\]\(([^)#:]*)(?:#([^)]*))?\)")  # a link with a scheme is not to a file


def anchors(page):
    headings = re.findall(r"^#+ (.*)$", page, re.MULTILINE)
    return {re.sub(r"[^\w -]", "", heading).lower().replace(" ", "-") for heading in headings}


def broken_links(folder):
    """The broken links in the pages below `folder`, and how many links there are."""
    broken, followed = [], 0
    for page in sorted(folder.rglob("*.md")):
        for name, anchor in LINK.findall(page.read_text()):
            target = page.parent / name if name else page
            followed += 1
            if not target.is_file() or anchor and anchor not in anchors(target.read_text()):
                broken.append(f"{page.relative_to(folder)}: {name}#{anchor} is broken")
    return broken, followed
