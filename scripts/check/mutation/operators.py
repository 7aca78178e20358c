"""The ways to break a source in one place: OPERATORS is the table of them all."""

import re
from dataclasses import dataclass

_NUMBER = re.compile(r"(?<![\w.])(0[xX][0-9a-fA-F]+|\d+\.\d+|\d+)(?=(?:LL|[uU])?(?![\w.]))")
_COMPARISON = re.compile(r" (<=|>=|<|>|==|!=) ")
_ARITHMETIC = re.compile(r" (\+|-|\*|/|%|\+=|-=|>>|<<) (?!\n)|(\+\+|--)(?=\w)|(?<=\w)(\+\+|--)")
_BOOLEAN = re.compile(r" (&&|\|\||\|) |(?<![\w!])(true|false)\b|(?<=[( ])(!)(?=[\w(])")
_CONDITION = re.compile(r"\bif \(")
_RETURN = re.compile(r"\breturn\b([^;]*);")
# A row of a table: braces or a constructor that takes a whole line and is followed by a comma.
_ROW = re.compile(r"^\s*[A-Z]?\w*\{.*\},$")
# A statement of a function that is neither a declaration nor one that leads elsewhere.
_STATEMENT = re.compile(
    r"^(?P<indent>[ ]+)(?!return\b|break\b|continue\b|using\b|case\b|default\b|else\b|if\b|for\b"
    r"|while\b|throw\b|static_assert\b|const\b|constexpr\b|auto\b|public\b|private\b|static\b)"
    r"(?P<text>(?:\+\+|\*)?[A-Za-z_][\w:.>\-\[\]*]*(?:<[\w: ]+>)?"
    r"(?:\(| (?:[+|-]?=|<<) |;)[^;{}]*;|(?:\+\+|--)\w+;|qDebug\(\)[^;{}]*;)[ ]*$", re.MULTILINE)

_BOUNDS = {"<": "<=", "<=": "<", ">": ">=", ">=": ">"}
_NEGATIONS = {"<": ">=", "<=": ">", ">": "<=", ">=": "<", "==": "!=", "!=": "=="}
_ARITHMETIC_TWINS = {"+": "-", "-": "+", "*": "/", "/": "*", "%": "*", "+=": "-=", "-=": "+=",
                     ">>": "<<", "<<": ">>", "++": "--", "--": "++"}
_BOOLEAN_TWINS = {"&&": "||", "||": "&&", "|": "&", "true": "false", "false": "true", "!": ""}


@dataclass(frozen=True)
class Place:
    """One way to break one place: what stands at `start` to `end` is replaced by `after`."""
    path: str
    line: int
    last_line: int
    column: int
    start: int
    end: int
    operator: str
    before: str
    after: str
    reason: str = ""

    @property
    def id(self):
        return f"{self.path}:{self.line}:{self.column}:{self.operator}"

    def applied(self, text):
        if text[self.start:self.end] != self.before:
            raise ValueError(f"{self.id}: the source has changed")
        return text[:self.start] + self.after + text[self.end:]


def place(source, start, end, operator, after, reason=""):
    line, column = source.line_of(start)
    last_line = source.line_of(max(start, end - 1))[0]
    return Place(source.path, line, last_line, column, start, end, operator,
                 source.text[start:end], after, reason)


def _is_row(source, position):
    start, end = source.line_range(source.line_of(position)[0])
    return bool(_ROW.match(source.code[start:end].rstrip()))


def _next_number(number):
    if number[:2] in ("0x", "0X"):
        # Stays a byte where it is one.
        return f"0x{int(number, 16) ^ 1:0{len(number) - 2}x}"
    if "." in number:
        return f"{float(number) + 1:.{len(number.split('.')[1])}f}"
    return str(int(number) + 1)


def _numbers(source, in_rows):
    for match in _NUMBER.finditer(source.code):
        if _is_row(source, match.start()) == in_rows:
            yield match.start(1), match.end(1), _next_number(match.group(1))


def constants(source):
    return _numbers(source, in_rows=False)


def table_constants(source):
    return _numbers(source, in_rows=True)


def _texts(source, changed):
    for start, end in source.strings:
        quote = source.text.index('"', start) + 1
        if end - quote > 1:
            yield quote, end - 1, changed(source.text[quote:end - 1])


def texts_dropped(source):
    return _texts(source, lambda text: "")


def texts_changed(source):
    return _texts(source, lambda text: "~" + text)


def _twins(source, pattern, twins):
    for match in pattern.finditer(source.code):
        group = match.lastindex
        if match.group(group) in twins:
            yield match.start(group), match.end(group), twins[match.group(group)]


def bounds(source):
    return _twins(source, _COMPARISON, _BOUNDS)


def comparisons_negated(source):
    return _twins(source, _COMPARISON, _NEGATIONS)


def arithmetic(source):
    return _twins(source, _ARITHMETIC, _ARITHMETIC_TWINS)


def booleans(source):
    return _twins(source, _BOOLEAN, _BOOLEAN_TWINS)


def conditions_negated(source):
    for match in _CONDITION.finditer(source.code):
        depth, end = 1, match.end()
        while depth > 0:
            depth += {"(": 1, ")": -1}.get(source.code[end], 0)
            end += 1
        condition = source.text[match.end():end - 1]
        if ";" not in source.code[match.end():end]:
            yield match.end(), end - 1, f"!({condition})"


def returns(source):
    for match in _RETURN.finditer(source.code):
        value = source.text[match.start(1):match.end(1)].strip()
        if value in ("true", "false"):
            after = {"true": "false", "false": "true"}[value]
        elif re.fullmatch(r"-?\d+", value):
            after = str(int(value) + 1)
        elif value in ("", "{}", "nullptr"):
            continue
        else:
            after = "{}"
        yield match.start(1), match.end(1), " " + after


def statements_dropped(source):
    for match in _STATEMENT.finditer(source.code):
        yield match.start("text"), match.end("text"), ";"


def statements_swapped(source):
    statements = list(_STATEMENT.finditer(source.code))
    for first, second in zip(statements, statements[1:]):
        if first.end() + 1 != second.start() or first["indent"] != second["indent"]:
            continue
        between = source.text[first.end("text"):second.start("text")]
        yield (first.start("text"), second.end("text"),
               source.text[second.start("text"):second.end("text")] + between +
               source.text[first.start("text"):first.end("text")])


def rows_swapped(source):
    for number in range(1, source.line_count()):
        start, middle = source.line_range(number)
        after, end = source.line_range(number + 1)
        if _is_row(source, start) and _is_row(source, after):
            rows = source.text[start:middle], source.text[after:end]
            if rows[0] != rows[1]:
                yield start, end, rows[1] + "\n" + rows[0]


# Name, what it does, and its finder: gives start, end and replacement of every place.
OPERATORS = [
    ("constant", "a number one off", constants),
    ("table-constant", "a number in a row of a table one off", table_constants),
    ("bound", "a bound inclusive instead of exclusive, or the other way round", bounds),
    ("comparison", "a comparison negated", comparisons_negated),
    ("condition", "the condition of an if negated", conditions_negated),
    ("arithmetic", "an arithmetic operator replaced by its opposite", arithmetic),
    ("boolean", "a boolean operator or value replaced by its opposite", booleans),
    ("return", "another value returned", returns),
    ("statement-dropped", "a call or an assignment left out", statements_dropped),
    ("statements-swapped", "two adjacent statements in the other order", statements_swapped),
    ("text-dropped", "a text emptied", texts_dropped),
    ("text-changed", "a text changed", texts_changed),
    ("rows-swapped", "two adjacent rows of a table in the other order", rows_swapped),
]


def places_of(source):
    """Every place of a source, in the order of the table."""
    for name, _, find in OPERATORS:
        for start, end, after in find(source):
            yield place(source, start, end, name, after)
