"""The cases: what the card is asked for, what the switch has to do for it, and what is to be seen on the way."""
import dataclasses
import pathlib
import typing

from captures import Seen, stretch
from topology import B_V4, B_V6, BRIDGED_B_V4, BRIDGED_B_V6, MORE_OF_B
from traffic import exchange

FOLDER = pathlib.Path(__file__).parent


@dataclasses.dataclass
class Case:
    name: str
    scenario: str
    switch: typing.Callable  # sets the foreign switch up
    seen: typing.List[typing.List[Seen]]  # on each stretch
    to: tuple = (B_V4, B_V6)  # A's packets go
    pseudowires: tuple = ()  # labels with a frame below
    only: str = ""  # what a switch needs to have for this case
    hosts: tuple = ()  # ports whose other side is the route processor's
    prepare: typing.Callable = lambda card: None  # before anything is captured

    traffic: typing.Callable = exchange  # of the case, the card and the switch; gives what to tell
    bite: str = ""  # what has to be found wrong, a pattern

    @property
    def expected(self):
        return [seen for stretch_of_way in self.seen for seen in stretch_of_way]

    @property
    def path(self):
        return FOLDER / f"{self.scenario}.scn"


# A's packets begin with a TTL of 64, B's too; the switch takes one off as well.
FROM_A, TO_A_PLAIN = stretch("eth1", "in", "B", 64), stretch("eth1", "out", "A", 62)
BACK_PLAIN = [stretch("eth2", "in", "A", 63), TO_A_PLAIN]
BACK_LABEL = [stretch("eth2", "in", "A", 63, [(500, 255)]), TO_A_PLAIN]
BACK_LABELS = [stretch("eth2", "in", "A", 63, [(501, 255), (500, 255)]), TO_A_PLAIN]


def out(port, labels=(), **more):
    return stretch(port, "out", "B", 63, labels, **more)


def hairpin(switch, out_labels):
    """The switch sends back what the card sends with label 16, the card sends it on through eth4."""
    switch.swap("eth2", 16, 17, "eth3")
    switch.to_b("eth4", out_labels)
    switch.to_a("eth2", [500])


def outer_hairpin(switch):
    """The switch sends back what the card sends with label 200 above another, the card sends that one on."""
    switch.swap_outer("eth2", 200, 17, "eth3")
    switch.to_b("eth4", [16])
    switch.to_a("eth2", [500])


def paths(*ways):
    """A switch that does these: (its method, arguments...)."""
    return lambda switch: [getattr(switch, method)(*arguments) for method, *arguments in ways]


CASES = [
    Case("routed VLAN", "scenarios/routed-vlan", paths(("to_b", "eth2"), ("to_a", "eth2")),
         [FROM_A, out("eth2"), *BACK_PLAIN]),
    Case("push of one label", "scenarios/push-one", paths(("to_b", "eth2", [100]), ("to_a", "eth2")),
         [FROM_A, out("eth2", [(100, 255)]), *BACK_PLAIN]),
    Case("push of two labels", "scenarios/push-two", paths(("to_b", "eth2", [200, 100]), ("to_a", "eth2", [501, 500])),
         [FROM_A, out("eth2", [(200, 255), (100, 255)]), *BACK_LABELS]),
    Case("swap", "scenarios/swap", lambda switch: hairpin(switch, [18]),
         [FROM_A, out("eth2", [(16, 255)]), stretch("eth3", "in", "B", 63, [(17, 254)]), out("eth4", [(18, 253)]),
          *BACK_LABEL]),
    Case("swap into a tunnel", "scenarios/swap-into-tunnel", lambda switch: hairpin(switch, [300, 18]),
         [FROM_A, out("eth2", [(16, 255)]), stretch("eth3", "in", "B", 63, [(17, 254)]),
          out("eth4", [(300, 255), (18, 253)]), *BACK_LABEL]),
    Case("forward", "scenarios/forward", paths(("to_b", "eth2"), ("to_a", "eth2", [500])),
         [FROM_A, out("eth2"), *BACK_LABEL]),
    Case("forward of labels in labels", "scenarios/forward-labels", outer_hairpin,
         [FROM_A, out("eth2", [(200, 255), (16, 255)]), stretch("eth3", "in", "B", 63, [(17, 254), (16, 255)]),
          out("eth4", [(16, 253)]), *BACK_LABEL]),
    Case("push over a LAG", "scenarios/lag",
         paths(("to_b", "eth2", [100]), ("to_b", "eth3", [100]), ("to_a", "eth3", [500])),
         [FROM_A, out("eth2", [(100, 255)]), out("eth3", [(100, 255)]), stretch("eth3", "in", "A", 63, [(500, 255)]),
          TO_A_PLAIN], to=(B_V4, B_V6, *MORE_OF_B)),
    Case("tagged VLAN", "scenarios/tagged-vlan", paths(("to_b", "eth3", (), 200), ("to_a", "eth3", (), 200)),
         [FROM_A, out("eth3", vlan=200), stretch("eth3", "in", "A", 63, vlan=200), TO_A_PLAIN], only="takes_tags"),
    Case("VC label", "scenarios/virtual-circuit", paths(("end_pseudowire", "eth2", 700, 701)),
         [stretch("eth1", "in", "B", 64), stretch("eth2", "out", "B", 64, [(700, 255)], own_labels=False),
          stretch("eth2", "in", "A", 64, [(701, 255)]), stretch("eth1", "out", "A", 64)],
         to=(BRIDGED_B_V4, BRIDGED_B_V6), pseudowires=(700, 701), only="ends_pseudowires"),
]


def bite(name, scenario, pattern, of):
    """A case that a scenario spoils: it has to fail, and to say this."""
    return dataclasses.replace(next(case for case in CASES if case.name == of), name=f"notices {name}",
                               scenario=f"bites/{scenario}", bite=pattern)


BITES = [
    bite("a wrong label", "wrong-label", r"not to be seen: out through eth2 .* labels 101/S=1", "push of one label"),
    bite("a wrong order", "wrong-order", r"not to be seen: out through eth2 .* labels 100/S=0/TTL=255 200/S=1",
         "push of two labels"),
    bite("a wrong S bit", "wrong-bottom", r"not to be seen: out through eth2 .* labels 100/S=0/TTL=255 99/S=1",
         "push of one label"),
    bite("a TTL of 1", "last-hop", r"not to be seen: out through eth2 .* labels 16/S=1/TTL=1 ", "swap"),
    bite("a narrow MTU", "narrow", r"dropped: mtu: ", "push of two labels"),
]
