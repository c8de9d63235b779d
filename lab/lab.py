"""Host A, the software card, a foreign MPLS switch and host B: every case with one switch, a line each.

Runs in namespaces of its own, which scripts/lab makes: it begins there as the first process.
"""
import argparse
import concurrent.futures
import pathlib
import re
import shutil
import signal
import sys
import time

import topology
from captures import Capture
from card import Card
from cases import BITES, CASES
from changes import CHANGES
from mpls_kernel import MplsKernel
from namespaces import Failure, prepare
from neighbours import NEIGHBOURS
from openvswitch import OpenVSwitch
from speed import speed
from story import story
from traffic import Echo, settle

SWITCHES = {make.short_name: make for make in (OpenVSwitch, MplsKernel)}
LINES = 30  # of what is wrong in a case, at most


class Lab:
    """Runs cases one after the other. Captures are judged while the next case runs already."""

    def __init__(self, softcard, keep):
        self.softcard = softcard
        self.keep = keep
        self.done = self.failed = 0
        self.waiting = None  # for the verdict on the case before
        self.pool = concurrent.futures.ThreadPoolExecutor(1)

    def run(self, switch, case):
        try:
            capture, wrong, told = self.try_case(switch, case)
        except Failure as failure:
            self.finish()
            return self.tell(switch, case, [str(failure)])
        self.finish()
        self.waiting = switch, case, capture, wrong, told, self.pool.submit(capture.judge, case.expected)

    def try_case(self, switch, case):
        switch.clear()
        case.switch(switch)
        switch.ready()
        card = Card(self.softcard, case.path, hosts=case.hosts)
        try:
            case.prepare(card)
            capture = Capture(f"{switch.short_name}-{case.name}".replace(" ", "-"), case.pseudowires)
            try:
                told = case.traffic(case, card, switch)
                for address in case.to:
                    settle(address)
                capture.end()
                capture.counted = card.ask("show interfaces")
                return capture, [], told
            except Failure as failure:
                capture.end()
                return capture, [str(failure), *story(capture, card, switch)], ""
        finally:
            card.stop()

    def finish(self):
        """Waits for what is being judged."""
        if not self.waiting:
            return
        switch, case, capture, wrong, told, verdict = self.waiting
        self.waiting = None
        wrong = wrong + verdict.result()
        if wrong and not case.bite and self.keep:
            self.keep.mkdir(parents=True, exist_ok=True)
            shutil.copy(capture.path, self.keep)
        capture.path.unlink()
        if case.bite:
            bitten = [line for line in wrong if re.search(case.bite, line)]
            return self.tell(switch, case, [] if bitten else [f"not found: {case.bite}", *wrong],
                             bitten[0].splitlines()[-1].strip() if bitten else "")
        self.tell(switch, case, wrong, f"{told}, {capture.frames} frames judged")

    def tell(self, switch, case, wrong, told=""):
        self.done += 1
        self.failed += bool(wrong)
        print(f"{'FAILED' if wrong else 'ok':6} {switch.name}: {case.name}{'' if wrong else ': ' + told}", flush=True)
        for line in wrong[:LINES]:
            print("       " + line.strip().replace("\n", "\n         "), flush=True)


def main():
    parser = argparse.ArgumentParser(prog="scripts/lab", description=__doc__.splitlines()[0])
    parser.add_argument("--softcard", type=pathlib.Path, required=True, help="the command")
    parser.add_argument("--keep", type=pathlib.Path, help="a folder for the captures of failed cases")
    parser.add_argument("--speed", action="store_true", help="frames a second, instead of cases")
    parser.add_argument("--switch", choices=SWITCHES, default="ovs", help="the foreign switch")
    parser.add_argument("cases", nargs="*", metavar="CASE", help="only cases whose name has this in it")
    arguments = parser.parse_args()
    cases = [case for case in CASES + NEIGHBOURS + CHANGES + BITES
             if any(text in case.name for text in arguments.cases or [""])]
    if not cases:
        parser.error(f"no case has {' or '.join(arguments.cases)} in its name")
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    begin = time.monotonic()
    prepare()
    if arguments.speed:
        return 0 if speed(arguments.softcard) else 1
    topology.build()
    lab = Lab(arguments.softcard, arguments.keep)
    Echo()
    switch = SWITCHES[arguments.switch]()
    try:
        for case in cases:
            if getattr(switch, case.only or "name"):
                lab.run(switch, case)
        lab.finish()
    finally:
        switch.stop()
    print(f"{switch.name}: {lab.done} cases, {lab.failed} failed, {time.monotonic() - begin:.0f} s")
    return 1 if lab.failed else 0


sys.exit(main())
