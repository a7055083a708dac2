#!/usr/bin/env python3
"""Does every room include only its own headers and those of the rooms that it says it uses?

A room is a folder under src/; the USES of its grolof_room names the others that it may include. A
room that is named must be included, and no circle of rooms may use each other.

usage: rooms.py SOURCES
"""

import pathlib
import re
import sys

INCLUDE = re.compile(r'^#include "([a-z]+)/', re.MULTILINE)
ROOM = re.compile(r"grolof_room\((\w+)\s([^)]*)\)")


def uses_of(folder):
    """The rooms that a folder's CMakeLists.txt names."""
    name, arguments = ROOM.search((folder / "CMakeLists.txt").read_text()).groups()
    assert name == folder.name, f"{folder.name} makes the room {name}"
    return set(arguments.partition("USES")[2].split())


def included_by(folder):
    texts = (path.read_text() for path in folder.iterdir() if path.suffix in (".cpp", ".h"))
    return {room for text in texts for room in INCLUDE.findall(text)} - {folder.name}


def complaints(sources):
    folders = sorted(path for path in sources.iterdir() if path.is_dir())
    uses = {folder.name: uses_of(folder) for folder in folders}
    for folder in folders:
        included = included_by(folder)
        for room in sorted(included - uses[folder.name]):
            yield f"{folder.name} includes {room} and does not say so"
        for room in sorted(uses[folder.name] - included):
            yield f"{folder.name} says that it uses {room} and does not"
    while free := [room for room, used in uses.items() if not used & uses.keys()]:
        for room in free:
            del uses[room]
    if uses:
        yield "a circle among " + ", ".join(sorted(uses))


if __name__ == "__main__":
    found = list(complaints(pathlib.Path(sys.argv[1])))
    print(*found, sep="\n")
    sys.exit(1 if found else 0)
