"""Places that may be broken without anybody noticing, as nothing that the library does depends on
them: the list in equivalents.json, of a file, an operator, where it matters the line and what stands
there, and the reason. What survives there is explained and not counted."""

import json
import pathlib

LIST = pathlib.Path(__file__).with_name("equivalents.json")


def load(path=LIST):
    return json.loads(path.read_text(encoding="utf-8"))


def reason_for(place, source, known):
    """Why `place` of `source` may be broken; None when it may not."""
    start, end = source.line_range(place.line)
    found = {"file": place.path, "operator": place.operator, "before": place.before,
             "line": source.text[start:end].strip()}
    for row in known:
        if all(found[key] == value for key, value in row.items() if key != "reason"):
            return row["reason"]
    return None
