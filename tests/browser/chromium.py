"""A Chromium without a window, steered over its debugging pipe, and pages that come from no network.

Every page of the sites that a test names is made here: the browser asks for it as for any other, over
https too, and is answered before it looks for a server.
"""

import base64
import json
import os
import queue
import signal
import subprocess
import threading
import time
from urllib.parse import urlsplit

LIMIT_S = 60


class Refused(Exception):
    """What the browser says to a command that it does not carry out, or to a script that fails."""


class Chromium:
    def __init__(self, program, profile, log, pages):
        """`pages`: gives the text of the page or script at an address, for all but the browser's own."""
        self._pages = pages
        self._lock = threading.Lock()
        self._count = 0
        self._replies = {}
        commands_in, self._commands = os.pipe()
        self._messages, messages_out = os.pipe()
        self.process = subprocess.Popen(
            [program, "--headless=new", "--no-sandbox", "--remote-debugging-pipe",
             "--enable-unsafe-extension-debugging", "--no-first-run", "--disable-gpu",
             "--disable-dev-shm-usage", "--password-store=basic", "--host-resolver-rules=MAP * ~NOTFOUND",
             f"--user-data-dir={profile}", "about:blank"],
            stdin=subprocess.DEVNULL, stdout=log, stderr=log, start_new_session=True, close_fds=False,
            preexec_fn=lambda: self._place(commands_in, messages_out))
        os.close(commands_in)
        os.close(messages_out)
        threading.Thread(target=self._listen, daemon=True).start()
        self.call("Fetch.enable", {"patterns": [{"urlPattern": "http*"}]})

    @staticmethod
    def _place(commands, messages):
        """The browser has its pipe at the descriptors 3 and 4."""
        commands, messages = os.dup(commands), os.dup(messages)
        os.dup2(commands, 3)
        os.dup2(messages, 4)
        os.closerange(5, 256)

    def _listen(self):
        rest = b""
        while True:
            part = os.read(self._messages, 65536)
            if not part:
                return
            *messages, rest = (rest + part).split(b"\0")
            for message in map(json.loads, messages):
                if message.get("id") in self._replies:
                    self._replies[message["id"]].put(message)
                elif message.get("method") == "Fetch.requestPaused":
                    self._serve(message)

    def _serve(self, message):
        url = message["params"]["request"]["url"]
        body = self._pages(url)
        kind = "text/javascript" if urlsplit(url).path.endswith(".js") else "text/html; charset=utf-8"
        self._send("Fetch.fulfillRequest", {
            "requestId": message["params"]["requestId"],
            "responseCode": 200 if body is not None else 404,
            "responseHeaders": [{"name": "Content-Type", "value": kind}],
            "body": base64.b64encode((body or "").encode()).decode(),
        }, message.get("sessionId"))

    def _send(self, method, parameters, session=None):
        with self._lock:
            self._count += 1
            message = {"id": self._count, "method": method, "params": parameters}
            if session:
                message["sessionId"] = session
            self._replies[self._count] = queue.Queue()
            os.write(self._commands, json.dumps(message).encode() + b"\0")
            return self._replies[self._count]

    def call(self, method, parameters=None, session=None):
        reply = self._send(method, parameters or {}, session).get(timeout=LIMIT_S)
        if "error" in reply:
            raise Refused(f"{method}: {reply['error']['message']}")
        return reply["result"]

    def load_extension(self, folder):
        return self.call("Extensions.loadUnpacked", {"path": str(folder)})["id"]

    def open(self, url):
        return Page(self, url)

    def evaluate_in_worker(self, extension, expression):
        """In the extension's own background."""
        for target in self.call("Target.getTargets")["targetInfos"]:
            if target["type"] == "service_worker" and extension in target["url"]:
                session = self.call("Target.attachToTarget",
                                    {"targetId": target["targetId"], "flatten": True})["sessionId"]
                return evaluate(self, session, expression)
        raise Refused("the extension has no background")

    def quit(self):
        if self.process.poll() is None:
            self._send("Browser.close", {})
            self.process.wait(timeout=LIMIT_S)

    def kill(self):
        os.killpg(self.process.pid, signal.SIGKILL)
        self.process.wait(timeout=LIMIT_S)


def evaluate(browser, session, expression):
    result = browser.call("Runtime.evaluate", {
        "expression": expression, "awaitPromise": True, "returnByValue": True}, session)
    if "exceptionDetails" in result:
        raise Refused(json.dumps(result["exceptionDetails"]))
    return result["result"].get("value")


class Page:
    """A tab."""

    def __init__(self, browser, url):
        self._browser = browser
        self._target = browser.call("Target.createTarget", {"url": url})["targetId"]
        self._session = browser.call(
            "Target.attachToTarget", {"targetId": self._target, "flatten": True})["sessionId"]
        self.wait_for(f"location.href.startsWith({json.dumps(url)}) && document.readyState === 'complete'")

    def evaluate(self, expression):
        return evaluate(self._browser, self._session, expression)

    def wait_for(self, expression):
        end = time.monotonic() + LIMIT_S
        while not self.evaluate(expression):
            if time.monotonic() > end:
                raise Refused(f"never true: {expression}")
            time.sleep(0.05)

    def go_to(self, url):
        self._browser.call("Page.navigate", {"url": url}, self._session)

    def close(self):
        self._browser.call("Target.closeTarget", {"targetId": self._target})
