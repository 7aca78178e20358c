"""A Firefox without a window, steered by the commands that it takes from its own tests (Marionette)."""

import json
import pathlib
import socket
import subprocess
import time

LIMIT_S = 60
# What it takes for tests by itself lets it forget the extensions of the machine at its second start.
PREFERENCES = {"remote.prefs.recommended": False}


class Refused(Exception):
    """What the browser says to a command that it does not carry out, or to a script that fails."""


def free_port():
    with socket.socket() as probe:
        probe.bind(("127.0.0.1", 0))
        return probe.getsockname()[1]


class Firefox:
    def __init__(self, program, profile, log, environment, preferences):
        port = free_port()
        profile = pathlib.Path(profile)
        profile.mkdir(exist_ok=True)
        (profile / "user.js").write_text("".join(
            f"user_pref({json.dumps(name)}, {json.dumps(value)});\n"
            for name, value in (PREFERENCES | {"marionette.port": port} | preferences).items()))
        self._process = subprocess.Popen(
            [program, "--headless", "--marionette", "--remote-allow-system-access", "--no-remote",
             "--profile", str(profile)],
            stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=environment)
        self._count = 0
        self._socket = self._connected(port)
        self._answers = self._socket.makefile("rb")
        self._read()
        self.call("WebDriver:NewSession", {"capabilities": {"alwaysMatch": {}}})
        self.call("WebDriver:SetTimeouts", {"script": LIMIT_S * 1000})

    def _connected(self, port):
        end = time.monotonic() + LIMIT_S
        while True:
            try:
                return socket.create_connection(("127.0.0.1", port))
            except OSError:
                if self._process.poll() is not None or time.monotonic() > end:
                    raise
                time.sleep(0.1)

    def _read(self):
        """One message: its length, a colon and JSON."""
        length = b""
        while (digit := self._answers.read(1)) != b":":
            if not digit:
                raise Refused("the browser has gone")
            length += digit
        return json.loads(self._answers.read(int(length)))

    def call(self, method, parameters=None):
        self._count += 1
        message = json.dumps([0, self._count, method, parameters or {}]).encode()
        self._socket.sendall(b"%d:" % len(message) + message)
        error, result = self._read()[2:]
        if error:
            raise Refused(f"{method}: {error['message']}")
        return result

    def load_extension(self, folder):
        return self.call("Addon:Install", {"path": str(folder), "temporary": True})["value"]

    def open(self, url):
        """A new tab, which is then the one that is spoken to."""
        tab = self.call("WebDriver:NewWindow", {"type": "tab"})["handle"]
        self.call("WebDriver:SwitchToWindow", {"handle": tab})
        self.call("WebDriver:Navigate", {"url": url})

    def go_to(self, url):
        self.call("WebDriver:Navigate", {"url": url})

    def go_back(self):
        self.call("WebDriver:Back")

    def close_tab(self):
        rest = self.call("WebDriver:CloseWindow")
        self.call("WebDriver:SwitchToWindow", {"handle": rest[0]})

    def evaluate(self, expression):
        script = (f"const done = arguments[0]; Promise.resolve({expression})"
                  ".then(value => done({value}), error => done({error: String(error)}))")
        result = self.call("WebDriver:ExecuteAsyncScript", {"script": script, "args": []})["value"]
        if "error" in result:
            raise Refused(result["error"])
        return result.get("value")

    def type(self, selector, text):
        element = self.call("WebDriver:FindElement", {"using": "css selector", "value": selector})["value"]
        self.call("WebDriver:ElementSendKeys", {"id": next(iter(element.values())), "text": text})

    def evaluate_in_browser(self, expression):
        """With the browser's own rights, in no page."""
        self.call("Marionette:SetContext", {"value": "chrome"})
        try:
            return self.evaluate(expression)
        finally:
            self.call("Marionette:SetContext", {"value": "content"})

    def quit(self):
        try:
            self.call("Marionette:Quit", {"flags": ["eForceQuit"]})
            self._process.wait(timeout=LIMIT_S)
        finally:
            self._process.kill()
            self._process.wait()
            self._answers.close()
            self._socket.close()
