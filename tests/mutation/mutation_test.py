"""Tests of the tool that breaks the library in one place at a time. The argument is the folder of
the scripts."""

import json
import pathlib
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, sys.argv.pop(1))

from mutation import equivalents, operators, quirks, report, sample  # noqa: E402
from mutation.campaign import CAUGHT, NOT_COMPILED, SAME_CODE, SURVIVED  # noqa: E402
from mutation.campaign import Campaign, Results  # noqa: E402
from mutation.reach import Reach  # noqa: E402
from mutation.source import Source  # noqa: E402

HERE = pathlib.Path(__file__).resolve().parent
SAMPLE = (HERE / "sample.cpp").read_text(encoding="utf-8")
FILE = "sample.cpp"


def first_of_each():
    """The first place of every operator in the sample."""
    places = {}
    for place in operators.places_of(Source(FILE, SAMPLE)):
        places.setdefault(place.operator, place)
    return places


class SampleTree:
    """The sample, built by the compiler alone, and its one test."""

    def __init__(self, folder):
        self.folder = pathlib.Path(folder)
        self.broken = SAMPLE
        self._compile(str(HERE / "sample_test.cpp"), "-c", "-o", "test.o")
        self.whole = self._code(SAMPLE)

    def _compile(self, *arguments):
        return subprocess.run(["c++", *arguments], cwd=self.folder, check=False,
                              capture_output=True).returncode == 0

    def _code(self, text):
        """The code that a text gives; none when it does not compile."""
        (self.folder / FILE).write_text(text, encoding="utf-8")
        if not self._compile("-O1", FILE, "-c", "-o", "sample.o"):
            return None
        return (self.folder / "sample.o").read_bytes()

    def break_at(self, place):
        self.broken = place.applied(SAMPLE)
        code = self._code(self.broken)
        return code is not None, code != self.whole

    def restore(self):
        self.broken = SAMPLE

    def links(self, _):
        return self._compile("test.o", "sample.o", "-o", "test")

    def failing_test(self, names, limits):
        try:
            status = subprocess.run(["./test"], cwd=self.folder, check=False,
                                    timeout=limits[names[0]]).returncode
        except subprocess.TimeoutExpired:
            status = None
        return None if status == 0 else names[0]


class SampleReach:
    """Which tests reach the sample: its one test, or none."""

    def __init__(self, names):
        self.names = names
        self.tests = {name: {"programs": []} for name in names}

    def reaching(self, _, __):
        return self.names

    def time_limit(self, _):
        return 5


class ACampaign(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.tree = SampleTree(folder.name)
        self.results = Results(pathlib.Path(folder.name) / "results.jsonl", resume=False)

    def campaign(self, names=("sample_test",)):
        return Campaign(self.tree, SampleReach(list(names)), self.results, lambda line: None)

    def test_catches_what_every_operator_breaks(self):
        places = first_of_each()
        self.assertEqual([name for name, _, _ in operators.OPERATORS], list(
            name for name, _, _ in operators.OPERATORS if name in places))
        for place in places.values():
            with self.subTest(place.id):
                self.assertEqual(CAUGHT, self.campaign().outcome(place))
                self.assertEqual(SAMPLE, self.tree.broken)

    def test_tells_what_no_test_notices(self):
        place = first_of_each()["return"]
        self.assertEqual(SURVIVED, self.campaign(names=()).outcome(place))
        self.assertFalse(report.is_good(self.results.by_id.values()))

    def test_counts_no_survivor_that_is_explained(self):
        place = first_of_each()["return"]
        self.campaign(names=()).outcome(place)
        known = [{"file": FILE, "operator": "return", "line": "return ++calls;", "reason": "why"}]
        reason = equivalents.reason_for(place, Source(FILE, SAMPLE), known)
        self.assertEqual("why", reason)
        explained = [{**result, "explained": reason} for result in self.results.by_id.values()]
        self.assertEqual([], report.counted_places(explained))
        self.assertIn(f"  {place.id}: why", list(report.told(explained)))
        other = first_of_each()["bound"]
        self.assertIsNone(equivalents.reason_for(other, Source(FILE, SAMPLE), known))

    def test_leaves_out_what_does_not_compile_and_what_changes_nothing(self):
        source = Source(FILE, SAMPLE)
        start = SAMPLE.index("int before = 0")
        wrong = operators.place(source, start, start + 3, "return", "nothing")
        same = operators.place(source, start, start + len("int before = 0"), "constant",
                               "int before = 1")
        self.assertEqual(NOT_COMPILED, self.campaign().outcome(wrong))
        self.assertEqual(SAME_CODE, self.campaign().outcome(same))

    def test_goes_on_where_it_was_interrupted(self):
        place = first_of_each()["bound"]
        self.campaign().outcome(place)
        kept = Results(self.results.path, resume=True)
        self.assertEqual(CAUGHT, kept.get(place)["outcome"])
        self.assertEqual("sample_test", kept.get(place)["by"])
        other = operators.Place(**{**place.__dict__, "before": "other text"})
        self.assertIsNone(kept.get(other))


class Places(unittest.TestCase):
    def test_are_found_in_code_alone(self):
        text = '// 1 < 2\n#define A 3\nconst char *a = "4 == 5"; // 6\nint b = 7;\n'
        places = list(operators.places_of(Source(FILE, text)))
        self.assertEqual({("constant", "7"), ("text-dropped", "4 == 5"),
                          ("text-changed", "4 == 5")},
                         {(place.operator, place.before) for place in places})

    def test_tell_file_line_column_and_operator(self):
        self.assertEqual("sample.cpp:23:16:constant", next(
            place.id for place in operators.places_of(Source(FILE, SAMPLE))
            if place.operator == "constant"))

    def test_refuse_another_source(self):
        with self.assertRaises(ValueError):
            first_of_each()["constant"].applied("int other;")


class ASample(unittest.TestCase):
    def test_is_the_same_for_the_same_seed(self):
        root = HERE.parent.parent
        first, again, other = (sample.Sample(root, seed, 200) for seed in ("1", "1", "2"))
        self.assertEqual(first.candidates, again.candidates)
        self.assertNotEqual(first.candidates, other.candidates)

    def test_takes_places_of_every_file_that_has_any(self):
        quotas = sample.quotas({"long.cpp": 10000, "short.cpp": 1, "empty.h": 0}, 100)
        self.assertEqual(1, quotas["short.cpp"])
        self.assertGreater(quotas["long.cpp"], 90)
        self.assertNotIn("empty.h", quotas)

    def test_has_every_oddity_of_the_list_and_each_stands_in_its_source_once(self):
        root = HERE.parent.parent
        found = sample.Sample(root, "1", 200).quirks
        self.assertEqual(len(quirks.load()), sum(map(len, found.values())))

    def test_refuses_an_oddity_that_does_not_stand_in_its_source(self):
        quirk = {"file": FILE, "text": "no such text", "replacement": "", "reason": ""}
        with self.assertRaises(ValueError):
            list(quirks.places_of(Source(FILE, SAMPLE), [quirk]))


class TheReach(unittest.TestCase):
    MEASURED = {
        "slow": {"passed": True, "seconds": 9, "lines": {"a.cpp": [1, 2, 3]}},
        "quick": {"passed": True, "seconds": 1, "lines": {"a.cpp": [1, 2]}},
        "other": {"passed": True, "seconds": 1, "lines": {"a.cpp": [1], "b.cpp": [1]}},
        "loading": {"passed": True, "seconds": 1, "lines": {}},
        "stranger": {"passed": True, "seconds": 1, "lines": None},
        "failing": {"passed": False, "seconds": 1, "lines": {}},
    }

    def setUp(self):
        texts = {"a.cpp": '#include "a.h"\nint f();\nint g(1);\nint h(2);\n',
                 "b.cpp": "int i;\n", "a.h": "int j(3);\n", "data.cpp": "int k;\n"}
        self.sources = {path: Source(path, text) for path, text in texts.items()}
        self.reach = Reach(self.MEASURED, self.sources)

    def names(self, path, text):
        source = self.sources[path]
        start = source.text.index(text)
        return self.reach.reaching(operators.place(source, start, start + 1, "constant", ""))

    def test_of_a_line_is_the_tests_that_run_it_the_quickest_first(self):
        self.assertEqual(["slow"], self.names("a.cpp", "1);"))
        self.assertEqual(["quick", "slow"], self.names("a.cpp", "f();"))

    def test_of_a_line_that_nothing_counts_is_the_tests_that_run_its_file(self):
        self.assertEqual(["other", "quick", "slow"], sorted(self.names("a.cpp", "h(2")))

    def test_of_a_file_that_holds_data_alone_is_every_test_that_loads_the_library(self):
        self.assertEqual(["loading", "other", "quick", "slow"], sorted(self.names("data.cpp", "k;")))

    def test_of_a_table_in_a_header_is_the_tests_that_run_what_includes_it(self):
        self.assertEqual(["other", "quick", "slow"], sorted(self.names("a.h", "3")))


if __name__ == "__main__":
    unittest.main()
