"""A full table from BGP onto a card, through a real zebra: onto_card.py SOFTCARD ROUTES NEXTHOPS, by scripts/fpm-streams.

With what it takes until the card has all routes, once as they come and once more when zebra has connected again: the
same is told then, and the card is asked for nothing.
"""
import json
import pathlib
import re
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parent))
from full_table import INTERFACE, FullTable  # noqa: E402
from namespaces import FOLDER, prepare, run, start, stop, wait_for  # noqa: E402

SECONDS = 200  # that zebra may take
QUIET = 1.0  # after which it has told all
SOCKET = FOLDER / "card.sock"
SCENARIO = """card routes={routes}
install-vrf 0
interface {index} lim=eth1 vlan=101 vrf=0 mac=00:00:5e:00:01:01 mtu=1500
"""


class Card:
    """Takes zebra's FPM; its own ports have no interfaces, for no packet is to come."""

    def __init__(self, softcard, namespace, routes):
        self.softcard = softcard
        link = run("ip", "-o", "link", "show", INTERFACE, namespace=namespace)
        path = FOLDER / "card.scn"
        path.write_text(SCENARIO.format(routes=routes + 100, index=int(link.split(":")[0])))
        self.process = start(softcard, "serve", path, "--control", SOCKET, "--fpm", "127.0.0.1:2620", namespace=namespace,
                             stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, text=True)
        if self.process.stdout.readline() != "ready\n":
            raise SystemExit("softcard serve did not get ready")

    def told(self):
        """What `show control-plane` says."""
        return json.loads(run(self.softcard, "ctl", "--socket", SOCKET, "--json", "show control-plane").splitlines()[0])[
            "tables"][0]["rows"][0]

    def processor_seconds(self):
        return int(pathlib.Path(f"/proc/{self.process.pid}/schedstat").read_text().split()[0]) / 1e9

    def megabytes(self):
        status = pathlib.Path(f"/proc/{self.process.pid}/status").read_text()
        return int(re.search(r"VmRSS:\s+(\d+)", status)[1]) / 1000


def quiet(card):
    """Waits until nothing more is told; gives when the last was."""
    last, messages = time.monotonic(), -1
    begin = last
    while (now := time.monotonic()) - last < QUIET:
        if (told := card.told()["messages"]) != messages:
            last, messages = now, told
        if now - begin > SECONDS:
            raise SystemExit(f"zebra still tells something after {SECONDS} s")
        time.sleep(0.05)
    return last


def main():
    softcard, routes, next_hops = pathlib.Path(sys.argv[1]).resolve(), int(sys.argv[2]), int(sys.argv[3])
    prepare()
    for name, objects in (("objects", True), ("inline", False)):
        full = FullTable(name)
        card = Card(softcard, name, routes)
        full.run(objects)
        wait_for(lambda: card.told()["routes"], "zebra's connection", 20)
        before, used, begin = card.megabytes(), card.processor_seconds(), time.monotonic()
        full.announce(routes, next_hops)
        wait_for(lambda: card.told()["routes"] >= routes, f"{routes} routes on the card", SECONDS, 0.05)
        seconds = time.monotonic() - begin
        requests = card.told()["requests"]
        print(f"{name}: {routes} routes on the card {seconds:.1f} s after their first announcement; of these the card used "
              f"{card.processor_seconds() - used:.1f} s, {requests} requests, {card.megabytes() - before:.0f} MB", flush=True)
        quiet(card)
        used = card.processor_seconds()
        messages = card.told()["messages"]
        full.connect_again()
        wait_for(lambda: card.told()["messages"] != messages, "zebra's return", 20, 0.01)
        begin = time.monotonic()
        seconds = quiet(card) - begin
        print(f"{name}: told again in {seconds:.2f} s; the card used {card.processor_seconds() - used:.2f} s, "
              f"{card.told()['requests'] - requests} requests", flush=True)
        if card.told()["requests"] != requests:
            raise SystemExit("what had not changed was asked for again")
        full.stop()
        stop(card.process)


main()
