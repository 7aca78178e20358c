"""The places that scripts/check/mutate finds in a few lines of code. The argument is the script."""

import importlib.machinery
import importlib.util
import sys
import unittest

loader = importlib.machinery.SourceFileLoader("mutate", sys.argv.pop(1))
mutate = importlib.util.module_from_spec(importlib.util.spec_from_loader("mutate", loader))
loader.exec_module(mutate)

CODE = """\
#include "a 1 < 2"
bool bare(const char *text) // returns 3 + 4
{
    if (isSet(text, "5 == 6")) {
        count = 0x0f;
    }
    for (int i = 7; i <= size && !done; ++i)
        call(text,
             other);
    return first + second;
}
#define MACRO(a) \\
    call(a, 8)
"""


class Operators(unittest.TestCase):
    def test_break_each_place_of_code_and_nothing_else(self):
        found = [(place.line, place.operator, place.before, place.after.rstrip("\n"))
                 for place in mutate.places_of("a.cpp", CODE)]
        self.assertEqual(sorted(found), [
            (4, "condition", 'isSet(text, "5 == 6")', '!(isSet(text, "5 == 6"))'),
            (5, "number", "0x0f", "0x0e"),
            (5, "statement", "count = 0x0f;", ";"),
            (7, "bound", "<=", "<"),
            (7, "comparison", "<=", ">"),
            (7, "negation", "!", ""),
            (7, "number", "7", "8"),
            (7, "operator", "&&", "||"),
            (7, "step", "++", "--"),
            (8, "statement", "call(text,\n             other);", ";"),
            (10, "operator", "+", "-"),
            (10, "return", "first + second", "{}"),
        ])

    def test_keep_the_number_of_lines(self):
        for place in mutate.places_of("a.cpp", CODE):
            self.assertEqual(place.before.count("\n"), place.after.count("\n"), place.id)


if __name__ == "__main__":
    unittest.main()
