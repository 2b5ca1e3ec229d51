#!/usr/bin/env python3
"""Reduces a description by abidw to what is ours: own_interface.py HEADERS <full >reduced

HEADERS is the folder of the installed headers. Types that none of them declares, such as those of Qt, keep only their
names: they change with the system and not with us. Weak symbols go: inline functions, which every program has itself.
What then nothing refers to goes too.
"""

import pathlib
import sys
import xml.etree.ElementTree as ElementTree

COMPOUND = ("class-decl", "union-decl", "enum-decl")
REFERENCES = ("type-id", "naming-typedef-id")
# Where things are in the sources, and what is the same everywhere.
NEEDLESS = ("filepath", "line", "column", "visibility", "binding")

headers = {path.name for path in pathlib.Path(sys.argv[1]).rglob("*.h")}
corpus = ElementTree.parse(sys.stdin).getroot()
parents = {child: parent for parent in corpus.iter() for child in parent}
by_id = {element.get("id"): element for element in corpus.iter() if element.get("id")}
weak = {symbol.get("name") for symbol in corpus.iter("elf-symbol") if symbol.get("binding") == "weak-binding"}


def is_ours(element):
    return element.get("filepath") in headers


def is_exported(element):
    return element.get("elf-symbol-id", "").split("@")[0] not in weak | {""}


def is_of_foreign_type(element):
    """Whether it is a part of a type that keeps only its name. An enumeration without its underlying type is none."""
    parent = parents.get(element)
    return (parent is not None and parent.tag in COMPOUND and not is_ours(parent)
            and element.tag not in ("member-type", "underlying-type"))


def is_inline(element):
    """Whether it is a member function that programs have themselves; virtual ones count, for the table of them."""
    return (element.tag == "member-function" and element.get("vtable-offset") is None
            and not is_exported(element.find("function-decl")))


def drop(element):
    return is_of_foreign_type(element) or is_inline(element)


kept = set()


def keep(element):
    """Keeps it, what it is in, and what it refers to."""
    pending = [element]
    while pending:
        element = pending.pop()
        if element in kept:
            continue
        kept.add(element)
        pending += [by_id[element.get(key)] for key in REFERENCES if element.get(key) in by_id]
        if element in parents:
            pending.append(parents[element])
        holds_others = element.tag in ("abi-corpus", "abi-instr", "namespace-decl", "member-type", "elf-function-symbols",
                                       "elf-variable-symbols")
        if not holds_others:
            pending += [child for child in element if child.tag != "member-type" and not drop(child)]


for element in list(corpus.iter()):
    if element.tag == "elf-symbol":
        wanted = element.get("name") not in weak
    elif element.tag in ("function-decl", "var-decl"):
        wanted = is_exported(element)
    else:
        wanted = element.tag in COMPOUND and is_ours(element)
    if wanted:
        keep(element)

for element in list(corpus.iter()):
    for child in list(element):
        if child not in kept:
            element.remove(child)
    if element.tag in COMPOUND and not is_ours(element):
        element.text = None
        element.attrib.pop("size-in-bits", None)
        if len(element) == 0: # abidiff does not read what is inside of a mere declaration
            element.set("is-declaration-only", "yes")
    if element.tag == "elf-symbol" and element.get("alias"):
        aliases = [name for name in element.get("alias").split(",") if name not in weak]
        element.set("alias", ",".join(aliases))
for element in corpus.iter():
    for name in NEEDLESS if element.tag != "elf-symbol" else ():
        element.attrib.pop(name, None)
ElementTree.indent(corpus, "")
sys.stdout.write(ElementTree.tostring(corpus, encoding="unicode") + "\n")
