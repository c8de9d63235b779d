"""A Linux kernel with MPLS as the foreign switch: a guest whose interfaces are the switch's ends of the links."""
from guest import Guest
from topology import (B_MAC, B_V4, B_V6, CARD_TO_PEER, LINK_MTU, MORE_OF_B, PEER_LINKS, PEER_MAC, PEER_TO_B,
                      PEER_TO_B_MAC, of_version)

# Addresses of the guest and of the card on each link; only their MACs are seen on the wire.
LINKS = {"eth2": ("vec0", 2), "eth3": ("vec1", 3), "eth4": ("vec2", 4)}
TO_B = "vec3"
A_NETWORK_V4, A_NETWORK_V6 = "192.0.2.0/24", "2001:db8:a::/64"


class MplsKernel:
    name, short_name = "Linux MPLS kernel", "kernel"
    ends_pseudowires = takes_tags = False

    def __init__(self):
        self.boot()

    def boot(self):
        interfaces = [(name, PEER_MAC) for name in PEER_LINKS.values()] + [(PEER_TO_B, PEER_TO_B_MAC)]
        self.guest = Guest("guest", "peer", [(name, mac, LINK_MTU) for name, mac in interfaces]).booted()
        setup = []
        for port, (device, number) in LINKS.items():
            setup += [f"link set {device} up", f"addr add 203.0.113.{16 * number + 1}/28 dev {device}",
                      f"addr add 2001:db8:{number}::1/64 dev {device} nodad",
                      f"neigh add {self.card_v4(port)} lladdr {CARD_TO_PEER} dev {device}",
                      f"neigh add {self.card_v6(port)} lladdr {CARD_TO_PEER} dev {device}"]
            self.guest.tell(f"echo 1 >/proc/sys/net/mpls/conf/{device}/input")
        setup += [f"link set {TO_B} up", f"addr add 198.51.100.254/24 dev {TO_B}",
                  f"addr add 2001:db8:b::fe/64 dev {TO_B} nodad"]
        setup += [f"neigh add {address} lladdr {B_MAC} dev {TO_B}" for address in (B_V4, B_V6, *MORE_OF_B)]
        self.guest.ip(setup)
        self.routes = []

    @staticmethod
    def card_v4(port):
        return f"203.0.113.{16 * LINKS[port][1] + 14}"

    @staticmethod
    def card_v6(port):
        return f"2001:db8:{LINKS[port][1]}::fe"

    def clear(self):
        self.guest.tell("ip -f mpls route flush; ip route flush " + A_NETWORK_V4 + "; ip -6 route flush " + A_NETWORK_V6)
        self.routes = []

    def ready(self):
        self.guest.ip(self.routes)

    def to_b(self, port, labels=()):
        """What the card sends with exactly these labels, the outermost first, goes to B. Plain packets do anyway."""
        for version in (4, 6) if labels else ():
            *above, bottom = of_version(version, labels)
            via = f"via inet {B_V4}" if version == 4 else f"via inet6 {B_V6}"
            self.routes += [f"-f mpls route replace {label} dev lo" for label in above]
            self.routes.append(f"-f mpls route replace {bottom} {via} dev {TO_B}")

    def to_a(self, port, labels=()):
        """What B sends to A goes to the card's port under these labels."""
        encap = f"encap mpls {'/'.join(map(str, labels))} " if labels else ""
        device = LINKS[port][0]
        self.routes += [f"route replace {A_NETWORK_V4} {encap}via {self.card_v4(port)} dev {device}",
                        f"-6 route replace {A_NETWORK_V6} {encap}via {self.card_v6(port)} dev {device}"]

    def swap(self, port, label, new_label, new_port):
        """What the card sends with this label comes back to another port of it with the new one."""
        for version in (4, 6):
            (old,), (new,) = of_version(version, [label]), of_version(version, [new_label])
            self.swap_outer(port, old, new, new_port)

    def swap_outer(self, port, label, new_label, new_port):
        """The same where another label may lie below."""
        self.routes.append(f"-f mpls route replace {label} as {new_label} via inet {self.card_v4(new_port)} "
                           f"dev {LINKS[new_port][0]}")

    def story(self, port, frame):
        """What the kernel has counted where the frame came in."""
        return self.guest.tell(f"ip -s -f mpls link show dev {LINKS[port][0]}; ip -f mpls route")

    def restart(self):
        routes = self.routes
        self.stop()
        self.boot()
        self.routes = routes
        self.ready()

    def stop(self):
        self.guest.stop()
