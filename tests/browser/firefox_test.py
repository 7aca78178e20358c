"""Web pages in Firefox that read cards, and those that may not. What the host refuses in any browser is in
browser_test.py.
"""

import http.server
import json
import os
import pathlib
import sys
import threading
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import firefox
from counter import BROWSER, TOOL, Counter, is_running, page_at, wait_until

EXTENSION_ID = "browser@idcard-reader.invalid"
IDLE_MS = 1000  # after which the browser may end an extension's background, 30 s by itself

READ = "readCard({options}).then(card => card.name, error => error.name)"
# What a page that does not use the page's script says to the extension.
RAW = """new Promise(resolve => {
  const { port1: port, port2: itsPort } = new MessageChannel();
  port.onmessage = ({ data }) => { if ('answer' in data) resolve(data.answer); };
  port.postMessage(%s);
  window.postMessage('%s', location.origin, [itsPort]);
})"""


class Pages(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        text = page_at(self.path, READ.format(options=""))
        self.send_response(404 if text is None else 200)
        kind = "text/javascript" if self.path.endswith(".js") else "text/html"
        self.send_header("Content-Type", f"{kind}; charset=utf-8")
        self.end_headers()
        self.wfile.write((text or "").encode())

    def log_message(self, *_):
        pass


def serve_pages():
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Pages)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    return server, f"http://127.0.0.1:{server.server_port}"


class Reading(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.server, cls.listed = serve_pages()
        cls.other_server, cls.unlisted = serve_pages()
        cls.counter = Counter([cls.listed])
        cls.counter.make_extension(
            lambda manifest: manifest["content_scripts"][0].update(matches=["http://127.0.0.1/*"]))
        cls.counter.register_host(".mozilla/native-messaging-hosts", {"allowed_extensions": [EXTENSION_ID]})
        cls.browser = firefox.Firefox(BROWSER, cls.counter.path / "profile", cls.counter.log,
                                      os.environ | {"HOME": str(cls.counter.path)},
                                      {"extensions.background.idle.timeout": IDLE_MS,
                                       "browser.sessionstore.interval": 100})
        assert cls.browser.load_extension(cls.counter.path / "extension") == EXTENSION_ID

    @classmethod
    def tearDownClass(cls):
        cls.browser.quit()
        for server in [cls.server, cls.other_server]:
            server.shutdown()
            server.server_close()
        cls.counter.close()

    def setUp(self):
        self.counter.card("resident")

    def open(self, url):
        self.browser.open(url)
        self.addCleanup(self.browser.close_tab)

    def read(self, url, options=""):
        self.open(url)
        return self.browser.evaluate(READ.format(options=options))

    def test_listed_page_gets_the_card(self):
        self.assertEqual(self.read(self.listed + "/"), "林晓雨")

    def test_photo_arrives(self):
        self.open(self.listed + "/")
        data = self.browser.evaluate("readCard({include: ['photo']}).then(card => card.photo.data)")
        self.assertTrue(data.startswith("Qk"))

    def test_reading_outlives_the_patience_of_the_browser(self):
        self.counter.script("tool", f"sleep {4 * IDLE_MS // 1000}; exec {TOOL} \"$@\" --simulate resident")
        self.assertEqual(self.read(self.listed + "/"), "林晓雨")

    def test_page_of_another_port_is_refused_by_the_host(self):
        self.assertEqual(self.read(self.unlisted + "/"), "BROWSER_ORIGIN_NOT_LISTED")

    def test_site_that_the_extension_was_not_made_for_finds_none(self):
        self.assertEqual(self.read(self.listed.replace("127.0.0.1", "localhost") + "/"),
                         "BROWSER_EXTENSION_MISSING")

    def test_frames_get_nothing(self):
        for page, frame in [(self.listed, self.unlisted), (self.unlisted, self.listed),
                            (self.listed, self.listed)]:
            with self.subTest(page=page, frame=frame):
                self.open(f"{page}/with-frame?{frame}/in-frame")
                self.assertTrue(wait_until(lambda: self.browser.evaluate("window.said")))
                self.assertEqual(self.browser.evaluate("window.said"), "BROWSER_EXTENSION_MISSING")

    def test_page_cannot_claim_another_origin(self):
        self.open(self.unlisted + "/")
        request = {"include": [], "timeout": 10, "language": "en"}
        claim = RAW % (json.dumps(request | {"origin": self.listed}), EXTENSION_ID)
        self.assertEqual(self.browser.evaluate(claim)["error"]["name"], "BROWSER_REQUEST_WRONG")
        plain = RAW % (json.dumps(request), EXTENSION_ID)
        self.assertEqual(self.browser.evaluate(plain)["error"]["name"], "BROWSER_ORIGIN_NOT_LISTED")

    def test_second_request_is_refused_while_a_card_is_read(self):
        self.counter.script("tool", f"sleep 2; exec {TOOL} \"$@\" --simulate resident")
        self.open(self.listed + "/")
        answers = self.browser.evaluate(
            "Promise.all([1, 2].map(() => " + READ.format(options="") + "))")
        self.assertEqual(sorted(answers), ["BROWSER_BUSY", "林晓雨"])

    def session_file_with(self, mark):
        """What the browser would open at its next start, as it stands once it has a page with this mark."""
        file = str(self.counter.path / "profile/sessionstore-backups/recovery.jsonlz4")
        read = f"IOUtils.exists({json.dumps(file)}).then(is => is ? IOUtils.readUTF8(" \
               f"{json.dumps(file)}, {{decompress: true}}) : '')"
        self.assertTrue(wait_until(lambda: mark in self.browser.evaluate_in_browser(read)))
        return self.browser.evaluate_in_browser(read)

    def test_card_in_the_form_of_the_sample_page_is_not_in_the_session_file(self):
        self.open(self.listed + "/sample.html")
        self.browser.evaluate("void document.getElementById('read').click()")
        self.assertTrue(wait_until(lambda: self.browser.evaluate("document.getElementById('photo').naturalWidth")))
        self.assertEqual(self.browser.evaluate("document.forms[0].elements.name.value"), "林晓雨")
        # The field of any other form is in the file.
        self.browser.evaluate("document.body.insertAdjacentHTML('beforeend', '<form><input id=other></form>')")
        self.browser.type("#other", "of any other form")
        session = self.session_file_with("of any other form")
        for text in ["林晓雨", "990000199003074284", "1990-03-07", "柳荫路"]:
            self.assertNotIn(text, session)

    def started_read(self, script):
        self.counter.sleeping_tool()
        self.browser.open(self.listed + "/")
        self.browser.evaluate(script)
        process = self.counter.tool_process()
        self.assertTrue(is_running(process))
        return process

    def test_tab_that_is_closed_ends_the_tool(self):
        process = self.started_read("void readCard()")
        self.browser.close_tab()
        self.assertTrue(wait_until(lambda: not is_running(process)))

    def test_page_that_is_left_ends_the_tool_and_knows_it_when_it_is_come_back_to(self):
        self.addCleanup(self.browser.close_tab)
        for attempt in range(3):  # a browser on a busy machine may load the page again instead of keeping it
            if attempt > 0:
                self.browser.close_tab()
            process = self.started_read(
                "(addEventListener('pageshow', e => document.title = e.persisted),"
                " void readCard({timeout: 120}).catch(error => document.body.textContent = error.name))")
            self.browser.go_to(self.unlisted + "/")
            self.assertTrue(wait_until(lambda: not is_running(process)))
            self.counter.card("resident")
            self.browser.go_back()
            if wait_until(lambda: self.browser.evaluate("document.title") == "true"):
                break
        self.assertTrue(wait_until(lambda: self.browser.evaluate("document.body.textContent") ==
                                   "BROWSER_PAGE_LEFT"))
        self.assertEqual(self.browser.evaluate("document.title"), "true")
        self.assertEqual(self.browser.evaluate(READ.format(options="")), "林晓雨")

    def test_page_that_is_left_frees_the_reader_for_others(self):
        process = self.started_read("void readCard({timeout: 120})")
        self.addCleanup(self.browser.close_tab)
        self.browser.go_to(self.unlisted + "/")
        self.assertTrue(wait_until(lambda: not is_running(process)))
        self.counter.card("resident")
        self.assertEqual(self.read(self.listed + "/"), "林晓雨")


if __name__ == "__main__":
    del sys.argv[1:7]
    unittest.main()
