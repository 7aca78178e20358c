"""What a run of broken places has come to."""

from .campaign import CAUGHT, NOT_COMPILED, SAME_CODE, SURVIVED

LEAST_CAUGHT = 95  # of a hundred


def counted(results, outcome):
    return sum(result["outcome"] == outcome for result in results)


def is_explained(result):
    return result["outcome"] == SURVIVED and result.get("explained") is not None


def counted_places(results):
    """Those that a test could have caught."""
    return [result for result in results
            if result["outcome"] in (CAUGHT, SURVIVED) and not is_explained(result)]


def told(results):
    """The report as lines of text."""
    tried = counted_places(results)
    yield f"{'File':<36}{'Places':>8}{'Caught':>8}{'Survived':>10}"
    for path in sorted({result["file"] for result in tried}):
        of_file = [result for result in tried if result["file"] == path]
        yield (f"{path:<36}{len(of_file):>8}{counted(of_file, CAUGHT):>8}"
               f"{counted(of_file, SURVIVED):>10}")
    yield f"{'All':<36}{len(tried):>8}{counted(tried, CAUGHT):>8}{counted(tried, SURVIVED):>10}"
    explained = [result for result in results if is_explained(result)]
    yield (f"Not counted: {counted(results, NOT_COMPILED)} that do not compile, "
           f"{counted(results, SAME_CODE)} that give the same code, "
           f"{len(explained)} that nobody could notice")
    for result in explained:
        yield f"  {result['id']}: {result['explained']}"
    for result in tried:
        if result["outcome"] == SURVIVED:
            yield f"\nSURVIVED {result['id']}"
            yield f"  - {result['before']}"
            yield f"  + {result['after']}"
    if tried:
        yield f"\n{100 * counted(tried, CAUGHT) / len(tried):.1f} % of {len(tried)} places caught"


def is_good(results):
    tried = counted_places(results)
    return bool(tried) and 100 * counted(tried, CAUGHT) >= LEAST_CAUGHT * len(tried)
