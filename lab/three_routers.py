"""Three routers that agree on everything by themselves: OSPF finds ways, LDP gives labels for them, BGP tells what is
behind them, with labels of its own. The first one is the card with its route processor.

    A -- the card ====== R2 -- R3 -- B        two links between the card and R2, the second for when the first is down
"""
import shutil
import subprocess
import time

import topology
from agreement import agree, said_by_frr
from captures import stretch
from cases import FROM_A, out
from changes import of_ipv4, told_of
from namespaces import FOLDER, Failure, ip, link, run, start, stop, wait_for
from routers import (AS, PORTS, Router, bgp, build_processor, ldp, ospf, processor, run_all,
                     start_card)
from topology import B_V4, LINK_MTU, PEER_TO_B_MAC
from traffic import PING_SECONDS, Echo, LastingFlow, LastingPings, exchange

R1, R2, R3 = "10.0.0.1", "10.0.0.2", "10.0.0.3"
A_EDGE, A_PEER = "203.0.113.30", "203.0.113.17"  # of the card's router and of A on their link
B_EDGE, B_PEER = "203.0.113.145", "203.0.113.146"
FIRST_LINK, SECOND_LINK = "203.0.113.33", "203.0.113.49"  # R2 on its links to the card
A_NETWORK, B_NETWORK = "192.0.2.0/24", "198.51.100.0/24"


VRFS = {"default": 0}
FLOW_SECONDS = 60  # of silence: what protocols take, and TCP's ever longer waiting then
LOOK_SECONDS = 0.3  # between looks at what a router says, which is work for it
QUIET_SECONDS = 1.2  # after which FRR has told all; it tells of next hops that nobody uses any more a second later
TO_B, TO_R2, ONLY_TO_B = "to B and back", "to R2 and back, without labels", "to B"


def echo_requests():
    """How many pings B has got."""
    names, values = (line.split() for line in run("cat", "/proc/net/snmp", namespace="b").splitlines()
                     if line.startswith("Icmp:"))
    return int(values[names.index("InEchos")])


class ToB:
    """What is sent in a case."""
    to, bite = (B_V4,), ""


def customer(address, asn):
    """To a customer, who tells what is behind it: routers give labels to what they hear, not to what they have."""
    return [f"router bgp {AS}", f"neighbor {address} remote-as {asn}", f"neighbor {address} timers connect 1",
            "address-family ipv4 labeled-unicast", f"neighbor {address} activate", "exit-address-family"]


def build():
    topology.build()
    build_processor(PORTS)
    link(("peer", "r2-r3"), ("peer", "r3-r2"), LINK_MTU)
    ip("a", f"addr add {A_PEER}/28 dev a0")
    ip("b", f"addr add {B_PEER}/28 dev b0")


class Customer:
    """A host that tells its router of its network. bgpd needs no zebra for that."""

    def __init__(self, namespace, address, asn, router, network):
        path = FOLDER / f"{namespace}.bgpd.conf"
        path.write_text("\n".join([f"router bgp {asn}", f"bgp router-id {address}", "no bgp ebgp-requires-policy",
                                   "no bgp default ipv4-unicast", "no bgp network import-check",
                                   f"neighbor {router} remote-as {AS}",
                                   f"neighbor {router} timers connect 1", "address-family ipv4 unicast",
                                   f"network {network}", "exit-address-family", "address-family ipv4 labeled-unicast",
                                   f"neighbor {router} activate"]) + "\n")
        self.asn = asn
        self.folder = folder = FOLDER / f"{namespace}.bgpd"
        folder.mkdir()
        (folder / "vtysh.conf").touch()
        shutil.chown(folder, "frr", "frr")
        self.process = start("/usr/lib/frr/bgpd", "-n", "-Z", "-f", path, "-i", folder / "pid",
                             "--vty_socket", folder, "-P", 0, "-l", address, namespace=namespace,
                             stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def announce(self, *lines):
        """Has it announce other networks."""
        run("vtysh", "--vty_socket", self.folder, "--config_dir", self.folder,
            *(word for line in ("configure", f"router bgp {self.asn}", "address-family ipv4 unicast", *lines)
              for word in ("-c", line)))

    def stop(self):
        stop(self.process)


def start_routers():
    """The three, when all of them run; they have not agreed yet."""
    def link_address(last):
        return f"203.0.113.{last}/28"

    r1 = processor(PORTS, {"eth1": [f"{A_EDGE}/28"], "eth2": [link_address(46)], "eth3": [link_address(62)]},
                   loopback=R1)
    r2 = Router("r2", "peer", [("peer2", "02:00:00:00:02:02", link_address(33)),
                               ("peer3", "02:00:00:00:02:02", link_address(49)),
                               ("r2-r3", "02:00:00:00:02:04", link_address(129))], R2)
    r3 = Router("r3", "peer", [("r3-r2", "02:00:00:00:03:02", link_address(130)),
                               ("peerb", PEER_TO_B_MAC, f"{B_EDGE}/28")], R3)
    labelled = "ipv4 labeled-unicast"
    run_all([(r1, {"ospfd": ospf(R1, {"vec1": 10, "vec2": 100}, ["vec0"]), "ldpd": ldp(R1, ["vec1", "vec2"]),
                   "bgpd": bgp(R1, R3, labelled, customer(A_PEER, 65001))}),
             (r2, {"ospfd": ospf(R2, {"vec0": 10, "vec1": 100, "vec2": 10}),
                   "ldpd": ldp(R2, ["vec0", "vec1", "vec2"])}),
             (r3, {"ospfd": ospf(R3, {"vec0": 10}), "ldpd": ldp(R3, ["vec0"]),
                   "bgpd": bgp(R3, R1, labelled, customer(B_PEER, 65002))})])
    return r1, r2, r3


class Routers:
    """The three with the card, and what happens to them while TCP flows from A to B and back."""

    def __init__(self, softcard):
        build()
        self.card = start_card(softcard, "control-plane", PORTS)
        self.customers = (Customer("a", A_PEER, 65001, A_EDGE, A_NETWORK),
                          Customer("b", B_PEER, 65002, B_EDGE, B_NETWORK))
        self.r1, self.r2, self.r3 = start_routers()

    def agreed(self, link=FIRST_LINK):
        """Waits until packets to B get two labels and leave by this link, and all say the same; gives these labels, and
        the one of packets to A."""
        def wanted(said):
            return to_b(said).count("/") == 1 and to_b(said).endswith(f" to {link}") and f"to {A_PEER}" in to_a(said)

        def to_b(said):
            return said.get((0, B_NETWORK), "")

        def to_a(said):
            return {way: what for what, way in said.items() if isinstance(what, int)}

        said = agree(self.card, self.r1.frr, VRFS, wanted)
        return [int(label) for label in to_b(said).split()[1].split("/")], to_a(said)[f"to {A_PEER}"]

    @staticmethod
    def expected(chosen):
        """What is to be seen of these labels."""
        stack, back = chosen
        ways = [FROM_A, out("eth2", [(label, 255) for label in stack]), stretch("eth2", "in", "A", 63, [(back, 255)]),
                stretch("eth1", "out", "A", 63)]
        return [seen for way in of_ipv4(ways) for seen in way]

    def under_tcp(self, *events, unharmed=()):
        """What a flow has to tell of events, each of which gives what it has to tell. On paths that are unharmed not a
        ping may be lost, to B, to R2's loopback and back, or from A to B only."""
        heard = echo_requests()
        flow, pings = LastingFlow(B_V4, FLOW_SECONDS), {TO_B: LastingPings(B_V4), TO_R2: LastingPings(R2, A_PEER)}
        told = [event() for event in events]
        told.append(told_of(flow.end()))
        counted = {path: each.end() for path, each in pings.items()}
        sent, lost = counted[TO_B]
        counted[ONLY_TO_B] = sent, sent - (echo_requests() - heard)
        harmed = [f"{counted[path][1]} of {counted[path][0]} pings {path} were lost" for path in unharmed
                  if counted[path][1]]
        if harmed:
            raise Failure(f"{', '.join(harmed)}: {', '.join(told)}")
        whole = [f"none of {counted[path][0]} pings {path} lost" for path in unharmed]
        return "; ".join([", ".join(told[:-1]), f"packets were away for {PING_SECONDS * lost:.1f} s", *whole, told[-1]])

    def link_down(self):
        """The first link is silent: nobody tells the routers, who have to notice."""
        ip("card", "link set eth2 down")
        return self.timed("agreed on the other link", lambda: self.agreed(SECOND_LINK))

    def link_up(self):
        ip("card", "link set eth2 up")
        return self.timed("agreed on the first again", self.agreed)

    def restart_ospf(self):
        """The card's OSPF has told its neighbours that it comes back, and to zebra that its routes are to stay."""
        return self.timed("as before", self.prepare, lambda: self.r1.frr.restart("ospfd"), self.ospf_is_back)

    def restart_frr(self):
        return self.timed("all was told again", self.prepare, self.r1.frr.restart, self.ospf_is_back)

    def restart_own_ldp(self):
        return self.timed("labels again", lambda: self.r1.frr.restart("ldpd"), self.agreed_at_last)

    def restart_ldp(self):
        """The neighbour's labels go and come."""
        return self.timed("labels again", lambda: self.r2.frr.restart("ldpd"), self.agreed)

    def prepare(self):
        self.r1.frr.show("graceful-restart prepare ip ospf")

    def ospf_is_back(self):
        wait_for(lambda: self.r1.frr.show("show ip ospf neighbor").count("Full/") == 2, "OSPF's neighbours", FLOW_SECONDS,
                 LOOK_SECONDS)
        wait_for(lambda: "graceful restart" not in self.r1.frr.show("show ip ospf"), "the end of OSPF's restart",
                 FLOW_SECONDS, LOOK_SECONDS)
        self.agreed_at_last()

    def agreed_at_last(self):
        """Waits until all is as before and nothing more is told."""
        self.agreed()
        told = [None]

        def nothing_more():
            told.append(self.card.rows("show control-plane")[0]["messages"])
            return told[-2] == told[-1]

        wait_for(nothing_more, "FRR's last word", FLOW_SECONDS, QUIET_SECONDS)
        self.agreed()

    def change_label(self):
        """B's network goes and comes back after another one, which gets its label."""
        before = self.agreed()
        self.customers[1].announce("no network 198.51.100.0/24", "network 198.51.103.0/24")
        wait_for(lambda: (0, "198.51.103.0/24") in said_by_frr(self.r1.frr, VRFS), "the other network's label")
        self.customers[1].announce("network 198.51.100.0/24")
        told = self.timed("the network was away", self.agreed)
        after = self.agreed()
        if before == after:
            raise Failure(f"the labels are still {after}")
        return f"{told}, {before[0]} became {after[0]}"

    @staticmethod
    def timed(what, *steps):
        begin = time.monotonic()
        for step in steps:
            step()
        return f"{what} after {time.monotonic() - begin:.1f} s"

    def stop(self):
        for each in (self.r1, self.r2, self.r3, self.card, *self.customers):
            each.stop()


NAMES = ("labels that LDP and BGP chose", "a link goes down and comes back under TCP",
         "OSPF restarts gracefully under TCP", "LDP restarts under TCP", "FRR is killed and restarts under TCP",
         "the neighbour's LDP restarts under TCP", "a label changes under TCP", "labels after all that")


def run_cases(report, softcard):
    routers = Routers(softcard)
    chosen, link, ospf_restart, own_ldp_restart, restart, ldp_restart, change, after = NAMES

    def exchanged():
        return exchange(ToB, None, None)

    Echo()
    try:
        routers.agreed()
        report.case(chosen, exchanged, routers.agreed, routers.expected, ToB.to)
        for name, unharmed, *events in (
                (link, (), routers.link_down, routers.link_up),
                (ospf_restart, (TO_B, TO_R2), routers.restart_ospf),
                (own_ldp_restart, (TO_R2,), routers.restart_own_ldp),
                (restart, (TO_R2, ONLY_TO_B), routers.restart_frr),
                (ldp_restart, (TO_R2,), routers.restart_ldp),
                (change, (TO_R2,), routers.change_label)):
            report.case(name, lambda: routers.under_tcp(*events, unharmed=unharmed))
        report.case(after, exchanged, routers.agreed, routers.expected, ToB.to)
    finally:
        routers.stop()
