// Fills page.html with a sample, so that it can be worked on in a browser. The program does not have it.
"use strict";
(() => {
    const band = (state, name, x, width, from, to) => ({
        state, name, x, width, from, to, id: "e1-", row: `e1-${from}`, end: `e1-${to}`, label: "4417",
        since: "2026-11-20 07:56:21", until: "2026-11-20 08:03:15", length: "6 min 54 s",
        why: "NO_UCP: Failed to receive UCP messages", first: "MODEM_OUT_OF_NETWORK",
        last: "MODEM_IN_NETWORK", title: `${name} for 6 min 54 s`,
    });
    const bands = [band("in", "In network", 5, 30, 0, 4), band("out", "Out of network", 35, 8, 4, 9),
        band("unknown", "Not known", 43, 4, 9, 12), band("in", "In network", 47, 50, 12, 99)];
    const row = (i) => ({
        id: `e1-${i}`, time: "Nov 20 07:56:21", label: "4417", place: "logs/4417, line 7",
        name: i % 3 ? "MODEM_OUT_OF_NETWORK" : "MODEM_IN_NETWORK", line: `{"id":1229,"vars":{"n":${i}}}`,
        detail: "This terminal fell out of network.\nReason: NO_UCP",
    });
    const parts = {
        band: bands, outage: bands.slice(1, 3), row: Array.from({ length: 100 }, (_, i) => row(i)),
        hour: [5, 20, 35, 40].map((x) => ({ x, y: x, width: 4, height: 100 - x, title: "9 events" })),
        terminal: [{ label: "4417", path: "logs/4417: ", range: "Nov 17 to Nov 20", events: "99 events" }],
        tick: [20, 40, 60].map((x) => ({ x, time: "11-20 08:00" })),
        finding: [{ row: "e1-7", place: "logs/4417, line 8", text: "cut off: no event is shown" }],
    };
    const page = {
        logs: "several", title: "3 logs", labels: "4417, 4418, 4419", sum: "Out of network 1 time, for 6 min 54 s in all.",
        range: "2026-11-17 06:41:04 to 2026-11-20 08:15:02", events: "99", findings: "1",
        command: "events-query -o html logs", scale: "At most 9 events in one hour.", shown: "All 99 events.",
    };
    const fill = (form, values) => form
        .replace(/<!--(\w+)-->([^]*?)<!--\/\1-->/g, (_, name, part) =>
            parts[name].map((one) => fill(part, one)).join(""))
        .replace(/\{\{(\w+)\}\}/g, (_, name) => values[name] ?? "");
    document.body.className = page.logs;
    document.querySelectorAll("header, main").forEach((part) => {
        part.innerHTML = fill(part.innerHTML, page);
    });
})();
