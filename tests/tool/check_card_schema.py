#!/usr/bin/env python3
"""Holds what the tool printed against the schema of cards, failures and events, and broken ones too.

check_card_schema.py SCHEMA FOLDER

Every *.json file of FOLDER must obey SCHEMA, and nothing made from it by breaking one thing may.
"""

import copy
import json
import pathlib
import sys

import jsonschema

WRONG_VALUES = (None, 7, True, [], "x ", {})
# Values beside which a key may take more than one type, so that breaking it needs more thought.
NULLABLE = {"issueCount", "nationalityCode"}
# Keys that not every card has.
OPTIONAL = {"error", "data", "whole"}


def without_each_key(card):
    """The card without one of its keys, and without one key of a part of it."""
    for key, value in card.items():
        if key == "fingerprints" and card["kind"] != "resident":
            continue
        if key not in OPTIONAL:
            broken = copy.deepcopy(card)
            del broken[key]
            yield f"without {key}", broken
        if not isinstance(value, dict) or key == "whole":  # which has the parts that notes name
            continue
        for part in value.keys() - OPTIONAL:
            broken = copy.deepcopy(card)
            del broken[key][part]
            yield f"without {key}.{part}", broken


def with_wrong_values(card):
    """The card with a value of a wrong type or form in place of each of its own."""
    for key in card:
        for wrong in WRONG_VALUES:
            if wrong is None and key in NULLABLE and card["road"] == "reader-library":
                continue
            if (key, wrong) in (("age", None), ("age", 7), ("notes", [])):
                continue
            yield f"{key} = {wrong!r}", {**card, key: wrong}


def with_contradictions(card):
    """The card with parts that do not belong together."""
    def changed(key, part, value):
        return {**card, key: {**card[key], part: value}}

    yield "unknown key", {**card, "more": 1}
    yield "unknown note", {**card, "notes": ["old"]}
    yield "note given twice", {**card, "notes": ["expired", "expired"]}
    yield "age before birth", {**card, "age": -1}
    yield "nothing whole", {**card, "whole": {}}
    if card["road"] == "reader-library":
        yield "whole text of the other road", {**card, "whole": {"name": "x"}}
    yield "unknown road", {**card, "road": "post"}
    yield "unknown kind", {**card, "kind": "passport"}
    yield "another kind", {**card, "kind": "hmt" if card["kind"] != "hmt" else "resident"}
    yield "another number of the kind", {**card, "cardKind": (card["cardKind"] + 1) % 4}
    yield "unknown key in a part", changed("photo", "size", 38862)
    yield "file of a photo that is no picture", {
        **card, "photo": {"format": "compressed", "file": "photo.bmp"}}
    yield "nameless file", {**card, "photo": {"format": "bmp", "file": ""}}
    yield "unknown form of a picture", changed("backPicture", "format", "png")
    yield "data of a picture that is none", {
        **card, "frontPicture": {"format": "none", "file": None, "data": "AAAA"}}
    yield "data that is no base64", changed("photo", "data", "A-_=")
    yield "file of a picture that is none", {
        **card, "frontPicture": {"format": "none", "file": "front.jpg"}}
    yield "number in a date", changed("birthDate", "year", 1990)
    if card["road"] != "reader-library":
        yield "picture of a side", {**card, "frontPicture": {"format": "jpeg", "file": None}}
    for key in NULLABLE & card.keys():
        other = "01" if card["road"] == "reader-library" else None
        yield f"{key} of the other road", {**card, key: other}
    if "fingerprints" in card:
        yield "three fingerprints", changed("fingerprints", "count", 3)
        yield "file without fingerprints", {
            **card, "fingerprints": {"count": 0, "file": "fingerprints.dat"}}
        yield "data without fingerprints", {
            **card, "fingerprints": {"count": 0, "file": None, "data": "AAAA"}}


def failures(failure):
    """The failure without a part, with a part of a wrong type or form, and with parts too many."""
    error = failure["error"]
    yield "without error", {}
    yield "error that is none", {"error": None}
    yield "a card's part beside the error", {**failure, "kind": "resident"}
    yield "unknown part", {"error": {**error, "more": 1}}
    yield "status of success", {"error": {**error, "exitStatus": 0}}
    yield "unknown sort of name", {"error": {**error, "name": "OTHER_FAILURE"}}
    for key in error:
        yield f"without error.{key}", {"error": {k: v for k, v in error.items() if k != key}}
        for wrong in (None, 7, True, [], "", "x", {}):
            if wrong == 7 and key in ("code", "exitStatus") or wrong is None and key == "code":
                continue
            yield f"error.{key} = {wrong!r}", {"error": {**error, key: wrong}}


def events(event):
    """The event without a part, with a wrong or a foreign one, and with a broken card or error."""
    for key in event:
        yield f"without {key}", {k: v for k, v in event.items() if k != key}
        for wrong in WRONG_VALUES:
            yield f"{key} = {wrong!r}", {**event, key: wrong}
    yield "unknown key", {**event, "more": 1}
    yield "unknown event", {**event, "event": "card-lost"}
    for time in ("2026-11-22T08:30:00.250", "2026-11-22T08:30:00.250Z", "2026-11-22 08:30:00.250+08:00"):
        yield f"time = {time}", {**event, "time": time}
    for other in ("card-read", "read-failed", "card-removed"):
        if other != event["event"] and {"card", "error"} & event.keys():
            yield f"the parts of {event['event']} in {other}", {**event, "event": other}
    if "card" in event:
        yield "card without its road", {**event, "card": without(event["card"], "road")}
        yield "error of a failed read", {**event, "error": {}}
    if "error" in event:
        yield "error without its name", {**event, "error": without(event["error"], "name")}
    if event["event"] in ("reader-added", "reader-removed", "card-removed"):
        yield "card-read without a card", {**event, "event": "card-read"}
        yield "read-failed without an error", {**event, "event": "read-failed"}


def without(value, key):
    return {k: v for k, v in value.items() if k != key}


def complaints(validator, path):
    printed = json.loads(path.read_text(encoding="utf-8"))
    for error in validator.iter_errors(printed):
        yield f"{path.name}: {error.json_path}: {error.message}"
    breakers = (without_each_key, with_wrong_values, with_contradictions)
    if printed.keys() == {"error"}:
        breakers = (failures,)
    elif "event" in printed:
        breakers = (events,)
    for breaker in breakers:
        for how, broken in breaker(printed):
            if validator.is_valid(broken):
                yield f"{path.name}: the schema takes it {how}"


def main():
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    paths = sorted(pathlib.Path(sys.argv[2]).glob("*.json"))
    found = [complaint for path in paths for complaint in complaints(validator, path)]
    for complaint in found:
        print(complaint, file=sys.stderr)
    print(f"{len(paths)} objects checked")
    return 1 if found or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
