"""Web pages in a real browser that read cards, and those that may not. How the host judges requests, and
what it makes of the tool, is in host_test.cpp.
"""

import base64
import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import chromium
from counter import BROWSER, EXTENSION, TOOL, Counter, is_running, page_at, wait_until

EXTENSION_ID = "ojdlmaapepnmfpiapikmeghcbbbdeipm"
LISTED = "https://pms.example"
LISTED_WITH_PORT = "http://intranet.example:8080"
UNLISTED = ["http://pms.example", "https://pms.example:8443", "https://www.pms.example",
            "https://pms.example.evil.example", "https://pms-example.example",
            "http://intranet.example", "http://intranet.example:8081", "https://intranet.example:8080"]

READ = """readCard({options}).then(card => ({{card}}),
  error => ({{error: {{name: error.name, headline: error.headline, remedy: error.remedy}}}}))"""
# What a page that does not use the page's script says to the extension.
RAW = """new Promise(resolve => {{
  const port = chrome.runtime.connect('%s');
  port.onMessage.addListener(answer => resolve(answer));
  port.onDisconnect.addListener(() => resolve('disconnected'));
  port.postMessage({message});
}})""" % EXTENSION_ID


class ChromiumCounter(Counter):
    def __init__(self, sites):
        """`sites`: those that the extension takes messages from. The host judges them once more."""
        super().__init__([LISTED, LISTED_WITH_PORT])
        self.profile = self.path / "profile"
        self.make_extension(lambda manifest: manifest["externally_connectable"].update(matches=sites))
        self.register_host("profile/NativeMessagingHosts",
                           {"allowed_origins": [f"chrome-extension://{EXTENSION_ID}/"]})
        self.browser = started_browser(self.profile, self.log)
        assert self.browser.load_extension(self.path / "extension") == EXTENSION_ID

    def close(self):
        self.browser.quit()
        super().close()


def started_browser(profile, log):
    return chromium.Chromium(BROWSER, profile, log, lambda url: page_at(url, READ.format(options="{}")))


def patterns_of(origins):
    """As the extension of a machine has them: each with its port."""
    return [f"{origin}/*" if origin.count(":") == 2 else
            f"{origin}:{443 if origin.startswith('https') else 80}/*" for origin in origins]


class Reading(unittest.TestCase):
    """An extension that lets everybody through, so that the host has to judge."""

    @classmethod
    def setUpClass(cls):
        cls.counter = ChromiumCounter(patterns_of([LISTED, LISTED_WITH_PORT] + UNLISTED))

    @classmethod
    def tearDownClass(cls):
        cls.counter.close()

    def setUp(self):
        self.counter.card("resident")

    def page(self, url):
        page = self.counter.browser.open(url)
        self.addCleanup(page.close)
        return page

    def read(self, url, options="{}"):
        return self.page(url).evaluate(READ.format(options=options))

    def error_name(self, url, options="{}"):
        return self.read(url, options)["error"]["name"]

    def raw(self, message, url=LISTED + "/"):
        return self.page(url).evaluate(RAW.format(message=message))

    # Listed pages.

    def test_listed_page_gets_what_the_tool_prints(self):
        card = self.read(LISTED + "/", "{include: ['photo', 'pictures'], timeout: 10}")["card"]
        printed = subprocess.run([TOOL, "read", "--json", "--inline", "photo,pictures", "--simulate",
                                  "resident"], check=True, stdout=subprocess.PIPE).stdout
        self.assertEqual(card, json.loads(printed))
        self.assertTrue(base64.b64decode(card["photo"]["data"]).startswith(b"BM"))

    def test_failure_comes_in_the_language_of_the_page(self):
        self.counter.card("resident", "no-card")
        self.assertEqual(self.read(LISTED + "/")["error"]["headline"], "No card was found on the reader.")
        error = self.read(LISTED + "/zh")["error"]
        self.assertEqual(error["name"], "IDCARD_RESULT_NO_CARD")
        self.assertIn("卡", error["headline"])
        self.assertIn("卡", error["remedy"])

    def test_language_with_an_underscore_is_understood(self):
        self.assertEqual(self.read(LISTED + "/zh_CN")["card"]["kind"], "resident")
        self.counter.card("resident", "no-card")
        self.assertIn("卡", self.read(LISTED + "/zh_CN")["error"]["headline"])

    def test_card_whose_photo_is_not_decoded_comes_with_the_error(self):
        self.counter.script("tool", """echo '{"kind": "hmt", "error": {"name": "PHOTO"}}'; exit 6""")
        self.assertEqual(self.read(LISTED + "/")["card"], {"kind": "hmt", "error": {"name": "PHOTO"}})

    def test_reading_shows_which_site_and_when(self):
        page = self.page(LISTED + "/")
        page.evaluate(READ.format(options="{}"))
        title, badge = self.counter.browser.evaluate_in_worker(
            EXTENSION_ID, "Promise.all([chrome.action.getTitle({}), chrome.action.getBadgeText({})])")
        self.assertRegex(title, r"^https://pms\.example .*\d\d?:\d\d:\d\d")
        self.assertEqual(badge, "✓")

    def test_second_request_on_the_same_page_after_the_first_is_answered(self):
        page = self.page(LISTED + "/")
        for _ in range(2):
            self.assertEqual(page.evaluate(READ.format(options="{}"))["card"]["kind"], "resident")

    def test_sample_page_fills_its_form_and_shows_the_photo(self):
        page = self.page(LISTED_WITH_PORT + "/sample.html")
        page.evaluate("document.getElementById('read').click()")
        page.wait_for("document.getElementById('photo').naturalWidth > 0")
        self.assertEqual(
            page.evaluate("[...document.forms[0].elements].filter(e => e.name).map(e => e.value).slice(0, 3)"),
            ["林晓雨", "990000199003074284", "1990-03-07"])
        self.assertEqual(page.evaluate("document.getElementById('photo').naturalWidth"), 102)
        self.counter.card("resident", "no-card")
        page.evaluate("document.getElementById('read').click()")
        page.wait_for("document.getElementById('message').textContent.startsWith('No card was found')")
        self.assertEqual(page.evaluate("document.forms[0].elements.name.value"), "")

    # Pages that may not.

    def test_page_of_any_other_site_is_refused_by_the_host(self):
        self.counter.sleeping_tool()
        for origin in UNLISTED:
            with self.subTest(origin):
                self.assertEqual(self.error_name(origin + "/"), "BROWSER_ORIGIN_NOT_LISTED")
        self.assertFalse((self.counter.path / "pid").exists())

    def answer_in_frame(self, page, frame):
        top = self.page(f"{page}/with-frame?{frame}/in-frame")
        top.wait_for("window.said !== undefined")
        return top.evaluate("window.said")["error"]["name"]

    def test_foreign_frame_in_a_listed_page_is_refused(self):
        self.assertEqual(self.answer_in_frame(LISTED, UNLISTED[2]), "BROWSER_NOT_TOP_FRAME")
        self.assertEqual(self.answer_in_frame(LISTED, "https://nowhere.example"), "BROWSER_EXTENSION_MISSING")

    def test_listed_page_in_a_foreign_frame_is_refused(self):
        self.assertEqual(self.answer_in_frame(UNLISTED[2], LISTED), "BROWSER_NOT_TOP_FRAME")
        self.assertEqual(self.answer_in_frame("https://nowhere.example", LISTED), "BROWSER_NOT_TOP_FRAME")
        self.assertEqual(self.answer_in_frame(LISTED, LISTED), "BROWSER_NOT_TOP_FRAME")

    def test_page_that_claims_another_origin_is_refused(self):
        message = f"{{include: [], timeout: 10, language: 'en', origin: '{LISTED}'}}"
        for origin in [UNLISTED[0], LISTED]:
            answer = self.raw(message, origin + "/")
            self.assertEqual(answer["error"]["name"], "BROWSER_REQUEST_WRONG")
        whole = f"{{origin: '{LISTED}', request: {{include: [], timeout: 10, language: 'en'}}}}"
        self.assertEqual(self.raw(whole, UNLISTED[0] + "/")["error"]["name"], "BROWSER_REQUEST_WRONG")

    # What a page may send.

    def test_wrong_request_is_refused(self):
        for message in ["{}", "null", "'text'", "[]", "17", "{include: [], timeout: 10}",
                        "{include: [], timeout: 10, language: 'en', out: '/tmp/card'}",
                        "{include: ['fingerprints'], timeout: 10, language: 'en'}",
                        "{include: [], timeout: 1e9, language: 'en'}",
                        "{include: [], timeout: 10, language: '_'}"]:
            with self.subTest(message):
                self.assertEqual(self.raw(message)["error"]["name"], "BROWSER_REQUEST_WRONG")

    def test_request_that_is_too_long_is_refused(self):
        for size in [8192, 1024 * 1024, 20 * 1024 * 1024]:
            with self.subTest(size):
                answer = self.raw(f"{{include: [], timeout: 10, language: 'x'.repeat({size})}}")
                self.assertEqual(answer["error"]["cause"], "A request has at most 8192 bytes.")
        self.assertEqual(self.read(LISTED + "/")["card"]["kind"], "resident")

    def test_flood_of_requests_has_one_answer(self):
        released = self.counter.path / "released"
        self.counter.script("tool", f"while [ ! -e {released} ]; do sleep 0.1; done; echo '{{\"kind\": \"none\"}}'")
        page, other = self.page(LISTED + "/"), self.page(LISTED_WITH_PORT + "/")
        page.evaluate("window.first = readCard(); 0")
        flood = f"Promise.all(Array.from({{length: 200}}, () => {READ.format(options='{}')}))"
        answers = page.evaluate(flood) + other.evaluate(flood)
        names = {answer["error"]["name"] for answer in answers}
        self.assertEqual(names, {"BROWSER_BUSY"})
        released.touch()
        self.assertEqual(page.evaluate("window.first"), {"kind": "none"})

    # A page that goes.

    def started_read(self, script="readCard({timeout: 120}).catch(() => {}); 0"):
        self.counter.sleeping_tool()
        page = self.counter.browser.open(LISTED + "/")
        page.evaluate(script)
        process = self.counter.tool_process()
        self.assertTrue(is_running(process))
        return page, process

    def assert_ended(self, process):
        self.assertTrue(wait_until(lambda: not is_running(process)))
        self.counter.card("resident")
        self.assertTrue(wait_until(lambda: "card" in self.read(LISTED + "/")))

    def test_tab_closed_during_a_read_ends_the_tool(self):
        page, process = self.started_read()
        page.close()
        self.assert_ended(process)

    def test_page_left_during_a_read_ends_the_tool(self):
        page, process = self.started_read()
        self.addCleanup(page.close)
        page.go_to(LISTED + "/zh")
        self.assert_ended(process)

    def test_page_reloaded_during_a_read_ends_the_tool(self):
        page, process = self.started_read()
        self.addCleanup(page.close)
        page.evaluate("location.reload()")
        self.assert_ended(process)

    def test_page_that_is_come_back_to_after_it_was_left_knows_that_its_read_has_ended(self):
        page, process = self.started_read(
            "addEventListener('pageshow', e => window.isKept = e.persisted);"
            "window.said = 'nothing'; readCard({timeout: 120}).catch(error => window.said = error.name); 0")
        self.addCleanup(page.close)
        page.go_to(LISTED + "/zh")
        page.wait_for("location.pathname === '/zh' && document.readyState === 'complete'")
        self.assertTrue(wait_until(lambda: not is_running(process)))
        page.evaluate("history.back(); 0")
        page.wait_for("location.pathname === '/' && window.isKept")
        page.wait_for("window.said === 'BROWSER_PAGE_LEFT'")
        self.counter.card("resident")
        self.assertEqual(page.evaluate(READ.format(options="{}"))["card"]["kind"], "resident")

    # A host that is not as it should be.

    def test_longest_answer_arrives(self):
        self.counter.script("tool", """printf '{"kind":"'; head -c 1048565 /dev/zero | tr '\\0' x; printf '"}'""")
        self.assertEqual(len(self.read(LISTED + "/")["card"]["kind"]), 1048565)

    def test_missing_host_is_reported(self):
        (self.counter.path / "host").rename(self.counter.path / "host.away")
        self.addCleanup(lambda: (self.counter.path / "host.away").rename(self.counter.path / "host"))
        self.assertEqual(self.error_name(LISTED + "/"), "BROWSER_HOST_MISSING")

    def test_host_that_crashes_during_a_read_is_reported(self):
        self.counter.script("tool", "kill -KILL $PPID; exec sleep 600")
        self.assertEqual(self.error_name(LISTED + "/"), "BROWSER_HOST_MISSING")


class MachinesOwnExtension(unittest.TestCase):
    """The extension for the listed sites alone."""

    def setUp(self):
        self.counter = ChromiumCounter(patterns_of([LISTED, LISTED_WITH_PORT]))
        self.addCleanup(self.counter.close)

    def test_other_sites_do_not_reach_it(self):
        self.counter.card("resident")
        for origin in [LISTED, LISTED_WITH_PORT]:
            page = self.counter.browser.open(origin + "/")
            self.assertEqual(page.evaluate(READ.format(options="{}"))["card"]["kind"], "resident")
        for origin in UNLISTED:
            page = self.counter.browser.open(origin + "/zh")
            error = page.evaluate(READ.format(options="{}"))["error"]
            self.assertEqual(error["name"], "BROWSER_EXTENSION_MISSING", origin)
            self.assertIn("读卡", error["headline"])

    def test_browser_killed_during_a_read_ends_the_tool(self):
        self.counter.sleeping_tool()
        page = self.counter.browser.open(LISTED + "/")
        page.evaluate("readCard({timeout: 120}); 0")
        process = self.counter.tool_process()
        self.counter.browser.kill()
        self.assertTrue(wait_until(lambda: not is_running(process)))

    def marks(self, card):
        """What a card says, in the forms in which a file could hold it."""
        texts = [card[key] for key in ["name", "idNumber", "address", "issuingAuthority"]]
        forms = {encoded for text in texts for encoded in (text.encode(), text.encode("utf-16-le"))}
        data = card["photo"]["data"]
        return forms | {data[2000:2060].encode(), base64.b64decode(data)[20000:20030]}

    def places(self, marks):
        """The files of the profile, and the log, that hold one."""
        files = [file for file in self.counter.profile.rglob("*") if file.is_file()]
        return [str(file) for file in files + [self.counter.path / "log"]
                if any(mark in file.read_bytes() for mark in marks)]

    def test_card_leaves_no_mark_in_the_profile(self):
        self.counter.card("resident")
        page = self.counter.browser.open(LISTED + "/")
        card = page.evaluate("readCard({include: ['photo', 'pictures']})")
        marks = self.marks(card)
        self.assertEqual(len(marks), 10)
        page.close()
        self.counter.browser.quit()
        self.assertEqual(self.places(marks), [])

    def test_card_in_the_form_of_the_sample_page_leaves_no_mark_in_the_profile(self):
        self.counter.card("resident")
        page = self.counter.browser.open(LISTED_WITH_PORT + "/sample.html")
        card = page.evaluate("readCard({include: ['photo']})")
        page.evaluate("document.getElementById('read').click()")
        page.wait_for("document.getElementById('photo').naturalWidth > 0")
        page.go_to(LISTED + "/zh")  # a page that is left is what browsers keep for the way back
        page.wait_for("location.pathname === '/zh'")
        self.counter.browser.quit()
        self.assertEqual(self.places(self.marks(card)), [])

    def test_card_that_a_page_stores_is_found_in_the_profile(self):
        self.counter.card("resident")
        page = self.counter.browser.open(LISTED + "/")
        card = page.evaluate(
            "readCard({include: ['photo']}).then(card => { localStorage.card = card.idNumber; return card })")
        self.counter.browser.quit()
        self.assertNotEqual(self.places(self.marks(card)), [])


def leave_out_with_an_older_browser():
    with tempfile.TemporaryFile() as log, tempfile.TemporaryDirectory() as profile:
        browser = started_browser(profile, log)
        try:
            browser.load_extension(EXTENSION)
        except chromium.Refused as refusal:
            if "wasn't found" in str(refusal):
                print("Left out: this Chromium is too old to load an extension over its debugging pipe")
                sys.exit()
        finally:
            browser.quit()


if __name__ == "__main__":
    leave_out_with_an_older_browser()
    del sys.argv[1:7]
    unittest.main()
