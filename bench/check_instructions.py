#!/usr/bin/env python3
"""Compares the module's instruction counts with the kept ones: fails when a request grew by more than 5 %, and says by
how much. Skips (77) where the counts cannot be taken or none are kept for the compiler.

usage: check_instructions.py [--keep] REQUEST_COUNTS COMPILER      COMPILER for example "GNU 12 x86_64"
--keep makes the present counts the kept ones.
"""

import json
import os
import shutil
import sys

import instructions

KEPT = os.path.join(os.path.dirname(os.path.abspath(__file__)), "instructions.json")
DESTINATIONS = 1000
TOLERANCE = 1.05
SKIP = 77


def module_counts(counts):
    """Instructions per request, by the request's name."""
    return {name.removesuffix(" module"): round(count["instructions"], 1)
            for name, count in counts.items() if name.endswith(" module")}


def growth(kept, present):
    """A text for each request that grew too much."""
    return [f"{name}: {was:.0f} -> {present[name]:.0f} instructions (+{100 * (present[name] / was - 1):.1f} %)"
            for name, was in kept.items() if present[name] > was * TOLERANCE]


def read_kept():
    with open(KEPT) as file:
        return json.load(file)


def write_kept(all_kept):
    with open(KEPT, "w") as file:
        json.dump(all_kept, file, indent=1)
        file.write("\n")


def main(arguments):
    keep = arguments[:1] == ["--keep"]
    if len(arguments) != 2 + keep:
        sys.exit(__doc__)
    program, compiler = arguments[-2:]
    under_qemu = not compiler.endswith(os.uname().machine)
    tool, count = ("qemu-ppc", instructions.under_qemu) if under_qemu else ("valgrind", instructions.under_callgrind)
    if shutil.which(tool) is None:
        print(f"skipped: counting instructions takes {tool}, which is not installed")
        return SKIP
    all_kept = read_kept() if os.path.exists(KEPT) else {}
    if not keep and compiler not in all_kept:
        print(f"skipped: no instruction counts are kept for {compiler}; build keep_instruction_counts to keep them")
        return SKIP

    present = module_counts(count(program, DESTINATIONS))
    if keep:
        write_kept(dict(sorted({**all_kept, compiler: present}.items())))
        return 0
    texts = growth(all_kept[compiler], present)
    print("\n".join(texts) or f"no request grew by more than {TOLERANCE - 1:.0%}")
    if texts:
        print("callgrind_annotate shows where; bench/instructions.py says how request_counts runs under callgrind.")
        print("If the growth is wanted, build keep_instruction_counts and commit bench/instructions.json.")
    return 1 if texts else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
