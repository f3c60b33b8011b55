"""The known events, as `events-query --catalog` lists them."""

import json
import subprocess

# No description explains it: the event shows the reason by its name.
NOT_EXPLAINED = "out_of_network_reason"


def read(program):
    """One dictionary an event, in the order of the codes. "explained" has the "reasons" that its
    description explains."""
    written = subprocess.check_output([program, "--catalog", "-o", "json"])
    events = [json.loads(line) for line in written.splitlines()]
    for event in events:
        event["explained"] = {key: reasons for key, reasons in event["reasons"].items()
                              if key != NOT_EXPLAINED}
    return events
