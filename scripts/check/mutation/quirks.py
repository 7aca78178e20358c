"""The library's deliberate oddities, and what somebody who took them for mistakes would make of
them: the list in quirks.json, of a file, a text that stands in it once, its replacement and what is
deliberate about it."""

import json
import pathlib

from .operators import place

LIST = pathlib.Path(__file__).with_name("quirks.json")


def load(path=LIST):
    return json.loads(path.read_text(encoding="utf-8"))


def places_of(source, quirks):
    """The places of a source that are on the list. Raises where the list does not fit it."""
    for quirk in quirks:
        if quirk["file"] != source.path:
            continue
        if source.text.count(quirk["text"]) != 1:
            raise ValueError(f"quirks.json: {source.path} holds {source.text.count(quirk['text'])} "
                             f"times, not once: {quirk['text']}")
        start = source.text.index(quirk["text"])
        yield place(source, start, start + len(quirk["text"]), "quirk", quirk["replacement"],
                    quirk["reason"])
