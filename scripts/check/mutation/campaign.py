"""Breaks one place after the other, runs the tests and keeps what became of each as a line of
JSON."""

import json
import time

CAUGHT, SURVIVED, NOT_COMPILED, SAME_CODE = "caught", "survived", "not compiled", "same code"

MOST_TRIES = 5  # for every place of a file's quota


class Results:
    """The file of results, one line for every place, the latest counting."""

    def __init__(self, path, resume):
        self.path = path
        self.by_id = {}
        if resume and path.exists():
            for line in path.read_text(encoding="utf-8").splitlines():
                result = json.loads(line)
                self.by_id[result["id"]] = result
        else:
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text("", encoding="utf-8")

    def get(self, place):
        """The result of a place, unless other text stands there by now."""
        result = self.by_id.get(place.id)
        return result if result is not None and result["before"] == place.before else None

    def add(self, result):
        self.by_id[result["id"]] = result
        with self.path.open("a", encoding="utf-8") as file:
            file.write(json.dumps(result, ensure_ascii=False) + "\n")


class Campaign:
    def __init__(self, tree, reach, results, say):
        self.tree = tree
        self.reach = reach
        self.results = results
        self.say = say

    def run_sample(self, sample):
        for path in sample.quotas:
            for place in sample.quirks[path]:
                self.outcome(place)
            wanted = sample.quotas[path]
            # Where the compiler checks everything, no other place is any better.
            for place in sample.candidates[path][:MOST_TRIES * wanted]:
                if wanted == 0:
                    break
                if self.outcome(place) in (CAUGHT, SURVIVED):
                    wanted -= 1

    def outcome(self, place):
        """What becomes of the place, from the results or by trying."""
        known = self.results.get(place)
        return known["outcome"] if known is not None else self.try_place(place)

    def try_place(self, place, by_file=False):
        begun = time.monotonic()
        try:
            outcome, by, tried = self._broken(place, by_file)
        finally:
            self.tree.restore()
        seconds = round(time.monotonic() - begun, 1)
        self.results.add({
            "id": place.id, "file": place.path, "line": place.line, "operator": place.operator,
            "before": place.before, "after": place.after, "reason": place.reason,
            "outcome": outcome, "by": by, "tests": tried, "seconds": seconds})
        self.say(f"{outcome}: {place.id} ({by or f'{tried} tests'}, {seconds} s)")
        return outcome

    def _broken(self, place, by_file):
        compiles, changed = self.tree.break_at(place)
        if not compiles:
            return NOT_COMPILED, None, 0
        if not changed:
            return SAME_CODE, None, 0
        names = self.reach.reaching(place, by_file)
        tried = 0
        size = 1
        # One, then a few, then many at a time: most places are caught by the first tests.
        while tried < len(names):
            batch = names[tried:tried + size]
            tried += len(batch)
            outcome, by = self._run_tests(batch)
            if outcome != SURVIVED:
                return outcome, by, tried
            size = min(2 * size, 8)
        return SURVIVED, None, tried

    def _run_tests(self, names):
        """What becomes of the broken library in these tests, and which of them failed."""
        programs = {program for name in names for program in self.reach.tests[name]["programs"]}
        if not self.tree.links(programs):
            return NOT_COMPILED, None
        limits = {name: self.reach.time_limit(name) for name in names}
        failed = self.tree.failing_test(names, limits)
        return (SURVIVED, None) if failed is None else (CAUGHT, failed)
