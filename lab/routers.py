"""Routers of the control-plane lab: each a guest with FRR. One of them is the card's route processor."""
import concurrent.futures
import pathlib

from card import Card
from frr import Frr
from guest import Guest
from namespaces import add_namespace, ip, link
from topology import CARD_TO_A, CARD_TO_PEER, LINK_MTU

FPM_ADDRESS, PROCESSOR_ADDRESS = "10.255.0.1", "10.255.0.2"  # of the card and of its route processor, for the FPM
PORTS = ("eth1", "eth2", "eth3", "eth4")
FPM_INTERFACE = 2 + len(PORTS)  # the processor's number of it, after its loopback and the ports
MEGABYTES = 128
QUIET = 10  # seconds after which the card forgets what a new FPM has not told again
SCENARIOS = pathlib.Path(__file__).with_name("scenarios")
AS = 65000
GRACE = 60  # seconds that OSPF's neighbours wait for one that has told them of its restart


def mac_of(port):
    """The router's, on a port: what its processor has there and what the card answers to are the same."""
    return CARD_TO_A if port == "eth1" else CARD_TO_PEER


def twin(port):
    """The port's interface on the route processor's side, of the card."""
    return f"{port}-host"


def build_processor(ports):
    """The namespace of the card's route processor, and the links between both."""
    add_namespace("router")
    for port in ports:
        link(("card", twin(port)), ("router", port), LINK_MTU)
    link(("card", "fpm"), ("router", "fpm"), LINK_MTU)
    ip("card", f"addr add {FPM_ADDRESS}/24 dev fpm")


def start_card(softcard, scenario, ports):
    """The card with its control plane's ports, before anybody tells it anything."""
    hosts = [word for port in ports for word in ("--host", f"{port}={twin(port)}")]
    return Card(softcard, SCENARIOS / f"{scenario}.scn",
                options=[*hosts, "--fpm", f"{FPM_ADDRESS}:2620", "--fpm-quiet", QUIET])


class Router:
    """A guest with FRR. Its interfaces vec0, vec1 and so on are each (the namespace's interface, MAC, addresses...)."""

    def __init__(self, name, namespace, interfaces, loopback=None, vrfs=None):
        """`vrfs` are those of interfaces, by their number; their routing tables are 10, 20 and so on."""
        self.name = name
        self.interfaces = interfaces
        self.loopback = loopback
        self.vrfs = vrfs or {}
        self.guest = Guest(name, namespace, [(interface, mac, LINK_MTU) for interface, mac, *_ in interfaces],
                           MEGABYTES)

    def run(self, daemons, fpm=None, objects=True):
        """Waits until it is up, gives it its addresses and starts zebra, and daemons with the lines of their start-up
        files."""
        self.guest.booted()
        lines = [f"addr add {self.loopback}/32 dev lo"] if self.loopback else []
        for number, vrf in enumerate(self.vrfs.values(), 1):
            lines += [f"link add {vrf} type vrf table {10 * number}", f"link set {vrf} up"]
        for number, (_, _, *addresses) in enumerate(self.interfaces):
            self.guest.tell(f"echo 1 >/proc/sys/net/mpls/conf/vec{number}/input")
            if number in self.vrfs:
                lines.append(f"link set vec{number} master {self.vrfs[number]}")
            lines.append(f"link set vec{number} up")
            lines += [f"addr add {address} dev vec{number}{' nodad' if ':' in address else ''}"
                      for address in addresses]
        self.guest.ip(lines)
        self.frr = Frr(self.guest, fpm, objects)
        for daemon, settings in daemons.items():
            self.frr.start(daemon, settings=settings)

    def resolve(self, *addresses):
        """Neighbours are learnt from who asks for them: routes alone ask for nobody."""
        for address in addresses:
            self.guest.tell(f"ping -q -c 1 -W 2 {address}")

    def stop(self):
        self.guest.stop()


def processor(ports, addresses, **more):
    """The card's route processor: for each of the ports an interface with these addresses."""
    return Router("processor", "router", [(port, mac_of(port), *addresses.get(port, ())) for port in ports] +
                  [("fpm", "02:00:00:00:0f:02", f"{PROCESSOR_ADDRESS}/24")], **more)


def run_all(routers):
    """Runs routers at the same time: (router, its daemons), the first with an FPM."""
    with concurrent.futures.ThreadPoolExecutor() as pool:
        started = [pool.submit(router.run, daemons, None if at else FPM_ADDRESS)
                   for at, (router, daemons) in enumerate(routers)]
        for each in started:
            each.result()


def ospf(loopback, costs, edges=()):
    """`costs` are those of the interfaces to other routers; `edges` are interfaces whose networks others are to know. The
    timers have routers say and believe things at once. Whoever restarts gracefully is helped by its neighbours, who do
    not mind that one of two links between them is back before the other."""
    lines = []
    for interface, cost in costs.items():
        lines += [f"interface {interface}", f"ip ospf cost {cost}", "ip ospf network point-to-point",
                  "ip ospf hello-interval 1", "ip ospf dead-interval 4", "ip ospf area 0"]
    for interface in edges:
        lines += [f"interface {interface}", "ip ospf passive", "ip ospf area 0"]
    return [*lines, "interface lo", "ip ospf area 0", "router ospf", f"ospf router-id {loopback}",
            "timers throttle spf 0 50 200", "timers throttle lsa all 0", "timers lsa min-arrival 0",
            "capability opaque", f"graceful-restart grace-period {GRACE}", "graceful-restart helper enable",
            "no graceful-restart helper strict-lsa-checking"]


def ldp(loopback, interfaces):
    return ["mpls ldp", f"router-id {loopback}", "discovery hello interval 1", "address-family ipv4", f"discovery transport-address {loopback}",
            *(f"interface {interface}" for interface in interfaces)]


def bgp(loopback, other, family, lines):
    """BGP between the loopbacks of two routers, for an address family; `lines` are what else it is to do."""
    return [f"router bgp {AS}", f"bgp router-id {loopback}", "no bgp default ipv4-unicast",
            "no bgp ebgp-requires-policy", f"neighbor {other} remote-as {AS}", f"neighbor {other} update-source lo",
            f"neighbor {other} timers connect 1", f"address-family {family}", f"neighbor {other} activate",
            f"neighbor {other} next-hop-self", "exit-address-family", "exit", *lines]
