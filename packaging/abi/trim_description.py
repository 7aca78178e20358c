#!/usr/bin/env python3
"""Keeps of a description that abidw made what hosts of the library rest on.

That is what the library exports, and the types of the public headers whole. Of any other type only
the name and the size are kept: what Qt and the C++ library are made of is for their own makers to
keep. Without this the description would be ten times as long and change with every update of theirs.

usage: trim_description.py HEADERS_FOLDER < DESCRIPTION > TRIMMED
"""

import pathlib
import sys
import xml.etree.ElementTree as ET

CLASSES = {"class-decl", "union-decl"}
TYPES = CLASSES | {
    "type-decl", "typedef-decl", "enum-decl", "pointer-type-def", "reference-type-def",
    "qualified-type-def", "array-type-def", "function-type"}
PLACE = ("filepath", "line", "column")
SYMBOL = "elf-symbol-id"


def is_public(element, headers):
    path = "/" + element.get("filepath", "")
    return any(path.endswith("/" + header) for header in headers)


def hide_foreign_classes(root, headers):
    """Leaves of classes that are not the library's own nothing but the types in them."""
    parents = {child: parent for parent in root.iter() for child in parent}
    for element in root.iter():
        if element.tag not in CLASSES or is_public(element, headers):
            continue
        outer = parents.get(element)
        while outer is not None and not (outer.tag in CLASSES and is_public(outer, headers)):
            outer = parents.get(outer)
        if outer is None:
            for child in [child for child in element if child.tag != "member-type"]:
                element.remove(child)


def references(element):
    """The types that an element rests on, not counting types that are merely declared in it."""
    found = {value for name, value in element.attrib.items() if name.endswith("type-id")}
    for child in element:
        if child.tag != "member-type":
            found |= references(child)
    return found


def needed_types(root):
    definitions = {}
    for element in root.iter():
        if element.tag in TYPES and element.get("id"):
            definitions.setdefault(element.get("id"), []).append(element)
    waiting = [element for element in root.iter()
               if element.get(SYMBOL) and element.tag in ("function-decl", "var-decl")]
    # A class's exported functions lead back to the class by their first parameter or their folder.
    waiting += [element for element in root.iter() if element.tag in CLASSES
                and any(inner.get(SYMBOL) for inner in element.iter())]
    needed = {element.get("id") for element in waiting} - {None}
    while waiting:
        for reference in references(waiting.pop()) - needed:
            needed.add(reference)
            waiting += definitions.get(reference, [])
    return needed


def drop_the_rest(parent, needed):
    for child in list(parent):
        inner = child[0] if child.tag == "member-type" and len(child) else child
        drop_the_rest(child, needed)
        if child.tag in ("abi-instr", "namespace-decl"):
            unused = len(child) == 0
        elif inner.tag in ("function-decl", "var-decl") and parent.tag in ("abi-instr", "namespace-decl"):
            unused = not inner.get(SYMBOL)
        else:
            unused = (inner.tag in TYPES and inner.get("id") and inner.get("id") not in needed
                      and not any(below.get("id") in needed for below in inner.iter()))
        if unused:
            parent.remove(child)


def main():
    folder = pathlib.Path(sys.argv[1])
    headers = {str(path.relative_to(folder)) for path in folder.rglob("*.h")}
    root = ET.fromstring(sys.stdin.buffer.read())
    hide_foreign_classes(root, headers)
    drop_the_rest(root, needed_types(root))
    for element in root.iter():
        for name in PLACE:
            element.attrib.pop(name, None)
    ET.indent(root)
    sys.stdout.write(ET.tostring(root, encoding="unicode") + "\n")


if __name__ == "__main__":
    main()
