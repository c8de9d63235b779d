"""A real control plane above the software card: FRR's routes and labels, a line for each case.

Runs in namespaces of its own, which scripts/lab makes: it begins there as the first process.
"""
import argparse
import dataclasses
import pathlib
import shutil
import signal
import sys
import time

import static_routes
import three_routers
import vpn
from captures import Capture
from namespaces import FOLDER, Failure, prepare, run
from traffic import settle

LINES = 30  # of what is wrong in a case, at most


@dataclasses.dataclass
class Report:
    """Tells what became of each case, and counts."""
    names: list  # only cases whose name has one of these in it
    keep: pathlib.Path = None
    done: int = 0
    failed: int = 0

    def wants(self, name):
        return any(text in name for text in self.names or [""])

    def case(self, name, do, before=lambda: None, expected=None, to=()):
        """Does a case, whose failures end it. With `expected`, which makes a list of what `before` gives, what goes
        through the card's ports while it is done has to be this."""
        if not self.wants(name):
            return
        begin = time.monotonic()
        wrong, told, capture = [], "", None
        try:
            known = before()
            if expected:
                capture = Capture(name.replace(" ", "-"))
            told = do()
        except Failure as failure:
            wrong = [str(failure)]
        if capture:
            told, wrong = self.judge(capture, expected(known), to, told, wrong)
        self.tell(name, wrong, f"{told}, {time.monotonic() - begin:.1f} s")

    def judge(self, capture, expected, to, told, wrong):
        for address in to if not wrong else ():
            settle(address)
        capture.end()
        wrong = wrong + capture.judge(expected)
        if wrong and self.keep:
            self.keep.mkdir(parents=True, exist_ok=True)
            shutil.copy(capture.path, self.keep)
        capture.path.unlink()
        return f"{told}, {capture.frames} frames judged", wrong

    def tell(self, name, wrong, told=""):
        self.done += 1
        self.failed += bool(wrong)
        print(f"{'FAILED' if wrong else 'ok':6} {name}{'' if wrong else ': ' + told}", flush=True)
        for line in wrong[:LINES]:
            print("       " + line.strip().replace("\n", "\n         "), flush=True)


def main():
    parser = argparse.ArgumentParser(prog="scripts/lab --control-plane", description=__doc__.splitlines()[0])
    parser.add_argument("--softcard", type=pathlib.Path, required=True, help="the command")
    parser.add_argument("--keep", type=pathlib.Path, help="a folder for the captures of failed cases")
    parser.add_argument("--topology", choices=("static", "three", "vpn"), help="only this one")
    parser.add_argument("cases", nargs="*", metavar="CASE", help="only cases whose name has this in it")
    arguments = parser.parse_args()
    signal.signal(signal.SIGTERM, lambda *_: sys.exit(143))
    begin = time.monotonic()
    prepare()
    report = Report(arguments.cases, arguments.keep)
    for name, topology in (("static", static_routes), ("three", three_routers), ("vpn", vpn)):
        if arguments.topology in (None, name) and any(map(report.wants, topology.NAMES)):
            try:
                topology.run_cases(report, arguments.softcard)
            except Failure as failure:
                report.tell(f"the topology {name}", [str(failure)])
            run("ip", "-all", "netns", "delete")
            shutil.rmtree(FOLDER)
            FOLDER.mkdir()
    print(f"{report.done} cases, {report.failed} failed, {time.monotonic() - begin:.0f} s")
    return 1 if report.failed or not report.done else 0


sys.exit(main())
