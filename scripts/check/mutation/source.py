"""A C++ source as the finders of places see it: which characters are code, text or comment."""

import re

_TOKEN = re.compile(
    r"(?P<comment>//[^\n]*|/\*.*?\*/)"
    r"|(?P<preprocessor>^[ \t]*\#(?:[^\n]*\\\n)*[^\n]*)"
    r'|(?P<text>L?"(?:[^"\\\n]|\\.)*")'
    r"|(?P<character>'(?:[^'\\\n]|\\.)+')",
    re.DOTALL | re.MULTILINE)


class Source:
    """The text of a file, and `code`: of the same length, with blanks in place of comments and
    preprocessor lines, and with a filler in place of what stands between quotes."""

    def __init__(self, path, text):
        self.path = path
        self.text = text
        self.strings = []
        self.code = _TOKEN.sub(self._blank, text)
        self._line_starts = [0] + [i + 1 for i, c in enumerate(text) if c == "\n"]

    def _blank(self, match):
        found = match.group()
        if match.lastgroup in ("comment", "preprocessor"):
            return re.sub(r"[^\n]", " ", found)
        if match.lastgroup == "text":
            self.strings.append((match.start(), match.end()))
        quote = found.find(found[-1])
        return found[:quote + 1] + "_" * (len(found) - quote - 2) + found[-1]

    def line_of(self, position):
        """The number of the line, from 1, and of the column, from 1."""
        low, high = 0, len(self._line_starts)
        while high - low > 1:
            middle = (low + high) // 2
            low, high = (middle, high) if self._line_starts[middle] <= position else (low, middle)
        return low + 1, position - self._line_starts[low] + 1

    def line_range(self, number):
        """Where line `number` begins and ends, without its line end."""
        start = self._line_starts[number - 1]
        end = self.text.find("\n", start)
        return start, len(self.text) if end < 0 else end

    def line_count(self):
        return len(self._line_starts)
