#!/usr/bin/env python3
"""Checks the pages of events-query -o html without a browser."""

import argparse
import base64
import hashlib
import json
import re
import subprocess
import sys
import tempfile
import unittest

from report_page import (CLOCK_SET, HOSTILE, IN, OTHER, OUT, START, THREE_OUTAGES, Page, Program, hostile_log, line_of,
                         log_of)

UNSAFE = "[\0-\x09\x0b-\x1f\x7f-\x9f\u061c\u200e\u200f\u202a-\u202e\u2066-\u2069\u2028\u2029]"
ARGS = None


class PageTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="report_test.")
        self.addCleanup(folder.cleanup)
        self.program = Program(ARGS.program, ARGS.emulator, folder.name)

    def page_of(self, *events, options=()):
        self.program.write("log", log_of(events))
        return Page(self.program.page(*options, "log").decode())

    def outages_of(self, *events):
        """The state, the times, the length and the reason of each band that is not in network."""
        return [row[:5] for row in self.page_of(*events).outages()]

    def check_is_safe(self, content):
        text = content.decode("utf-8")
        unsafe = re.search(UNSAFE, text)
        self.assertIsNone(unsafe, unsafe and text[max(0, unsafe.start() - 50):unsafe.end()])
        page = Page(text)
        policy, = [meta.attributes["content"] for meta in page.named("meta")
                   if meta.attributes.get("http-equiv") == "Content-Security-Policy"]
        self.assertIn("default-src 'none';", policy)
        self.assertNotIn("unsafe", policy)
        for tag, directive in (("script", "script-src"), ("style", "style-src")):
            own, = page.named(tag)
            self.assertEqual({}, own.attributes)
            digest = base64.b64encode(hashlib.sha256(own.text().encode()).digest()).decode()
            self.assertIn(f"{directive} 'sha256-{digest}';", policy)
        ids = [element.attributes["id"] for element in page.elements if "id" in element.attributes]
        self.assertEqual(len(ids), len(set(ids)))
        allowed = {"a", "body", "button", "code", "dd", "details", "div", "dl", "dt", "form", "g", "h1", "h2", "h3", "head",
                   "header", "html", "input", "label", "li", "line", "main", "meta", "option", "output", "p", "pre",
                   "rect", "script", "section", "select", "style", "summary", "svg", "table", "tbody", "td", "text",
                   "th", "thead", "title", "tr", "ul"}
        self.assertLessEqual({element.tag for element in page.elements}, allowed)
        for element in page.elements:
            for name, value in element.attributes.items():
                self.assertFalse(name.startswith("on") or name in ("style", "src", "action", "xlink:href"), name)
                if name == "href":
                    self.assertIn(value.lstrip("#"), ids)
        return page

    def test_has_the_words_of_the_table(self):
        self.program.write("log.0", log_of(THREE_OUTAGES[:5]))
        self.program.write("log", log_of(THREE_OUTAGES[5:]))
        rows = Page(self.program.page("log").decode()).rows()
        lines = self.program.run("-o", "lines", "log").stdout.decode().splitlines()
        self.assertEqual([line.split("\t")[:3] for line in lines],
                         [[row[1], row[3], row[4].replace("\n", " | ")] for row in rows])
        self.assertEqual([f"e1-{i}" for i in range(14)], [row[0] for row in rows])

    def test_unfolds_the_line_as_it_was_written(self):
        self.program.write("log", b'before {"id":1231, "time":"x"} <after>\t\xff\n')
        row, = Page(self.program.page("log").decode()).named("details")
        line, = row.all("pre")
        self.assertEqual('before {"id":1231, "time":"x"} <after>\\x09\\xff', line.text())

    def test_tells_when_outages_were_how_long_and_why(self):
        self.assertEqual([
            ["Not known", "2026-11-18 06:00:00", "2026-11-18 06:10:00", "10 min 0 s", "no event before it tells"],
            ["Out of network", "2026-11-18 16:44:05", "2026-11-18 16:59:51", "15 min 46 s",
             "INVALID_SI_TABLE: Received invalid SI table update"],
            ["Not known", "2026-11-19 01:30:00", "2026-11-19 01:33:00", "3 min 0 s", "the modem is reset"],
            ["Out of network", "2026-11-19 18:00:00", "2026-11-19 20:00:30", "2 h 0 min", "OPERATOR_REQUEST"],
            ["Out of network", "2026-11-20 07:56:21", "2026-11-20 08:03:15", "6 min 54 s",
             "ACQ_DISABLE: Received command from terminal to stop acquisition\n"
             "NO_ACU_LOCK: The antenna failed to lock to satellite"]], self.outages_of(*THREE_OUTAGES))

    def test_sums_the_outages_up(self):
        page = self.page_of(*THREE_OUTAGES)
        self.assertIn("Out of network 3 times, for 2 h 23 min in all.", [p.text() for p in page.named("p")])

    def test_draws_each_band_with_its_words_and_its_row(self):
        bands = self.page_of(*THREE_OUTAGES).bands()
        self.assertEqual(["unknown", "in", "out", "in", "unknown", "in", "out", "in", "out", "in"],
                         [band[0] for band in bands])
        self.assertEqual(["#e1-0", "#e1-1", "#e1-2", "#e1-3", "#e1-4", "#e1-6", "#e1-7", "#e1-9", "#e1-10", "#e1-12"],
                         [band[3] for band in bands])
        for before, after in zip(bands, bands[1:]):
            self.assertAlmostEqual(before[1] + before[2], after[1], places=2)
        # From 06:00 on Nov 18 to 09:00 on Nov 20 are 51 hours.
        self.assertAlmostEqual(100 * 38645 / (51 * 3600), bands[2][1], places=2)
        self.assertAlmostEqual(100 * 946 / (51 * 3600), bands[2][2], places=2)
        self.assertEqual("Out of network from 2026-11-18 16:44:05 to 2026-11-18 16:59:51, 15 min 46 s. Begins with "
                         "MODEM_OUT_OF_NETWORK, ends with MODEM_IN_NETWORK. Why: INVALID_SI_TABLE: Received invalid SI "
                         "table update", bands[2][4])

    def test_draws_all_events_whatever_the_filters_choose(self):
        whole = self.page_of(*THREE_OUTAGES)
        for options in (["-e", "MODEM_RESET"], ["-n", "1"], ["-g", "nothing has this"], ["-S", "Nov 20"],
                        ["-U", "Nov 18"], ["-r"]):
            page = self.page_of(*THREE_OUTAGES, options=options)
            self.assertEqual(whole.outages(), page.outages())
            self.assertEqual([band[:3] for band in whole.bands()], [band[:3] for band in page.bands()])
            rows = {row[0] for row in page.rows()}
            for band in page.bands():
                self.assertIn(band[3], {f"#{row}" for row in rows} | {"#events"})

    def test_shows_what_the_filters_choose(self):
        self.program.write("log", log_of(THREE_OUTAGES))
        for options in (["-e", "MODEM_RESET"], ["-n", "3"], ["-g", "nothing has this"], ["-S", "Nov 20"],
                        ["-U", "Nov 18"], ["-r"], ["-e", "MODEM_RESET", "-C", "2"]):
            rows = Page(self.program.page(*options, "log").decode()).rows()
            self.assertEqual([f"e1-{event['line'] - 1}" for event in self.program.events(*options, "log")],
                             [row[0] for row in rows], options)

    def test_says_how_many_of_the_events_it_shows(self):
        def notes(*options):
            return " ".join(p.text() for p in self.page_of(*THREE_OUTAGES, options=options).named("p"))
        self.assertIn("All 14 events that the command finds.", notes())
        self.assertIn("The newest 2 of 14 events that the command finds.", notes("-n", "2"))
        self.assertIn("All 1 event that the command finds.", notes("-e", "MODEM_RESET"))

    def test_shows_the_newest_10000_events(self):
        self.program.write("log", log_of([(OTHER, "Nov 20 08:00:00", {})] * 10001))
        page = Page(self.program.page("log").decode())
        self.assertEqual(("e1-1", "e1-10000"), (page.rows()[0][0], page.rows()[-1][0]))
        self.assertEqual(10000, len(page.rows()))

    def test_crosses_new_year(self):
        self.assertEqual([["Out of network", "2025-12-31 23:50:00", "2026-01-01 00:10:00", "20 min 0 s",
                           "it fell out of network"]],
                         self.outages_of((OUT, "Dec 31 23:50:00", {}), (IN, "Jan  1 00:10:00", {}),
                                         (OTHER, "Nov 20 08:00:00", {})))

    def test_draws_no_time_of_a_clock_that_was_not_set(self):
        events = [(IN, "Nov 20 08:00:00", {}), (OTHER, "Nov 20 08:10:00", {}), (START, "Jan  1 00:00:09", {}),
                  (OUT, "Jan  1 00:00:20", {}), (IN, "Jan  1 00:01:00", {}),
                  (CLOCK_SET, "Jan  1 00:01:30", {"old_time": "Jan  1 00:01:30", "new_time": "Nov 20 08:20:00"}),
                  (OTHER, "Nov 20 08:20:01", {}), (OTHER, "Nov 20 08:59:59", {})]
        page = self.page_of(*events)
        self.assertEqual([["Not known", "2026-11-20 08:10:00", "2026-11-20 08:20:01"],
                          ["Out of network", "not known", "2026-11-20 08:10:00"]],
                         sorted(row[:3] for row in page.outages()))
        self.assertEqual(["in", "unknown", "in"], [band[0] for band in page.bands() if band[2] > 0])
        self.assertEqual([], [rect for rect in page.named("title") if "01-01" in rect.text()])

    def test_takes_a_step_of_the_clock_from_the_length(self):
        outage, = self.outages_of(
            (OUT, "Nov 20 08:00:00", {}),
            (CLOCK_SET, "Nov 20 08:01:00", {"old_time": "Nov 20 08:01:00", "new_time": "Nov 20 09:01:00"}),
            (IN, "Nov 20 09:05:00", {}))
        self.assertEqual("5 min 0 s (the clock was set)", outage[3])

    def test_has_a_row_of_bands_for_each_terminal(self):
        self.program.write("logs/4417/events_report", log_of(THREE_OUTAGES))
        self.program.write("logs/4418/events_report", log_of([(IN, "Nov 19 08:00:00", {}), (OUT, "Nov 19 09:00:00", {})]))
        self.program.write("logs/4419/events_report", b"")
        page = Page(self.program.page("logs").decode())
        self.assertEqual(["Events an hour", "4417", "4418", "4419"], [h3.text() for h3 in page.named("h3")])
        self.assertIn("Logs4417, 4418, 4419", [div.text() for div in page.named("div")])
        self.assertEqual([10, 2, 0], [len(list(svg.all("a"))) for svg in page.named("svg", class_="bands")])
        self.assertEqual([("in", "#e2-0"), ("out", "#e2-1")], [(band[0], band[3]) for band in page.bands()[10:]])
        self.assertEqual([(event["time"], event["log"].split("/")[1]) for event in self.program.events("-m", "logs")],
                         [(row[1], row[2]) for row in page.rows()])

    def test_draws_hours_and_years(self):
        hour = self.page_of((OTHER, "Nov 20 08:10:00", {}), (OTHER, "Nov 20 08:50:00", {}))
        bar, = hour.named("svg", class_="hours")
        self.assertEqual([{"x": "0.000%", "y": "0.000%", "width": "100.000%", "height": "100.000%"}],
                         [rect.attributes for rect in bar.all("rect")])
        self.assertEqual(["11-20 08:00"], [text.text() for text in hour.named("text")])
        years = self.page_of(*[(OTHER, f"{month} 20 08:00:00", {}) for _ in range(20)
                               for month in ("Feb", "Jul", "Oct")], (OTHER, "Oct 20 08:01:00", {}))
        bar, = years.named("svg", class_="hours")
        self.assertLessEqual(len(list(bar.all("rect"))), 60)
        self.assertIn("At most 2 events in one hour. Each bar is the hour with the most events of 431.",
                      [p.text() for p in years.named("p")])
        ticks = [text.text() for text in years.named("text")]
        self.assertTrue(3 <= len(ticks) <= 7, ticks)
        self.assertTrue(all(re.fullmatch(r"20[0-2]\d-\d\d-\d\d", tick) for tick in ticks), ticks)

    def test_says_how_many_bands_are_left_out(self):
        page = self.page_of(*[(code, f"Nov 20 {i // 60:02}:{i % 60:02}:00", {}) for i in range(1100) for code in (IN, OUT)])
        self.assertEqual(2000, len(page.bands()))
        self.assertIn("Older ones are left out: 201.", [p.text() for p in page.named("p")])

    def test_without_known_times_draws_nothing(self):
        page = self.page_of((IN, "soon", {}), (OUT, "later", {}), (OTHER, "", {}))
        self.assertEqual([], page.bands())
        self.assertEqual([], page.named("text"))
        self.assertEqual(["not known", "not known", "not known"], page.outages()[-1][1:4])

    def test_keeps_the_order_of_one_log(self):
        rows = self.page_of((OTHER, "Nov 20 09:00:00", {}), (OTHER, "Nov 20 08:00:00", {})).rows()
        self.assertEqual(["Nov 20 09:00:00", "Nov 20 08:00:00"], [row[1] for row in rows])

    def test_lists_the_lines_that_a_check_finds(self):
        damaged = [b'{"id":1231,"time":"Nov 20 08:00:00","vars":{"a":\n', b"no object\n", b'{"id":12\xff}\n',
                   line_of(OTHER, "Nov 20 08:01:00", {}), b'{"id":1228,"time":"Nov 20 08:02:00"} {"id":1229}\n']
        self.program.write("log.0", b"".join(damaged))
        self.program.write("log", b"<script>hostile()</script>\n" + b"\0" * 20 + b"\n")
        found = [json.loads(line) for line in self.program.run("--check", "-o", "json", "log").stdout.splitlines()]
        found = [row for row in found if row["type"] == "finding"]
        self.assertEqual(5, len(found))
        page = self.check_is_safe(self.program.page("-n", "1", "log"))
        section, = page.named("section", aria_labelledby="findings")
        items = [item.text() for item in section.all("li")]
        self.assertEqual([f"{row['file']}, line {row['line']}: {row['kind']}: {row['effect']}: {row['text']}"
                          for row in found], items)
        self.assertEqual(["#findings"] * 3 + ["#e1-4", "#findings"],
                         [link.attributes["href"] for link in section.all("a")])
        self.assertIn(("5", "#findings"), [(link.text(), link.attributes["href"]) for link in page.named("a")])

    def test_lists_the_newest_1000_findings(self):
        self.program.write("log", b"damaged\n" * 1002 + line_of(OTHER, "Nov 20 08:01:00", {}))
        section, = Page(self.program.page("log").decode()).named("section", aria_labelledby="findings")
        items = [item.text() for item in section.all("li")]
        self.assertEqual(1000, len(items))
        self.assertTrue(items[0].startswith("log, line 3: no event"))
        self.assertIn("The newest 1000 of 1002.", section.text())

    def test_names_the_command_for_a_shell(self):
        page = self.page_of(*THREE_OUTAGES, options=["-e", "*switch*", "-g", "it's <b>"])
        code, = page.named("code")
        self.assertEqual("events-query -o html -e '*switch*' -g 'it'\\''s <b>' log", code.text())
        words = subprocess.run(["sh", "-c", f"printf '%s\\n' {code.text()}"], capture_output=True, check=True).stdout
        self.assertEqual("events-query\n-o\nhtml\n-e\n*switch*\n-g\nit's <b>\nlog\n", words.decode())

    def test_reads_standard_input(self):
        content = self.program.page("--year", "2026", "-", input=log_of(THREE_OUTAGES))
        self.assertEqual(14, len(self.check_is_safe(content).rows()))
        self.assertIn(b"<h1>Events of standard input</h1>", content)

    def test_names_the_first_of_many_logs(self):
        for i in range(22):
            self.program.write(f"many/{i:02}/events_report", b"")
        page = Page(self.program.page("many").decode())
        logs, = page.named("div", class_="log")
        self.assertTrue(logs.text().endswith("18, 19 and 2 more"), logs.text())
        self.assertIn("Events of 22 logs", [h1.text() for h1 in page.named("h1")])

    def test_without_events_is_small_and_whole(self):
        self.program.write("log", b"")
        content = self.program.page("log")
        self.assertLess(len(content), 60000)
        self.assertEqual([], self.check_is_safe(content).rows())
        self.assertEqual(1, self.program.run("-o", "html", "log").returncode)

    def test_escapes_a_hostile_log(self):
        self.program.write("log", hostile_log())
        page = self.check_is_safe(self.program.page("log"))
        self.assertEqual(len(self.program.events("log")), len(page.rows()))
        for text in HOSTILE:
            if not re.search(UNSAFE, text):
                self.assertTrue(any(text in row[4] for row in page.rows()), text)

    def test_escapes_hostile_names_of_logs(self):
        names = [name for name in (text.replace("/", "\\").replace("\0", "").encode() for text in HOSTILE)
                 if len(name) < 200] + [b"\xff\xc3(", b"\xe2\x80"]
        for name in names:
            self.program.write(b"logs/" + name + b"/events_report", log_of(THREE_OUTAGES))
        page = self.check_is_safe(self.program.page("logs"))
        self.assertEqual(len(names) + 1, len(page.named("h3")))
        for name in names:
            self.check_is_safe(self.program.page(b"logs/" + name))

    def test_is_the_same_in_fuzzed_bytes(self):
        line = line_of(OUT, "Nov 20 08:00:00", {"out_of_network_reason": "NO_UCP"})
        damaged = b"".join(line[:i] + bytes([byte]) + line[i + 1:] for i in range(len(line) - 1)
                           for byte in (0, 0x22, 0x3c, 0xff))
        self.program.write("log", damaged)
        page = self.check_is_safe(self.program.page("log"))
        self.assertEqual(len(self.program.events("log")), len(page.rows()))

    def test_is_a_format_of_the_help_and_of_a_wrong_format(self):
        self.assertIn(b"table, lines, csv, json or html\n", self.program.run("--help").stdout)
        self.assertIn(b"give table, lines, csv, json or html (", self.program.run("-o", "xml").stderr)

    def test_refuses_a_log_that_goes_on(self):
        self.program.write("log", b"")
        result = self.program.run("-o", "html", "-f", "log")
        self.assertEqual(2, result.returncode)
        self.assertIn(b"-f", result.stderr)


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    ARGS, rest = parser.parse_known_args()
    unittest.main(argv=[sys.argv[0], *rest])
