"""Open vSwitch that can be asked for its addresses, as routers have to be."""
from namespaces import ip, write_setting
from openvswitch import PORTS, OpenVSwitch
from topology import CARD_TO_PEER, PEER_LINKS, PEER_MAC


def of_switch(port):
    """Its addresses on a link to the card."""
    number = int(port.removeprefix("eth"))
    return f"203.0.113.{16 * number + 1}", f"2001:db8:{number}::1"


def of_card(port):
    """The card's addresses on such a link."""
    number = int(port.removeprefix("eth"))
    return f"203.0.113.{16 * number + 14}", f"2001:db8:{number}::fe"


class Neighbour(OpenVSwitch):
    """Whatever asks it for something goes to the machine's kernel, through the bridge's own interface; whatever else it
    does is flows."""

    def __init__(self):
        super().__init__()
        self.vsctl("set", "bridge", "br0", f'other-config:hwaddr="{PEER_MAC}"')
        ip("peer", "link set br0 up")
        for port in PORTS:
            write_setting("peer", f"ipv4/conf/{PEER_LINKS[port]}/arp_ignore", 8)  # the bridge's own interface answers
            own_v4, own_v6 = of_switch(port)
            ip("peer", f"addr add {own_v4}/28 dev br0", f"addr add {own_v6}/64 dev br0 nodad",
               *(f"neigh add {address} lladdr {CARD_TO_PEER} dev br0" for address in of_card(port)))

    def clear(self):
        super().clear()
        for port, number in PORTS.items():
            (own_v4, own_v6), (card_v4, card_v6) = of_switch(port), of_card(port)
            for asked in ("arp", "icmp6,icmp_type=135", f"ip,nw_dst={own_v4}", f"ipv6,ipv6_dst={own_v6}"):
                self.flow(f"priority=40000,in_port={number},{asked}", "output:LOCAL")
            for answered in (f"arp,arp_tpa={card_v4}", f"ip,nw_dst={card_v4}", f"ipv6,ipv6_dst={card_v6}"):
                self.flow(f"priority=40000,in_port=LOCAL,{answered}", f"output:{number}")
