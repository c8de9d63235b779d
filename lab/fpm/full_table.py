"""zebra with a full table: bgpd hears of many routes from a neighbour, each in a namespace of its own."""
import pathlib
import subprocess

from frr import Frr
from namespaces import add_namespace, ip, link, run, start, stop

HERE = pathlib.Path(__file__).parent
ROUTER, NEIGHBOUR, NETWORK = "203.0.113.1", "203.0.113.100", "203.0.113.0/24"
INTERFACE = "r0"


class Here:
    """A network namespace, for Frr: the machine's kernel has to know no labels for these routes."""

    def __init__(self, name):
        self.name = name

    def tell(self, command):
        return run("sh", "-c", command, namespace=self.name, seconds=60)


class FullTable:
    """Made before zebra runs: who takes its FPM is to be there already."""

    def __init__(self, name):
        self.name = name
        self.speaker = self.frr = None
        add_namespace(name)
        add_namespace(f"{name}-n")
        link((name, INTERFACE), (f"{name}-n", "n0"), 1500)
        ip(name, f"addr add {ROUTER}/24 dev {INTERFACE}")
        ip(f"{name}-n", f"addr add {NEIGHBOUR}/24 dev n0")

    def run(self, objects):
        """Starts zebra, with next hops as objects or within each route."""
        self.frr = Frr(Here(self.name), "127.0.0.1", objects)

    def announce(self, routes, next_hops):
        self.frr.start("bgpd", settings=["router bgp 65001", "no bgp ebgp-requires-policy",
                                         f"neighbor {NEIGHBOUR} remote-as 65002", f"neighbor {NEIGHBOUR} passive"])
        self.speaker = start("python3", "-B", HERE / "bgp_speaker.py", NEIGHBOUR, ROUTER, routes, next_hops,
                             namespace=f"{self.name}-n", stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def connect_again(self):
        """zebra tells everything once more."""
        self.frr.configure("no fpm address")
        self.frr.configure("fpm address 127.0.0.1")

    def stop(self):
        for daemon in ("bgpd", "zebra"):
            self.frr.kill(daemon)
        self.speaker.kill()
        stop(self.speaker)
