"""Who is where, and what they are called; the picture is in docs/lab.md."""
from namespaces import add_namespace, ip, link

HOST_MTU, LINK_MTU = 1500, 1600  # links that carry labels take more than a host sends

A_MAC, B_MAC = "02:00:00:00:00:0a", "02:00:00:00:00:0b"
A_V4, A_V6 = "192.0.2.1", "2001:db8:a::1"
B_V4, B_V6 = "198.51.100.1", "2001:db8:b::1"
# More addresses of B, as a LAG tells flows apart by addresses.
MORE_OF_B = ("198.51.100.2", "198.51.100.3", "2001:db8:b::2", "2001:db8:b::3")
# Where a virtual circuit makes one network of both: further addresses of A and of B.
BRIDGED_A_V4, BRIDGED_A_V6 = "198.18.0.1", "2001:db8:c::1"
BRIDGED_B_V4, BRIDGED_B_V6 = "198.18.0.2", "2001:db8:c::2"
GATEWAYS_OF_A = "192.0.2.254", "2001:db8:a::fe"
CARD_TO_A, CARD_TO_PEER = "00:00:5e:00:01:01", "00:00:5e:00:01:02"
# The switch's ends of the links to the card, by the card's ports, and of the one to B.
PEER_LINKS = {"eth2": "peer2", "eth3": "peer3", "eth4": "peer4"}
PEER_TO_B = "peerb"
NATIVE_VLANS = {"eth1": 101, "eth2": 102, "eth3": 102, "eth4": 102}  # of the card's ports
PEER_MAC, PEER_TO_B_MAC = "02:00:00:00:02:02", "02:00:00:00:02:0b"


def of_version(version, labels):
    """The labels, the outermost first, of a packet of this IP version. Below the last one nothing tells the version but
    the packet's first bits, which flows of a switch cannot see: so IPv6 has a last label of its own, 1,000 higher."""
    *above, bottom = labels
    return [*above, bottom + (1000 if version == 6 else 0)]


def version_of(address):
    return 6 if ":" in address else 4


def build():
    for name in ("a", "card", "processor", "peer", "b"):
        add_namespace(name)
    link(("a", "a0"), ("card", "eth1"), LINK_MTU)
    for port, interface in PEER_LINKS.items():
        link(("card", port), ("peer", interface), LINK_MTU)
    link(("peer", PEER_TO_B), ("b", "b0"), LINK_MTU)
    # The route processor's side of eth1.
    link(("card", "host1"), ("processor", "cpu1"), LINK_MTU)
    ip("processor", "link set cpu1 down", f"link set cpu1 address {CARD_TO_A}", "link set cpu1 up",
       f"addr add {GATEWAYS_OF_A[0]}/24 dev cpu1", f"addr add {GATEWAYS_OF_A[1]}/64 dev cpu1 nodad")
    host("a", "a0", A_MAC, A_V4, A_V6, *GATEWAYS_OF_A, CARD_TO_A)
    host("b", "b0", B_MAC, B_V4, B_V6, "198.51.100.254", "2001:db8:b::fe", PEER_TO_B_MAC)
    ip("b", *(f"addr add {address}/{64 if version_of(address) == 6 else 24} dev b0" for address in MORE_OF_B))
    bridged("a", "a0", BRIDGED_A_V4, BRIDGED_A_V6, BRIDGED_B_V4, BRIDGED_B_V6, B_MAC)
    bridged("b", "b0", BRIDGED_B_V4, BRIDGED_B_V6, BRIDGED_A_V4, BRIDGED_A_V6, A_MAC)


def host(namespace, interface, mac, v4, v6, gateway_v4, gateway_v6, gateway_mac):
    """A host whose every packet to elsewhere goes to one gateway, whose address is known beforehand."""
    ip(namespace, f"link set {interface} down", f"link set {interface} address {mac} mtu {HOST_MTU}",
       f"link set {interface} up", f"addr add {v4}/24 dev {interface}", f"addr add {v6}/64 dev {interface} nodad",
       f"neigh add {gateway_v4} lladdr {gateway_mac} dev {interface}",
       f"neigh add {gateway_v6} lladdr {gateway_mac} dev {interface}",
       f"route add default via {gateway_v4}", f"route add default via {gateway_v6} dev {interface}")


def bridged(namespace, interface, v4, v6, other_v4, other_v6, other_mac):
    ip(namespace, f"addr add {v4}/24 dev {interface}", f"addr add {v6}/64 dev {interface} nodad",
       f"neigh add {other_v4} lladdr {other_mac} dev {interface}",
       f"neigh add {other_v6} lladdr {other_mac} dev {interface}")
