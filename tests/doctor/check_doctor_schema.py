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


def broken_reports(report):
    """The report with one value that contradicts another or is of no known kind."""
    yield from without_each_key({**report, "findings": []})
    yield "unknown key", {**report, "more": 1}
    yield "unknown road", {**report, "road": "air"}
    yield "unknown result", {**report, "result": "fine"}
    yield "no findings", {**report, "findings": []}
    yield "negative count", {**report, "counts": {**report["counts"], "ok": -1}}


def broken_findings(finding):
    """The finding with one value that contradicts another or is of no known kind."""
    yield from without_each_key(finding)
    yield "unknown key", {**finding, "more": 1}
    yield "unknown group", {**finding, "group": "weather"}
    yield "unknown check", {**finding, "check": "weather"}
    yield "unknown level", {**finding, "level": "fine"}
    yield "empty text", {**finding, "text": ""}
    if finding["level"] == "ok":
        yield "remedy of what is fine", {**finding, "remedy": "Do it."}
        yield "command of what is fine", {**finding, "commands": ["true"]}
    else:
        yield "nothing to do", {**finding, "remedy": None}


def complaints(validator, reports):
    """What is wrong with the reports, and what the schema takes that is."""
    findings = {}  # one for every check and level
    for path, report in reports.items():
        for error in validator.iter_errors(report):
            yield f"{path.name}: {error.json_path}: {error.message}"
        levels = [finding["level"] for finding in report["findings"]]
        if report["counts"] != {level: levels.count(level) for level in report["counts"]}:
            yield f"{path.name}: the counts are not those of the findings"
        for finding in report["findings"]:
            findings.setdefault((finding["check"], finding["level"]), finding)
    for how, broken in broken_reports(next(iter(reports.values()))):
        if validator.is_valid(broken):
            yield f"the schema takes a report: {how}"
    of_finding = validator.evolve(
        schema={"$ref": "#/$defs/finding", "$defs": validator.schema["$defs"]})
    for finding in findings.values():
        if not of_finding.is_valid(finding):
            yield f"not a finding: {finding}"
    for (check, level), finding in findings.items():
        for how, broken in broken_findings(finding):
            if of_finding.is_valid(broken):
                yield f"the schema takes {check}, {level}: {how}"


def main():
    schema = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    reports = {path: json.loads(path.read_text(encoding="utf-8"))
               for path in sorted(pathlib.Path(sys.argv[2]).glob("*.json"))}
    if not reports:
        sys.exit("there is no report")
    found = list(complaints(jsonschema.Draft202012Validator(schema), reports))
    for complaint in found:
        print(complaint, file=sys.stderr)
    print(f"{len(reports)} reports checked")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
