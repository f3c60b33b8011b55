"""Writes the tables of events and reasons at the end of doc/log-format.md."""

import sys

MARK = "do not edit below. -->\n\n"


def event_table(events):
    """The described events and the variables of each; those that are explained have an asterisk."""
    lines = ["| code | event | variables |", "|---|---|---|"]
    for event in events:
        if event["template"]:
            variables = ", ".join(f"`{key}`" + r"\*" * (key in event["explained"])
                                  for key in event["variables"])
            lines.append(f"| {event['code']} | {event['event']} | {variables} |".replace("|  |", "| |"))
    return "\n".join(lines) + "\n"


def reason_table(events):
    tables = {key: reasons for event in events for key, reasons in event["reasons"].items()}
    rows = [f"| `{key}` | {name} | {explanation} |"
            for key, reasons in sorted(tables.items()) for name, explanation in reasons.items()]
    return "\n".join(["| variable | reason | explanation |", "|---|---|---|", *rows]) + "\n"


def renewed(page, events):
    """The text of `page` with the tables as they are now."""
    head, mark, _ = page.partition(MARK)
    if not mark:
        sys.exit(f"doc/log-format.md: the line that ends in {MARK.strip()!r} is missing")
    return head + mark + event_table(events) + "\n## Reasons\n\n" + reason_table(events)
