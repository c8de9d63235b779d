"""Two customers with the same addresses in a VPN each: the card is one end of both, R3 the other.

    A, A2 -- the card -- R2 -- R3 -- B, B2

A and B are the red ones, A2 and B2 the blue ones.
"""
import re

import topology
from agreement import agree
from captures import stretch
from cases import out
from changes import of_ipv4
from namespaces import Failure, add_namespace, ip, link, run
from routers import AS, Router, bgp, build_processor, ldp, ospf, processor, run_all, start_card
from topology import A_MAC, A_V4, A_V6, B_MAC, B_V4, B_V6, CARD_TO_PEER, LINK_MTU, PEER_TO_B_MAC
from traffic import MEGABYTE, Echo, flow

R1, R2, R3 = "10.0.0.1", "10.0.0.2", "10.0.0.3"
PORTS = ("eth1", "eth2", "eth4")  # A's, the one to R2, A2's
VPNS = {"red": 1, "blue": 2}  # the VRFs of the card
VRFS = {"default": 0, **VPNS}  # the card's, by FRR's names
B_NETWORK = "198.51.100.0/24"
A_EDGE, B_EDGE = "192.0.2.254/24", "198.51.100.254/24"


def build():
    """The blue hosts stand where else the switch has its fourth link, and beside B."""
    topology.build()
    link(("peer", "peerb2"), ("peer", "b2"), LINK_MTU)
    for host, interface, end in (("a2", "a0", "peer4"), ("b2", "b0", "b2")):
        add_namespace(host)
        run("ip", "link", "set", end, "netns", host, "name", interface, namespace="peer")
    topology.host("a2", "a0", A_MAC, A_V4, A_V6, "192.0.2.254", "2001:db8:a::fe", CARD_TO_PEER)
    topology.host("b2", "b0", B_MAC, B_V4, B_V6, "198.51.100.254", "2001:db8:b::fe", PEER_TO_B_MAC)
    build_processor(PORTS)
    link(("peer", "r2-r3"), ("peer", "r3-r2"), LINK_MTU)


def vpns(loopback):
    """A provider edge's VPNs: what is connected in a VRF is told under a label of the VRF's."""
    lines = []
    for vpn, number in VPNS.items():
        lines += [f"router bgp {AS} vrf {vpn}", f"bgp router-id {loopback}", "address-family ipv4 unicast",
                  "redistribute connected", "label vpn export auto", f"rd vpn export {AS}:{number}",
                  f"rt vpn both {AS}:{number}", "export vpn", "import vpn", "exit-address-family", "exit"]
    return lines


def start_routers():
    """The three, when all of them run; they have not agreed yet."""
    r1 = processor(PORTS, {"eth1": [A_EDGE], "eth2": ["203.0.113.46/28"], "eth4": [A_EDGE]}, loopback=R1,
                   vrfs={0: "red", 2: "blue"})
    r2 = Router("r2", "peer", [("peer2", "02:00:00:00:02:02", "203.0.113.33/28"),
                               ("r2-r3", "02:00:00:00:02:04", "203.0.113.129/28")], R2)
    r3 = Router("r3", "peer", [("r3-r2", "02:00:00:00:03:02", "203.0.113.130/28"), ("peerb", PEER_TO_B_MAC, B_EDGE),
                               ("peerb2", PEER_TO_B_MAC, B_EDGE)], R3, vrfs={1: "red", 2: "blue"})
    run_all([(r1, {"ospfd": ospf(R1, {"vec1": 10}), "ldpd": ldp(R1, ["vec1"]),
                   "bgpd": bgp(R1, R3, "ipv4 vpn", vpns(R1))}),
             (r2, {"ospfd": ospf(R2, {"vec0": 10, "vec1": 10}), "ldpd": ldp(R2, ["vec0", "vec1"])}),
             (r3, {"ospfd": ospf(R3, {"vec0": 10}), "ldpd": ldp(R3, ["vec0"]),
                   "bgpd": bgp(R3, R1, "ipv4 vpn", vpns(R3))})])
    return r1, r2, r3


NAMES = ("two VPNs with the same addresses", "a VPN does not reach the other's hosts")


def run_cases(report, softcard):
    build()
    card = start_card(softcard, "vpn", PORTS)
    r1, r2, r3 = routers = start_routers()
    Echo()

    def agreed():
        """The stacks of packets to B and B2, and the labels of those to A and A2."""
        said = agree(card, r1.frr, VRFS, lambda said: all(
            said.get((vrf, B_NETWORK), "").count("/") == 1 and f"VRF {vrf}" in said.values() for vrf in VPNS.values()))
        chosen = {}
        for vpn, vrf in VPNS.items():
            stack = said[vrf, B_NETWORK].split()[1].split("/")
            back = next(label for label, way in said.items() if way == f"VRF {vrf}")
            chosen[vpn] = [int(label) for label in stack], back
        return chosen

    def expected(chosen):
        ways = []
        for vpn, (stack, back) in chosen.items():
            port = {"red": "eth1", "blue": "eth4"}[vpn]
            ways += [stretch(port, "in", "B", 64), out("eth2", [(label, 255) for label in stack]),
                     stretch("eth2", "in", "A", 63, [(back, 255)]), stretch(port, "out", "A", 62)]
        return [seen for way in of_ipv4(ways) for seen in way]

    try:
        report.case(NAMES[0], talk, agreed, expected, (B_V4,))
        report.case(NAMES[1], do_not_mix)
    finally:
        for each in (*routers, card):
            each.stop()


def pings(host):
    """How many of three come back to a host."""
    printed = run("ping", "-q", "-n", "-c", 3, "-i", "0.05", "-W", "0.5", B_V4, namespace=host, may_fail=True)
    return int(re.search(r"(\d+) received", printed)[1])


def talk():
    """Red hosts by TCP, too, blue ones by pings."""
    told = flow(B_V4, MEGABYTE)
    if pings("a") != 3 or pings("a2") != 3:
        raise Failure("pings have not come back")
    return f"{told['bytes'] / MEGABYTE:.1f} MB of TCP each way"


def do_not_mix():
    """While a VPN's host at the other end is silent, nobody answers in its place."""
    for mute, asking, other in (("b", "a", "a2"), ("b2", "a2", "a")):
        ip(mute, "route add blackhole 192.0.2.1/32")
        answers = pings(asking), pings(other)
        ip(mute, "route del blackhole 192.0.2.1/32")
        if answers != (0, 3):
            raise Failure(f"with {mute} silent, {asking} got {answers[0]} answers and {other} {answers[1]}")
    return "who was silent was answered for by nobody"
