#!/usr/bin/env python3
"""Holds reports that the doctor gave against their schema, and broken reports too.

check_doctor_schema.py SCHEMA FOLDER

Every *.json file of FOLDER must obey SCHEMA, and no report made from it by breaking one thing may.
"""

import json
import pathlib
import sys

import jsonschema


def without_each_key(value, path=""):
    """`value` without one key of it or of one of its parts, for every key."""
    for key, part in value.items() if isinstance(value, dict) else ():
        yield f"without {path}{key}", {k: v for k, v in value.items() if k != key}
        for how, broken in without_each_key(part, f"{path}{key}."):
            yield how, {**value, key: broken}
    for i, part in enumerate(value) if isinstance(value, list) else ():
        for how, broken in without_each_key(part, f"{path}{i}."):
            yield how, [*value[:i], broken, *value[i + 1:]]


def with_wrong_values(report):
    """The report with one value that contradicts another or is of no known kind."""
    yield "unknown key", {**report, "more": 1}
    yield "unknown road", {**report, "road": "air"}
    yield "unknown result", {**report, "result": "fine"}
    yield "no findings", {**report, "findings": []}
    yield "negative count", {**report, "counts": {**report["counts"], "ok": -1}}
    finding = report["findings"][0]

    def changed(**values):
        return {**report, "findings": [{**finding, **values}]}

    yield "unknown check", changed(check="weather")
    yield "other group", changed(group="usb" if finding["group"] != "usb" else "general")
    yield "empty text", changed(text="")
    yield "unknown fact", changed(facts={**finding["facts"], "more": 1})
    yield "facts of none", changed(facts=None)
    if finding["level"] == "ok":
        yield "remedy of what is fine", changed(remedy="Do it.")
        yield "command of what is fine", changed(commands=["true"])
    else:
        yield "nothing to do", changed(remedy=None)
    for key in finding["facts"]:
        yield f"{key} of no known kind", changed(facts={**finding["facts"], key: {"x": []}})


def main():
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    validator = jsonschema.Draft202012Validator(schema)
    paths = sorted(pathlib.Path(sys.argv[2]).glob("*.json"))
    found = []
    singles = {}  # reports of one finding, for every check and level
    for path in paths:
        report = json.loads(path.read_text(encoding="utf-8"))
        found += [f"{path.name}: {error.json_path}: {error.message}"
                  for error in validator.iter_errors(report)]
        levels = [finding["level"] for finding in report["findings"]]
        if report["counts"] != {level: levels.count(level) for level in report["counts"]}:
            found.append(f"{path.name}: the counts are not those of the findings")
        for finding in report["findings"]:
            singles.setdefault((finding["check"], finding["level"]), {**report, "findings": [finding]})
    for (check, level), report in singles.items():
        for breaker in (without_each_key, with_wrong_values):
            found += [f"{check}, {level}: the schema takes it {how}"
                      for how, broken in breaker(report) if validator.is_valid(broken)]
    for complaint in found:
        print(complaint, file=sys.stderr)
    print(f"{len(paths)} reports checked")
    return 1 if found or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
