"""Has a real zebra tell its FPM of all there is, and writes what it said: streams.py FOLDER, by scripts/fpm-streams.

zebra runs in a guest, since its kernel has to know MPLS. Each file holds what it says of one subject, from the first
message of it to the last.
"""
import pathlib
import subprocess
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).parents[1]))
from frr import Frr  # noqa: E402
from guest import Guest  # noqa: E402
from namespaces import FOLDER, add_namespace, ip, link, prepare, start, stop, wait_for  # noqa: E402

QUIET = 0.7  # seconds after which zebra has said all
ADDRESS, PORT = "10.255.0.1", 2620

# Subjects in turn: lines for FRR, and more lines after those have been told.
SUBJECTS = {
    "plain": (["ip route 198.51.100.0/24 203.0.113.2", "ipv6 route 2001:db8:b::/64 2001:db8:2::2"],),
    "same-next-hop": (["ip route 198.51.101.0/24 203.0.113.3", "ip route 198.51.102.0/24 203.0.113.3",
                       "ip route 198.51.103.0/24 203.0.113.3"],),
    "interface-route": (["ip route 198.51.104.0/24 vec1"],),
    "default": (["ip route 0.0.0.0/0 203.0.113.4", "ipv6 route ::/0 2001:db8:2::4"],),
    "blackhole": (["ip route 192.0.2.128/25 blackhole", "ip route 192.0.2.64/26 reject",
                   "ipv6 route 2001:db8:dead::/48 blackhole"],),
    "one-label": (["ip route 198.51.110.0/24 203.0.113.2 label 100", "ipv6 route 2001:db8:b1::/64 2001:db8:2::2 label 100"],),
    "two-labels": (["ip route 198.51.120.0/24 203.0.113.2 label 200/100"],),
    "three-labels": (["ip route 198.51.130.0/24 203.0.113.2 label 300/200/100"],),
    "ecmp": (["ip route 198.51.150.0/24 203.0.113.5", "ip route 198.51.150.0/24 203.0.113.21"],),
    "ecmp-labels": (["ip route 198.51.151.0/24 203.0.113.5 label 150", "ip route 198.51.151.0/24 203.0.113.21 label 151"],),
    "lsp-swap": (["mpls lsp 1000 203.0.113.2 2000", "mpls lsp 1001 2001:db8:2::2 2001"],),
    "lsp-implicit-null": (["mpls lsp 1010 203.0.113.2 implicit-null"],),
    "lsp-explicit-null": (["mpls lsp 1011 203.0.113.2 explicit-null"],),
    "lsp-two-paths": (["mpls lsp 1020 203.0.113.2 2020", "mpls lsp 1020 203.0.113.18 2021"],),
    "lsp-change": (["mpls lsp 1030 203.0.113.2 2030"], ["no mpls lsp 1030 203.0.113.2 2030", "mpls lsp 1030 203.0.113.18 2031"]),
    "lsp-withdrawal": (["mpls lsp 1040 203.0.113.2 2040"], ["no mpls lsp 1040 203.0.113.2 2040"]),
    "withdrawal": (["ip route 198.51.160.0/24 203.0.113.6", "ipv6 route 2001:db8:b2::/64 2001:db8:2::6"],
                   ["no ip route 198.51.160.0/24 203.0.113.6", "no ipv6 route 2001:db8:b2::/64 2001:db8:2::6"]),
    "label-change": (["ip route 198.51.170.0/24 203.0.113.2 label 170"], ["ip route 198.51.170.0/24 203.0.113.2 label 171"]),
    "next-hop-change": (["ip route 198.51.171.0/24 203.0.113.7"],
                        ["ip route 198.51.171.0/24 203.0.113.8", "no ip route 198.51.171.0/24 203.0.113.7"]),
    "vrf": (["ip route 198.51.100.0/24 192.0.2.35 vrf red", "ip route 198.51.101.0/24 203.0.113.2 nexthop-vrf default label 180 vrf red"],),
    "recursive": (["ip route 198.51.180.0/24 198.51.110.9"],),
    "vpn-label": (["router bgp 65001", "bgp router-id 203.0.113.1", "router bgp 65001 vrf red", "bgp router-id 192.0.2.33",
                   "address-family ipv4 unicast", "redistribute static", "label vpn export 5000", "rd vpn export 65001:1",
                   "rt vpn both 65001:1", "export vpn", "import vpn"],),
    "lsp-two-labels": (["segment-routing", "traffic-eng", "segment-list two", "index 10 mpls label 1000",
                        "index 20 mpls label 2222", "policy color 1 endpoint 203.0.113.99", "binding-sid 5001",
                        "candidate-path preference 100 name only explicit segment-list two"],),
}


class Zebra:
    def __init__(self, name, use_next_hop_groups):
        self.name = name
        add_namespace(name)
        for number in range(4):
            link((name, f"r{number}"), ("card", f"{name}{number}"), 1600)
        ip("card", f"addr add {ADDRESS}/24 dev {name}3")
        self.folder = FOLDER / f"{name}-streams"
        self.folder.mkdir()
        self.recorder = start("python3", "-B", pathlib.Path(__file__).with_name("record.py"), ADDRESS, PORT, self.folder,
                              namespace="card", stdout=subprocess.PIPE, text=True)
        assert self.recorder.stdout.readline() == "ready\n"
        self.guest = Guest(name, name, [(f"r{number}", f"02:00:00:00:03:0{number}", 1600) for number in range(4)], 128).booted()
        self.guest.ip(["link set vec3 up", "addr add 10.255.0.2/24 dev vec3", "link set vec0 up", "link set vec1 up",
                       "addr add 203.0.113.1/28 dev vec0", "addr add 2001:db8:2::1/64 dev vec0 nodad",
                       "addr add 203.0.113.17/28 dev vec1",
                       "link add red type vrf table 10", "link set red up", "link set vec2 master red", "link set vec2 up",
                       "addr add 192.0.2.33/28 dev vec2"])
        self.frr = Frr(self.guest, ADDRESS, use_next_hop_groups)
        for daemon in ("staticd", "bgpd", "pathd"):
            self.frr.start(daemon)
        self.connection = 0
        self.connected()

    def connected(self):
        self.connection += 1
        self.stream = self.folder / str(self.connection)
        self.taken = 0
        wait_for(lambda: self.stream.exists() and self.stream.stat().st_size, "zebra's connection")

    def said(self):
        """What zebra has said since the last time."""
        size, since = self.stream.stat().st_size, time.monotonic()
        while time.monotonic() - since < QUIET:
            time.sleep(0.05)
            if self.stream.stat().st_size != size:
                size, since = self.stream.stat().st_size, time.monotonic()
        before, self.taken = self.taken, size
        return self.stream.read_bytes()[before:size]

    def subjects(self):
        yield "connected", self.said()
        for name, steps in SUBJECTS.items():
            told = b""
            for lines in steps:
                self.frr.configure(*lines)
                told += self.said()
            if "change" in name or "withdrawal" in name:
                time.sleep(1.5)  # next hops that nobody uses any more
                told += self.said()
            yield name, told
        self.guest.tell("ip link set vec1 down")
        told = self.said()
        self.guest.tell("ip link set vec1 up")
        yield "link-down-and-up", told + self.said()
        self.frr.configure("no fpm address")
        self.frr.configure(f"fpm address {ADDRESS}")
        self.connected()
        yield "reconnect", self.said()

    def stop(self):
        self.guest.stop()
        stop(self.recorder)
        ip("card", f"link del {self.name}3")


def main():
    target = pathlib.Path(sys.argv[1]).resolve()
    target.mkdir(parents=True, exist_ok=True)
    prepare()
    add_namespace("card")
    for name, objects in (("objects", True), ("inline", False)):
        zebra = Zebra(name, objects)
        for subject, told in zebra.subjects():
            print(f"{name}-{subject}: {len(told)} bytes", flush=True)
            if told:
                (target / f"{name}-{subject}").write_bytes(told)
        zebra.stop()


main()
