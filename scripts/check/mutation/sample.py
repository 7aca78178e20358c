"""Which places are broken: all oddities of the list, and of every source file a sample that the
seed decides."""

import math
import random

from . import equivalents, operators, quirks
from .source import Source

FOLDERS = ["api", "common", "iddata", "reader", "render"]
SUFFIXES = {".cpp", ".h", ".inc"}
LARGE = 150  # places; a file that has more gets no more for it


def library_files(root):
    """The library's own source files, as paths from the root."""
    return sorted(str(path.relative_to(root)) for folder in FOLDERS
                  for path in (root / folder).iterdir() if path.suffix in SUFFIXES)


def load(root, path):
    return Source(path, (root / path).read_text(encoding="utf-8"))


def quotas(sizes, count):
    """How many of `count` places each file gets: by the square root of how many it has, up to a
    bound, so that long tables do not crowd out the rest."""
    weights = {path: math.sqrt(min(size, LARGE)) for path, size in sizes.items() if size > 0}
    total = sum(weights.values())
    return {path: min(sizes[path], math.ceil(count * weight / total))
            for path, weight in weights.items()}


def shuffled(places, random_source):
    """The places in a random order in which the operators take turns, as far as they reach."""
    kinds = {}
    for place in places:
        kinds.setdefault(place.operator, []).append(place)
    for kind in kinds.values():
        random_source.shuffle(kind)
    order = []
    while kinds:
        names = list(kinds)
        random_source.shuffle(names)
        for name in names:
            order.append(kinds[name].pop())
            if not kinds[name]:
                del kinds[name]
    return order


class Sample:
    """For every file its oddities, and its places in the order in which they are tried until the
    file's quota is met."""

    def __init__(self, root, seed, count, only_file=None):
        known = quirks.load()
        self.sources = {path: load(root, path) for path in library_files(root)}
        stray = {quirk["file"] for quirk in known} - set(self.sources)
        if stray:
            raise ValueError(f"quirks.json: no such source file: {', '.join(sorted(stray))}")
        self.quirks = {}
        self.candidates = {}
        for path, source in self.sources.items():
            self.quirks[path] = list(quirks.places_of(source, known))
            # A generator of its own for every file: a change of one leaves the others' samples.
            self.candidates[path] = shuffled(operators.places_of(source),
                                             random.Random(f"{seed} {path}"))
        self.quotas = quotas({path: len(places) for path, places in self.candidates.items()}, count)
        if only_file is not None:
            if only_file not in self.sources:
                raise ValueError(f"{only_file} is no source file of the library")
            self.quotas = {only_file: self.quotas.get(only_file, 0)}
            self.quirks = {only_file: self.quirks[only_file]}

    def _all(self):
        return (place for path in self.candidates
                for place in self.quirks.get(path, []) + self.candidates[path])

    def find(self, identity):
        for place in self._all():
            if place.id == identity:
                return place
        raise ValueError(f"There is no place {identity}; --list tells them all")

    def current(self, results):
        """Of results by their places' names, those whose place is still the same, each with the
        explanation why it may survive, if there is one."""
        known = equivalents.load()
        return [{**results[place.id],
                 "explained": equivalents.reason_for(place, self.sources[place.path], known)}
                for place in self._all()
                if place.id in results and results[place.id]["before"] == place.before]
