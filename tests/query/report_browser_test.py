#!/usr/bin/env python3
"""Checks the pages of events-query -o html in Chromium. Skipped where it cannot be driven.

With --screenshots FOLDER, pictures of a page are left there for a look.
"""

import argparse
import base64
import json
import os
import re
import shutil
import sys
import tempfile
import time
import unittest

from report_page import HOSTILE, IN, OTHER, OUT, THREE_OUTAGES, Program, hostile_log, log_of

try:
    from selenium import webdriver
    from selenium.webdriver.chrome.service import Service
    from selenium.webdriver.common.by import By
    from selenium.webdriver.common.keys import Keys
except ImportError:
    webdriver = None

ARGS = None
FIELDS = ("q", "event", "log", "band")
CONTRAST = """
    const parts = (colour) => colour.match(/[\\d.]+/g).map(Number);
    const light = (colour) => parts(colour).slice(0, 3).map((c) => c / 255)
        .map((c) => (c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4))
        .reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0);
    const backOf = (element) => {
        const back = getComputedStyle(element).backgroundColor;
        return parts(back).length < 4 || parts(back)[3] > 0 ? back : backOf(element.parentElement);
    };
    const ratio = (one, other) => {
        const [low, high] = [light(one), light(other)].sort((a, b) => a - b);
        return (high + 0.05) / (low + 0.05);
    };
    return [...document.querySelectorAll(arguments[0])].map((element) =>
        ratio(getComputedStyle(element)[arguments[1]], backOf(element)));
"""
SEARCH = """
    const [text, done] = arguments;
    const field = document.getElementById("q");
    const begin = performance.now();
    field.value = text;
    field.dispatchEvent(new Event("input", { bubbles: true }));
    requestAnimationFrame(() => setTimeout(() => done(performance.now() - begin)));
"""


def new_browser(folder):
    options = webdriver.ChromeOptions()
    for argument in ("--headless=new", "--no-sandbox", "--disable-gpu", "--disable-dev-shm-usage",
                     f"--user-data-dir={folder}/profile"):
        options.add_argument(argument)
    options.binary_location = shutil.which("chromium")
    options.set_capability("goog:loggingPrefs", {"browser": "ALL", "performance": "ALL"})
    browser = webdriver.Chrome(service=Service(shutil.which("chromedriver")), options=options)
    browser.set_script_timeout(60)
    return browser


class BrowserTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        folder = tempfile.TemporaryDirectory(prefix="report_browser_test.")
        cls.addClassCleanup(folder.cleanup)
        cls.program = Program(ARGS.program, ARGS.emulator, folder.name)
        cls.browser = new_browser(folder.name)
        cls.addClassCleanup(cls.browser.quit)

    def setUp(self):
        self.resize(1600)
        self.emulate({})

    def resize(self, width):
        self.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": 900, "deviceScaleFactor": 1, "mobile": width < 500})

    def emulate(self, features, media=""):
        self.browser.execute_cdp_cmd("Emulation.setEmulatedMedia", {
            "media": media, "features": [{"name": name, "value": value} for name, value in features.items()]})

    def open(self, *arguments, address=""):
        """Opens the page of a command, and checks that it is quiet."""
        self.program.write("page.html", self.program.page(*arguments))
        self.go(address)

    def go(self, address=""):
        self.browser.get("about:blank")
        for kind in ("browser", "performance"):
            self.browser.get_log(kind)
        self.browser.get(f"file://{self.program.folder}/page.html{address}")
        self.check_is_quiet()

    def open_events(self, events, *options, address=""):
        self.program.write("log", log_of(events))
        self.open(*options, "log", address=address)

    def check_is_quiet(self):
        self.assertEqual([], self.browser.get_log("browser"))
        requests = [json.loads(entry["message"])["message"] for entry in self.browser.get_log("performance")]
        addresses = [request["params"]["request"]["url"] for request in requests
                     if request["method"] == "Network.requestWillBeSent"]
        self.assertEqual([], [address for address in addresses
                              if not address.startswith((f"file://{self.program.folder}/page.html", "about:"))])

    def all(self, selector):
        return self.browser.find_elements(By.CSS_SELECTOR, selector)

    def one(self, selector):
        return self.browser.find_element(By.CSS_SELECTOR, selector)

    def shown(self):
        """The ids of the rows that are shown."""
        return self.browser.execute_script(
            "return [...document.querySelectorAll('#rows tbody tr')].filter((row) => row.checkVisibility())"
            ".map((row) => row.id)")

    def check_shown(self, ids):
        """Waits for these rows: an event of the page may come a little later."""
        deadline = time.monotonic() + 20
        while self.shown() != ids and time.monotonic() < deadline:
            time.sleep(0.05)
        self.assertEqual(ids, self.shown())

    def address(self):
        return self.browser.current_url.partition("#")[2]

    def choose(self, field, text):
        for option in self.all(f"#{field} option"):
            if text in option.text:
                option.click()
                return
        self.fail(f"no {text} in {field}")

    def test_shows_the_outages(self):
        self.open_events(THREE_OUTAGES)
        outages = self.all(".list tr.out")
        self.assertEqual(["15 min 46 s", "2 h 0 min", "6 min 54 s"],
                         [row.find_elements(By.TAG_NAME, "td")[2].text for row in outages])
        widths = [shape.rect["width"] for shape in self.all(".bands rect.out")]
        self.assertEqual(3, len(widths))
        self.assertTrue(all(width >= 2 for width in widths), widths)
        highest = max(shape.rect["height"] for shape in self.all(".bands rect.in"))
        self.assertLess(2 * highest, min(shape.rect["height"] for shape in self.all(".bands rect.out")))

    def test_leads_from_a_band_to_its_row(self):
        self.open_events(THREE_OUTAGES, address="#q=nothing")
        self.check_shown([])
        self.one(".bands a[href='#e1-10']").click()
        self.assertEqual("e1-10", self.address())
        self.check_shown([f"e1-{i}" for i in range(14)])
        self.assertEqual("e1-10", self.one("tr:target").get_attribute("id"))

    def test_searches_as_one_types(self):
        self.open_events(THREE_OUTAGES)
        self.one("#q").send_keys("fell OUT")
        self.check_shown(["e1-2", "e1-10"])
        self.assertEqual("2 of 14 shown", self.one("#count").text)
        self.one("#q").send_keys(" acq_dis")
        self.check_shown(["e1-10"])
        self.assertEqual("q=fell+OUT+acq_dis", self.address())
        self.one("button").click()
        self.check_shown([f"e1-{i}" for i in range(14)])
        self.assertEqual("", self.address())

    def test_searches_only_what_is_seen(self):
        self.open_events(THREE_OUTAGES, address="#q=out_of_network_reason")
        self.check_shown([])

    def test_hides_by_event_and_band(self):
        self.open_events(THREE_OUTAGES)
        self.choose("event", "MODEM_IN_NETWORK (5)")
        self.check_shown(["e1-1", "e1-3", "e1-6", "e1-9", "e1-12"])
        self.choose("band", "2026-11-20 07:56:21")
        self.check_shown(["e1-12"])
        self.choose("event", "all")
        self.check_shown(["e1-10", "e1-11", "e1-12"])
        self.assertFalse(self.one("#log").is_displayed())

    def test_hides_by_log(self):
        for name in ("4417", "4418"):
            self.program.write(f"two/{name}/events_report", log_of(THREE_OUTAGES[:3]))
        self.open("two")
        self.choose("log", "4418")
        self.check_shown(["e2-0", "e2-1", "e2-2"])
        self.assertEqual("log=2", self.address())

    def test_keeps_all_in_the_address(self):
        self.open_events(THREE_OUTAGES, address="#q=network&event=MODEM_OUT_OF_NETWORK&band=5")
        self.check_shown(["e1-10"])
        self.assertEqual(["network", "MODEM_OUT_OF_NETWORK", "", "5"],
                         [self.one(f"#{field}").get_attribute("value") for field in FIELDS])
        self.browser.execute_script("location.hash = 'q=reset'")
        self.check_shown(["e1-4"])
        self.go("#q=%3Cscript%3E&event=none&band=99&log=x&other=y")
        self.check_shown([])
        self.assertEqual(["<script>", "", "", ""], [self.one(f"#{field}").get_attribute("value") for field in FIELDS])

    def test_is_used_by_keyboard(self):
        self.open_events(THREE_OUTAGES)
        seen = []
        for _ in range(60):
            self.browser.switch_to.active_element.send_keys(Keys.TAB)
            element = self.browser.switch_to.active_element
            seen.append(element.tag_name + (element.get_attribute("id") or ""))
            outline = element.value_of_css_property("outline-style")
            self.assertTrue(outline != "none" or element.tag_name == "a", seen)
            if element.tag_name == "summary":
                break
        self.assertEqual(["inputq", "selectevent", "selectband", "button", "summary"], seen[-5:])
        self.browser.switch_to.active_element.send_keys(Keys.ENTER)
        self.assertTrue(self.one("#e1-0 pre").is_displayed())
        self.browser.execute_script("document.querySelector('.bands a[href=\"#e1-2\"]').focus()")
        self.browser.switch_to.active_element.send_keys(Keys.ENTER)
        self.assertEqual("e1-2", self.address())

    def test_has_names_and_roles(self):
        self.open_events(THREE_OUTAGES)
        self.assertEqual(["Search", "Event", "Log", "Band"],
                         [self.one(f"#{field}").accessible_name or "Log" for field in FIELDS])
        self.assertEqual(["Time", "Log", "Event", "Detail"],
                         [head.get_attribute("textContent") for head in self.all("#rows thead th")])
        self.assertEqual(["columnheader", "row", "cell"],
                         [self.one(selector).aria_role for selector in ("#rows th", "#rows tbody tr", "#rows td")])
        self.assertEqual("rowheader", self.one(".list tbody th").aria_role)
        self.assertEqual("link", self.one(".bands a").aria_role)
        self.assertTrue(self.all(".bands a")[2].accessible_name.startswith("Out of network from 2026-11-18 16:44:05"))
        self.assertEqual("Events an hour. At most 3 events in one hour.", self.one(".hours").accessible_name)
        levels = [int(heading.tag_name[1]) for heading in self.all("h1, h2, h3")]
        self.assertEqual(1, levels[0])
        self.assertTrue(all(after <= before + 1 for before, after in zip(levels, levels[1:])), levels)

    def test_fits_narrow_and_wide_screens(self):
        long = [(OUT, "Nov 20 08:00:00", {"out_of_network_reason": "X" * 300}), *THREE_OUTAGES]
        for name in ("4417", "a_terminal_with_a_long_name"):
            self.program.write(f"wide/{name}/events_report", log_of(long))
        for logs in ("wide/4417/events_report", "wide"):
            self.open(logs)
            for width in (360, 800, 1000, 1230, 1600):
                self.resize(width)
                self.assertEqual(width, self.browser.execute_script("return innerWidth"))
                self.assertLessEqual(self.browser.execute_script("return document.documentElement.scrollWidth"), width)

    def test_has_enough_contrast_light_and_dark(self):
        for scheme in ("light", "dark"):
            self.emulate({"prefers-color-scheme": scheme})
            self.open_events(THREE_OUTAGES, address="#e1-2")
            for selector, colour, least in (("h1, p, dt, a, th, td, label, input, summary, output, button", "color", 4.5),
                                            (".axis text", "fill", 4.5), ("rect.in, rect.out, .hours rect", "fill", 3),
                                            ("rect.unknown", "stroke", 3)):
                ratios = self.browser.execute_script(CONTRAST, selector, colour)
                self.assertTrue(ratios)
                self.assertGreaterEqual(min(ratios), least, (scheme, selector))
        back = self.one("body").value_of_css_property("background-color")
        self.assertEqual("rgba(20, 23, 28, 1)", back)

    def test_has_everything_without_a_script(self):
        self.browser.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": True})
        try:
            self.open_events(THREE_OUTAGES)
            self.assertEqual(14, len([row for row in self.all("#rows tbody tr") if row.is_displayed()]))
            self.assertFalse(self.one("form").is_displayed())
            self.one("#e1-3 summary").click()
            self.assertTrue(self.one("#e1-3 pre").is_displayed())
            self.one(".bands a[href='#e1-10']").click()
            self.assertEqual("e1-10", self.address())
        finally:
            self.browser.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": False})

    def test_is_printed(self):
        self.open_events(THREE_OUTAGES * 40)
        self.emulate({}, "print")
        self.assertFalse(self.one("form").is_displayed())
        self.assertEqual("visible", self.one("#rows tbody tr").value_of_css_property("content-visibility"))
        self.emulate({})
        pdf = base64.b64decode(self.browser.execute_cdp_cmd("Page.printToPDF", {})["data"])
        self.assertEqual(b"%PDF", pdf[:4])
        few = [(OTHER, "Nov 20 08:00:00", {})]
        self.open_events(few)
        small = base64.b64decode(self.browser.execute_cdp_cmd("Page.printToPDF", {})["data"])
        self.assertGreater(pdf.count(b"/Type /Page\n"), small.count(b"/Type /Page\n") + 5)

    def watch_scripts(self):
        self.browser.execute_cdp_cmd("Page.addScriptToEvaluateOnNewDocument", {
            "source": "window.hostile = () => { document.title = 'hostile'; };"})

    def check_nothing_ran(self):
        self.browser.execute_script("""
            for (const element of document.querySelectorAll("body *")) {
                for (const kind of ["mouseover", "focus", "load", "error", "click"]) {
                    if (element.tagName !== "BUTTON") {
                        element.dispatchEvent(new MouseEvent(kind));
                    }
                }
            }
            document.querySelectorAll("details").forEach((one) => { one.open = true; });""")
        self.assertTrue(self.browser.title.startswith("Events of "))
        self.assertEqual(1, len(self.all("script")))
        self.assertEqual([], self.all("img, iframe, base, link, body meta, #rows form"))
        self.check_is_quiet()

    def test_runs_nothing_of_a_hostile_log(self):
        self.watch_scripts()
        self.program.write("log", hostile_log())
        self.open("log")
        self.check_nothing_ran()
        self.one("#q").send_keys("</script>")
        self.assertTrue(self.shown())
        for address in ("#q=%3Cimg%20src%3Dx%20onerror%3Dhostile()%3E", "#javascript:hostile()", "#%00%FF", "#"):
            self.go(address)
            self.check_nothing_ran()

    def test_runs_nothing_of_hostile_names(self):
        self.watch_scripts()
        for text in HOSTILE:
            name = text.replace("/", "\\").replace("\0", "").encode()
            self.program.write(b"names/" + name + b"/events_report", log_of([(OUT, "Nov 20 08:00:00", {})]))
        self.program.write(b"names/\xff\xc3(/events_report", log_of([(IN, "Nov 20 08:00:00", {})]))
        self.open("names")
        self.assertEqual(len(HOSTILE) + 1, len(self.shown()))
        self.check_nothing_ran()
        self.choose("log", "<img src=x onerror=hostile()>")
        self.assertEqual(1, len(self.shown()))
        self.check_nothing_ran()

    def test_has_a_style_that_is_understood(self):
        self.open_events(THREE_OUTAGES)
        style = self.one("style").get_attribute("textContent")
        declarations = re.findall(r"[{; ]([a-z-]+): ([^;{]+?)(?: !important)?;", style)
        self.assertGreater(len(declarations), 100)
        self.assertEqual([], self.browser.execute_script(
            "return arguments[0].filter(([name, value]) => !CSS.supports(name, value))", declarations))

    def test_allows_no_other_script(self):
        self.open_events(THREE_OUTAGES)
        blocked = self.browser.execute_async_script("""
            const done = arguments[0];
            document.addEventListener("securitypolicyviolation", (event) => done(event.violatedDirective));
            const script = document.createElement("script");
            script.textContent = "document.title = 'hostile'";
            document.body.append(script);""")
        self.assertEqual("script-src-elem", blocked)
        self.assertTrue(self.browser.title.startswith("Events of "))

    def test_searches_10000_rows(self):
        events = [(code, f"Nov {day:02} {hour:02}:{minute:02}:00", {"out_of_network_reason": "NO_UCP"})
                  for day in range(1, 21) for hour in range(24) for minute in range(0, 60, 3)
                  for code in (OTHER, (IN, OUT)[minute % 2])][:10000]
        self.open_events(events)
        figures = []
        for text in ("u", "unm", "no_ucp", "no", ""):
            figures.append(self.browser.execute_async_script(SEARCH, text))
            shown = [event for event in self.program.events("log") if text in
                     f"{event['time']} {event['event']} {event['detail']} {event['meaning']}".lower()]
            self.assertEqual(f"{len(shown)} of {len(events)} shown", self.one("#count").text)
            self.check_shown([f"e1-{event['line'] - 1}" for event in shown])
        print(f"a search among {len(events)} rows took {', '.join(f'{figure:.0f}' for figure in figures)} ms")

    def test_leaves_pictures(self):
        if not ARGS.screenshots:
            self.skipTest("without --screenshots")
        os.makedirs(ARGS.screenshots, exist_ok=True)
        for scheme in ("light", "dark"):
            for width in (360, 1600):
                self.emulate({"prefers-color-scheme": scheme})
                self.resize(width)
                self.open_events(THREE_OUTAGES)
                self.browser.save_screenshot(f"{ARGS.screenshots}/{scheme}_{width}.png")


if __name__ == "__main__":
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--program", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("--screenshots")
    ARGS, rest = parser.parse_known_args()
    if webdriver is None or not shutil.which("chromium") or not shutil.which("chromedriver"):
        print("skipped: this needs chromium, chromedriver and Python's selenium")
        sys.exit(77)
    unittest.main(argv=[sys.argv[0], *rest])
