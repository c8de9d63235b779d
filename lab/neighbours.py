"""Neighbours that nobody has told beforehand: host A asks for its gateway, which the route processor's side of the card's
port is, and that side asks for host A."""
import dataclasses
import re

from cases import CASES
from namespaces import Failure, ip, run
from topology import A_MAC, A_V4, A_V6, CARD_TO_A, GATEWAYS_OF_A


def learn(card):
    """What is asked for is then known for good, so that no case asks again."""
    for gateway in GATEWAYS_OF_A:
        ip("a", f"neigh del {gateway} dev a0")
        mac = learnt("a", "a0", gateway)
        ip("a", f"neigh replace {gateway} lladdr {CARD_TO_A} dev a0 nud permanent")
        if mac != CARD_TO_A:
            raise Failure(f"A has learnt that {gateway} is {mac}")
    macs = {learnt("processor", "cpu1", address) for address in (A_V4, A_V6)}
    if macs != {A_MAC}:
        raise Failure(f"the processor's side has learnt {macs} of A")
    card.ask(f"install-host 11 vlan=10 lim=eth1 mac={macs.pop()}", "route 1 192.0.2.0/24 11",
             "route 1 2001:db8:a::/64 11")


def learnt(namespace, interface, address):
    """The MAC address that the namespace has found out; asks by a packet, which need not come back."""
    run("ping", "-q", "-n", "-c", 1, "-W", "0.3", address, namespace=namespace, may_fail=True)
    known = re.search(r"lladdr (\S+)", run("ip", "neigh", "show", address, "dev", interface, namespace=namespace))
    return known[1] if known else None


NEIGHBOURS = [dataclasses.replace(next(case for case in CASES if case.name == "push of one label"),
                                  name="neighbours by the processor's side", scenario="scenarios/neighbours",
                                  hosts=("eth1",), prepare=learn)]
