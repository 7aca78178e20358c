"""Which tests reach which lines of the library, measured by running each of them on its own with
the lines counted, and from that the tests for a broken place, the likeliest to catch it first."""

import json
import re
import shutil
import subprocess
import time

from .process import run
from .tree import OBJECTS

LONGEST_TEST = 600  # seconds
START_COST = 0.7  # seconds to link a program and to start it, beside its own time


def _lines_of(folder, build_folder):
    """File and line of what was run, from the counts in `folder`; None when there are none, as the
    library was not even loaded."""
    counts = sorted(folder.rglob("*.gcda"))
    for path in counts:
        notes = build_folder / OBJECTS / path.relative_to(
            next(parent for parent in path.parents if parent.name.endswith(".dir")))
        path.with_suffix(".gcno").symlink_to(notes.with_suffix(".gcno"))
    if not counts:
        return None
    told = subprocess.run(["gcov", "--json-format", "--stdout", *counts], cwd=folder, check=True,
                          capture_output=True, text=True).stdout
    lines = {}
    for report in told.splitlines():
        for file in json.loads(report)["files"]:
            path = file["file"]
            if not path.startswith("/"):
                lines.setdefault(path, set()).update(
                    line["line_number"] for line in file["lines"] if line["count"] > 0)
    return {path: sorted(numbers) for path, numbers in lines.items() if numbers}


def measure(tree, folder, say):
    """Runs every test, each with counts of its own, which are left in `folder`."""
    shutil.rmtree(folder / "counts", ignore_errors=True)
    measured = {}
    tests = tree.tests()
    for number, (name, programs) in enumerate(sorted(tests.items()), 1):
        counts = folder / "counts" / name
        counts.mkdir(parents=True)
        begun = time.monotonic()
        status, _ = run(["ctest", "-R", f"^{re.escape(name)}$"], tree.build_folder,
                        {"GCOV_PREFIX": str(counts)}, LONGEST_TEST)
        seconds = time.monotonic() - begun
        lines = _lines_of(counts, tree.build_folder)
        measured[name] = {"passed": status == 0, "seconds": round(seconds, 2),
                          "programs": programs, "lines": lines}
        say(f"{number}/{len(tests)} {name}: {'passed' if status == 0 else 'FAILED'}, "
            f"{seconds:.1f} s, {sum(map(len, (lines or {}).values()))} lines")
    return measured


def _words(text):
    return {word.rstrip("s") for word in re.split(r"[^a-z]+", text.lower())} - {
        "", "test", "cpp", "h", "inc", "id", "card", "idcard", "reader", "common", "iddata", "api",
        "render"}


class Reach:
    def __init__(self, measured, sources):
        self.tests = {name: test for name, test in measured.items()
                      if test["passed"] and test["lines"] is not None}
        self.sources = sources
        self.lines = {name: {path: set(numbers) for path, numbers in test["lines"].items()}
                      for name, test in self.tests.items()}
    def _includers(self, path):
        """The files that include `path`, also by way of others, and itself."""
        found, added = set(), {path}
        while added:
            found |= added
            added = {other for other, source in self.sources.items() if other not in found and
                     any(f'#include "{name}"' in source.text for name in added)}
        return found

    def _runs(self, name, files):
        """How many lines of these files a test runs."""
        return sum(len(self.lines[name].get(path, ())) for path in files)

    def reaching(self, place, by_file=False):
        """The tests that run the place or, where it is a declaration or a table that nothing
        counts, what may use it; the likeliest and quickest first."""
        span = range(place.line, place.last_line + 1)
        files = self._includers(place.path)
        names = [name for name, lines in self.lines.items()
                 if not lines.get(place.path, set()).isdisjoint(span)]
        if by_file or not names:
            names = [name for name in self.lines if self._runs(name, files)]
        if not all(any(self._runs(name, [path]) for name in self.lines)
                   for path in files if path.endswith(".cpp")):
            # One of them holds nothing but data, which any test may look at.
            names = list(self.lines)
        return sorted(names, key=lambda name: self._cost(name, place, files))

    def _cost(self, name, place, files):
        """Seconds until this test has caught the place, if it is as likely to as it looks."""
        likely = 0.02 + self._runs(name, files) / max(self._runs(name, self.lines[name]), 1)
        if _words(name) & _words(place.path):
            likely += 1
        return (START_COST + self.tests[name]["seconds"]) / likely

    def time_limit(self, name):
        """Seconds after which a test that takes longer hangs."""
        return int(20 + 5 * self.tests[name]["seconds"])
