"""What a room may include is the architecture: names every include that reaches where its room may not.

usage: include_rules.py PROJECT_DIRECTORY
"""
import re
import sys
from pathlib import Path

# A room's quoted includes lie in the room itself or in these.
ROOMS = {
    "include": ["platform/hal/limid.h"],
    "platform": ["include"],
    "src": ["include", "platform"],
    "calls": ["include", "platform"],
    "softcard": ["include", "platform", "calls"],
    "scenario": ["include", "platform", "calls", "softcard"],
    "console": ["include", "platform", "calls", "softcard", "scenario"],
    "bench": ["include", "platform"],
}
# Its angle ones are the standard library's, or also these.
STANDARD = r"[a-z0-9_]+|std(def|int|arg)\.h"
OTHERS = {"console": r"CLI/.*|cxxabi\.h|unistd\.h|sys/.*", "calls": r"cxxabi\.h", "bench": r"benchmark/.*|valgrind/.*|malloc\.h|unistd\.h|sys/.*"}

project = Path(sys.argv[1]).resolve()


def target(file, room, name):
    """The file of the project that an include means, seen from the including file."""
    roots = [file.parent, project / room, project / "include", project / "platform", project]
    return next(((root / name).resolve() for root in roots if (root / name).is_file()), None)


def may_include(file, room, quote, name):
    if quote == "<":
        return re.fullmatch(STANDARD, name) or re.fullmatch(OTHERS.get(room, ""), name)
    found = target(file, room, name)
    return found is not None and any(found.is_relative_to(project / allowed) for allowed in [room, *ROOMS[room]])


files, failures = 0, 0
for room in ROOMS:
    for file in sorted((project / room).rglob("*")):
        if file.suffix not in (".h", ".cpp"):
            continue
        files += 1
        for number, line in enumerate(file.read_text().splitlines(), 1):
            include = re.match(r'\s*#\s*include\s*([<"])([^>"]+)', line)
            if include and not may_include(file, room, *include.groups()):
                failures += 1
                print(f"{file.relative_to(project)}:{number}: {room}/ may not include {include.group(2)}")
print(f"{files} files, {failures} includes that reach too far")
sys.exit(failures > 0 or files == 0)
