"""The machine at a counter, in one folder: the list of sites, the host, the tool and a browser's extension.
And the pages of its sites.

Arguments of the program: the browser, the folder of the build's extension, its page script, the sample page,
the host that takes its settings from the environment, and the tool.
"""

import json
import os
import pathlib
import shutil
import sys
import tempfile
import time
from urllib.parse import urlsplit

BROWSER, EXTENSION, PAGE_SCRIPT, SAMPLE, HOST, TOOL = sys.argv[1:7]
HOST_NAME = "invalid.idcard_reader.browser_host"
SOON_S = 20


def is_running(process):
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rpartition(")")[2].split()[0] != "Z"
    except (FileNotFoundError, ProcessLookupError):  # before and after the file was opened
        return False


def wait_until(holds):
    end = time.monotonic() + SOON_S
    while not holds() and time.monotonic() < end:
        time.sleep(0.05)
    return holds()


def page_at(url, read):
    """Every site has the same pages: those that read cards, in two languages, and one with a frame.
    `read`: what the page in the frame does, to say to the other what comes of it."""
    path, query = urlsplit(url).path, urlsplit(url).query
    script = '<script src="/read-card.js"></script>'
    if path == "/read-card.js":
        return pathlib.Path(PAGE_SCRIPT).read_text(encoding="utf-8")
    if path == "/sample.html":
        return pathlib.Path(SAMPLE).read_text(encoding="utf-8")
    if path == "/":
        return f'<!doctype html><html lang="en"><title>Counter</title>{script}</html>'
    if path == "/zh_CN":
        return f'<!doctype html><html lang="zh_CN"><title>柜台</title>{script}</html>'
    if path == "/zh":
        return f'<!doctype html><html lang="zh-CN"><title>柜台</title>{script}</html>'
    if path == "/with-frame":
        return ("<!doctype html><script>addEventListener('message', e => window.said = e.data)</script>"
                f"<iframe src='{query}'></iframe>")
    if path == "/in-frame":
        return (f"<!doctype html>{script}<script>" + read +
                ".then(answer => parent.postMessage(answer, '*'))</script>")
    return None


class Counter:
    def __init__(self, listed):
        self._folder = tempfile.TemporaryDirectory()
        self.path = pathlib.Path(self._folder.name)
        self.log = open(self.path / "log", "w+b")
        (self.path / "origins").write_text("".join(f"{origin}\n" for origin in listed))
        (self.path / "origins").chmod(0o644)
        self.script("host", f"""
            TEST_ORIGIN_LIST={self.path}/origins TEST_LIST_OWNER={os.getuid()} \\
            TEST_TOOL={self.path}/tool TEST_GRACE_MS=60000 exec {HOST} "$@" """)

    def close(self):
        self.log.close()
        self._folder.cleanup()

    def make_extension(self, change):
        """`change`: what makes the build's manifest that of this machine."""
        shutil.copytree(EXTENSION, self.path / "extension", copy_function=shutil.copyfile)
        manifest = json.loads((self.path / "extension/manifest.json").read_text())
        change(manifest)
        (self.path / "extension/manifest.json").write_text(json.dumps(manifest))

    def register_host(self, folder, extensions):
        """In the folder where the browser looks for it, for the extensions that may start it."""
        hosts = self.path / folder
        hosts.mkdir(parents=True)
        (hosts / f"{HOST_NAME}.json").write_text(json.dumps({
            "name": HOST_NAME, "description": "under test", "path": str(self.path / "host"),
            "type": "stdio"} | extensions))

    def script(self, name, text):
        new = self.path / f"{name}.new"
        new.write_text(f"#!/bin/sh\n{text}\n")
        new.chmod(0o755)
        new.rename(self.path / name)

    def card(self, name, faults=None):
        self.script("tool", f"exec {TOOL} \"$@\" --simulate {name}" + (f" --fault {faults}" if faults else ""))

    def sleeping_tool(self):
        (self.path / "pid").unlink(missing_ok=True)
        self.script("tool", f"echo $$ > {self.path}/pid.new; mv {self.path}/pid.new {self.path}/pid; "
                            "exec sleep 600")

    def tool_process(self):
        assert wait_until((self.path / "pid").exists)
        return int((self.path / "pid").read_text())
