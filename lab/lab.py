"""Host A, the software card, a foreign MPLS switch and host B: every case with every switch, a line each.

Runs in namespaces of its own, which scripts/lab makes: it begins there as the first process.
"""
import argparse
import concurrent.futures
import pathlib
import shutil
import signal
import sys
import time

import topology
from captures import Capture, marks
from card import Card
from cases import CASES
from mpls_kernel import MplsKernel
from namespaces import Failure, prepare
from openvswitch import OpenVSwitch
from traffic import Echo, flow, mark, ping

MEGABYTE = 1 << 20
FLOWS_BYTES = 3 * MEGABYTE  # of TCP in a case, each way


class Lab:
    def __init__(self, arguments):
        self.softcard = arguments.softcard
        self.keep = arguments.keep
        self.failed = 0
        self.done = 0
        self.judging = None
        self.pool = concurrent.futures.ThreadPoolExecutor(1)

    def judge(self, switch, case, capture, wrong, told):
        self.finish()
        verdict = self.pool.submit(capture.judge, case.expected, case.pseudowires)
        self.judging = (verdict, switch, case, capture, wrong, told)

    def finish(self):
        """Tells of the case that is being judged."""
        if self.judging:
            verdict, switch, case, capture, wrong, told = self.judging
            self.judging = None
            wrong = wrong + verdict.result()
            self.tell(switch, case.name, wrong, f"{told}, {capture.frames} frames judged" if told else "")
            capture.path.unlink()

    def tell(self, switch, name, wrong, told=""):
        self.done += 1
        self.failed += bool(wrong)
        print(f"{'FAILED' if wrong else 'ok':6} {switch.name}: {name}{': ' + told if told else ''}", flush=True)
        for line in wrong:
            print("       " + line.replace("\n", "\n       "), flush=True)


def exchange(case):
    """The case's traffic; what to tell of it."""
    for address in case.to:
        ping(address, topology.HOST_MTU)
    told = [flow(address, FLOWS_BYTES // len(case.to)) for address in case.to]
    size, seconds = sum(each["bytes"] for each in told), sum(each["seconds"] for each in told)
    again = sum(each["retransmits"] for each in told)
    return f"{size / MEGABYTE:.1f} MB of TCP each way, {16 * size / seconds / 1e6:.0f} Mbit/s, {again} sent again"


def run_case(lab, switch, case):
    switch.clear()
    case.switch(switch)
    switch.ready()
    card = Card(lab.softcard, case.path)
    try:
        capture = Capture(f"{switch.short_name}-{case.scenario}")
        wrong, told = [], ""
        try:
            told = exchange(case)
        except Failure as failure:
            wrong.append(str(failure))
        for address in case.to:
            mark(address)
        capture.stop(marks(case.expected, case.to))
        if wrong:
            wrong += story(capture, card, switch)
    finally:
        card.stop()
    # Judging is work for another core, while the next case runs.
    lab.judge(switch, case, capture, wrong, told)


def story(capture, card, switch):
    return []


def main():
    parser = argparse.ArgumentParser(prog="scripts/lab", description=__doc__.splitlines()[0])
    parser.add_argument("--softcard", type=pathlib.Path, required=True, help="the command")
    parser.add_argument("--keep", type=pathlib.Path, help="a folder for the captures of failed cases")
    parser.add_argument("--switch", choices=("ovs", "kernel"), help="only this one")
    parser.add_argument("cases", nargs="*", metavar="CASE", help="only cases whose name has this in it")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    begin = time.monotonic()
    prepare()
    topology.build()
    lab = Lab(arguments)
    echo = Echo()
    for name, make in (("ovs", OpenVSwitch), ("kernel", MplsKernel)):
        if arguments.switch not in (None, name):
            continue
        switch = make()
        try:
            for case in CASES:
                if any(text in case.name for text in arguments.cases or [""]) and getattr(switch, case.only or "name"):
                    run_case(lab, switch, case)
            lab.finish()
        finally:
            switch.stop()
    echo.stop()
    print(f"{lab.done} cases, {lab.failed} failed, {time.monotonic() - begin:.0f} s")
    return 1 if lab.failed or not lab.done else 0


sys.exit(main())
