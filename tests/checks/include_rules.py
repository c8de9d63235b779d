"""What a room may include is the architecture: names every include that reaches where its room may not.

usage: include_rules.py PROJECT_DIRECTORY
"""
import re
import subprocess
import sys
from pathlib import Path

# A room's quoted includes lie in the room itself or begin with one of these; a room uses lower floors only.
GROUND = ["include/", "platform/"]
ROOMS = {
    "include": ["platform/hal/limid.h"],
    "platform": ["include/"],
    "src": GROUND,
    "calls": GROUND,
    "softcard": ["calls/", *GROUND],
    "scenario": ["softcard/", "calls/", "include/"],
    "recorder": ["calls/", *GROUND],
    # Of the recorder: recordings as values, nothing of what stands in front of a platform.
    "diagnosis": ["scenario/", "softcard/", "recorder/Format", "recorder/Reader", "recorder/Refusals", "recorder/Request",
                  "recorder/Thrown"],
    # Of the software card: its tables, and what frames are made of.
    "router": ["include/", "softcard/Tables.h", "softcard/tables/", "softcard/packets/Frame.h", "platform/bcm/error.h"],
    # Of the recorder: what a request to the module is called.
    "serve": ["scenario/", "router/", "softcard/", "recorder/Request", *GROUND],
    "console": ["serve/", "router/", "diagnosis/", "recorder/", "scenario/", "softcard/", "calls/", "src/", *GROUND],
    "bench": ["router/", "softcard/", *GROUND],
    "cmake": GROUND,
    "tests": [""],
}
# The angle ones are the standard library's, with its C part by either name, or also these.
STANDARD = r"[a-z_]+|c[a-z]+(8|16|32)?|(assert|ctype|errno|float|inttypes|limits|math|setjmp|signal|stdarg|stddef|stdint|stdio|stdlib|string|time)\.h"
SYSTEM = r"cxxabi\.h|dlfcn\.h|fcntl\.h|malloc\.h|poll\.h|unistd\.h|sys/.*"
PROTOCOLS = r"arpa/inet\.h|net/.*|netinet/.*"
OTHERS = {
    "softcard": rf"sys/mman\.h|{PROTOCOLS}",
    "calls": r"cxxabi\.h",  # names an exception's class
    "scenario": r"cxxabi\.h",
    "recorder": r"cxxabi\.h|dlfcn\.h|fcntl\.h|pthread\.h|unistd\.h|sys/.*",  # finds the platform that it stands in front of
    "router": rf"libmnl/.*|linux/.*|{PROTOCOLS}|{SYSTEM}",
    "serve": rf"asio/.*|pcap\.h|pcap/.*|linux/.*|{PROTOCOLS}|{SYSTEM}",
    "diagnosis": r"nlohmann/json\.hpp",
    "console": rf"CLI/.*|pcap/.*|editline/.*|histedit\.h|{SYSTEM}",
    "bench": rf"benchmark/.*|valgrind/.*|{SYSTEM}",
    "tests": ".*",
}
# Their headers' names are fixed, so they are written without the room.
NOT_FROM_THE_ROOT = ("include", "platform", "src")


def target(project, file, name):
    """The file that an include names, from the root; nothing when it is none of the project's or written otherwise."""
    room = file.relative_to(project).parts[0]
    fixed = [project / "include", project / "platform"]
    if name.split("/")[0] in NOT_FROM_THE_ROOT and room != "tests":
        return None
    roots = [file.parent, *fixed] if room in NOT_FROM_THE_ROOT else [project, *fixed]
    return next((str((root / name).resolve().relative_to(project)) for root in roots if (root / name).is_file()), None)


def complaint(project, file, quote, name):
    """What is wrong with an include, or nothing."""
    room = file.relative_to(project).parts[0]
    if quote == "<":
        allowed = re.fullmatch(STANDARD, name) or re.fullmatch(OTHERS.get(room, ""), name)
        return None if allowed else f"{room}/ may not include <{name}>"
    found = target(project, file, name)
    if found is None:
        return f'"{name}" is no file of the project, written from the root'
    return None if found.startswith((f"{room}/", *ROOMS[room])) else f"{room}/ may not include {found}"


def main(project):
    sources = subprocess.run([project / "scripts" / "sources"], stdout=subprocess.PIPE, text=True, check=False)
    if sources.returncode != 0:
        return 1
    files = [Path(name) for name in sources.stdout.split("\n") if name]
    failures = [f"{room}/ holds sources, but tests/checks/include_rules.py does not say what it may include"
                for room in sorted({file.parts[0] for file in files} - set(ROOMS))]
    for file in files:
        for number, line in enumerate((project / file).read_text().splitlines(), 1):
            include = re.match(r'\s*#\s*include\s*([<"])([^>"]+)', line)
            if include and file.parts[0] in ROOMS and (what := complaint(project, project / file, *include.groups())):
                failures.append(f"{file}:{number}: {what}")
    print(*failures, f"{len(files)} files, {len(failures)} failures", sep="\n")
    return 1 if failures or not files else 0


if __name__ == "__main__":
    sys.exit(main(Path(sys.argv[1]).resolve()))
