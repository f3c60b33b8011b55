"""The known events, as `events-query --catalog` lists them."""

import json
import subprocess

# No description explains it: the event shows the reason by its name.
NOT_EXPLAINED = "out_of_network_reason"


def read(program):
    """The events in the order of codes. "explained" has those "reasons" that the description explains."""
    written = subprocess.check_output([program, "--catalog", "-o", "json"])
    events = [json.loads(line) for line in written.splitlines()]
    for event in events:
        event["explained"] = {key: reasons for key, reasons in event["reasons"].items()
                              if key != NOT_EXPLAINED}
    return events
