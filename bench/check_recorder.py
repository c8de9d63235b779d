#!/usr/bin/env python3
"""Counts the instructions that the recorder takes of a request and fails when they are more than they may be: a count
says the same on every machine, however busy. Skips (77) where valgrind is missing.

usage: check_recorder.py BUILD_DIRECTORY
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile

import instructions

# Of a request's instructions, while nothing is recorded; on the bare platform there is little else.
OFF = {"card": 0.05, "bare": 0.15}
# A call asks where it comes from, so that what is paused can be resumed with any request.
PAUSED = {"card": 0.15}
LINE = 4000  # instructions a recorded line may take, beside the write itself
SKIP = 77


class Program:
    """Makes requests, so many for each unit that its argument counts."""

    def __init__(self, path, few, many, requests):
        self.path, self.few, self.many = path, few, many
        self.requests = requests

    def per_request(self, settings):
        """Instructions: what a longer run takes more than a shorter one, so without the program's beginning and end."""
        few, many = (self._run(count, settings) for count in (self.few, self.many))
        return (many - few) / ((self.many - self.few) * self.requests)

    def _run(self, count, settings):
        command = ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", self.path, str(count)]
        done = subprocess.run(command, env={**os.environ, **instructions.PLAIN_X86_64, **settings},
                              capture_output=True, text=True)
        collected = re.search(r"Collected : (\d+)", done.stderr)
        if done.returncode != 0 or not collected:
            sys.exit(f"{' '.join(command)} failed with {done.returncode}:\n{done.stderr}")
        return int(collected[1])


def lines_of_a_request(program, settings, recording):
    subprocess.run([program.path, str(program.few)], env={**os.environ, **settings}, check=True, capture_output=True)
    with open(recording) as file:
        lines = file.readlines()
    return len(lines) / sum("  => " in line for line in lines)


def measure(build):
    """Of a request, by platform: its instructions, its recorded lines, and its instructions with the recorder, by way."""
    programs = {"bare": Program(f"{build}/bench/recorder_times", 1, 2, 300),
                "card": Program(f"{build}/bench/recorder_card_times", 300, 1500, 1)}
    recorder = {"LD_PRELOAD": f"{build}/recorder/libhal_card_recorder.so"}
    counts = {}
    with tempfile.TemporaryDirectory() as directory:
        recording = f"{directory}/card.rec"
        recorded = {**recorder, "HAL_CARD_RECORDING": recording}
        for platform, program in programs.items():
            ways = {"off": recorder, "nowhere": {**recorder, "HAL_CARD_RECORDING": "/dev/null"}}
            if platform in PAUSED:
                ways["paused"] = {**recorded, "HAL_CARD_RECORDING_SIGNAL": "USR1"}
            lines = lines_of_a_request(program, recorded, recording)
            counts[platform] = {"without": program.per_request({}), "lines": lines,
                                **{way: program.per_request(settings) for way, settings in ways.items()}}
    return counts


def judge(counts):
    """A text for each count, and one for each that is more than it may be."""
    texts, too_much = [], []

    def check(text, value, most, form):
        texts.append(f"{text}: {value:{form}}")
        if value > most:
            too_much.append(f"{text}: {value:{form}}, but {most:{form}} at most")

    for platform, count in counts.items():
        without = count["without"]
        texts.append(f"{platform}: a request takes {without:.0f} instructions")
        check(f"{platform}: nothing recorded", count["off"] / without - 1, OFF[platform], "+.1%")
        if platform in PAUSED:
            check(f"{platform}: paused", count["paused"] / without - 1, PAUSED[platform], "+.1%")
        check(f"{platform}: a recorded line", (count["nowhere"] - without) / count["lines"], LINE, ".0f")
    return texts, too_much


def main(build):
    if shutil.which("valgrind") is None:
        print("skipped: counting instructions takes valgrind, which is not installed")
        return SKIP
    texts, too_much = judge(measure(build))
    print("\n".join(texts + too_much))
    return 1 if too_much else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
