#!/usr/bin/env python3
"""Compares the module's instruction counts with the kept ones: fails when an operation grew by more than 5 %, and
names the functions that grew. Skips (77) where the counts cannot be taken or none are kept for the compiler.

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
    return {name.removesuffix(" module"): {"instructions": round(count["instructions"], 1),
                                           "functions": {function: round(own, 1)
                                                         for function, own in sorted(count.get("functions", {}).items())
                                                         if own >= 5}}
            for name, count in counts.items() if name.endswith(" module")}


def growth(kept, present):
    """A text for each operation that grew too much, with the functions that did, most first."""
    texts = []
    for name, was in kept.items():
        now = present[name]
        if now["instructions"] <= was["instructions"] * TOLERANCE:
            continue
        change = 100 * (now["instructions"] / was["instructions"] - 1)
        texts.append(f"{name}: {was['instructions']:.0f} -> {now['instructions']:.0f} instructions (+{change:.1f} %)")
        grown = sorted(((own - was["functions"].get(function, 0), function)
                        for function, own in now["functions"].items()), reverse=True)
        texts += [f"    {function} +{by:.0f}" for by, function in grown if by >= 1]
    return texts


def read_kept():
    with open(KEPT) as file:
        return json.load(file)


def write_kept(all_kept):
    def lines(operations):
        return ",\n".join(f"  {json.dumps(name)}: {json.dumps(count)}" for name, count in operations.items())

    with open(KEPT, "w") as file:
        file.write("{\n" + ",\n".join(f"{json.dumps(compiler)}: {{\n{lines(operations)}\n}}"
                                      for compiler, operations in sorted(all_kept.items())) + "\n}\n")


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
        write_kept({**all_kept, compiler: present})
        return 0
    texts = growth(all_kept[compiler], present)
    print("\n".join(texts) or f"no operation grew by more than {TOLERANCE - 1:.0%}")
    if texts:
        print("If the growth is wanted, build keep_instruction_counts and commit bench/instructions.json.")
    return 1 if texts else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
