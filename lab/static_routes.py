"""Static routes with labels and static label-switched paths: what is typed into FRR's shell has to be on the wire."""
import dataclasses
import time

import topology
from agreement import agree
from captures import stretch
from cases import BACK_PLAIN, FROM_A, Case, hairpin, out, paths
from changes import of_ipv4, told_of
from namespaces import Failure, wait_for
from neighbour import Neighbour, of_card, of_switch
from routers import FPM_ADDRESS, FPM_INTERFACE, PORTS, QUIET, build_processor, processor, start_card
from topology import A_V4, A_V6, B_V4, PEER_LINKS
from traffic import Echo, LastingFlow, exchange

NETWORKS = {4: "198.51.100.0/24", 6: "2001:db8:b::/64"}  # of B
VRFS = {"default": 0}  # the card's, by FRR's names
TO_A = [f"mpls lsp 500 {A_V4} implicit-null"]
CHANGES = [110, 120, 130, 100] * 2  # of a route's label
DAEMONS = {"staticd": [], "pathd": []}


@dataclasses.dataclass
class StaticCase(Case):
    lines: tuple = ()  # for FRR
    undo: tuple = ()  # for FRR afterwards; without them, the lines with "no" before them


def to_b(port, *labels):
    """Routes to B, the outermost label first. IPv6 has a last one of its own."""
    lines = []
    for version, command, gateway in zip((4, 6), ("ip", "ipv6"), of_switch(port)):
        stack = "/".join(map(str, topology.of_version(version, labels))) if labels else ""
        lines.append(f"{command} route {NETWORKS[version]} {gateway}{' label ' + stack if labels else ''}")
    return lines


def swap(label, port, new):
    """A path for each IP version."""
    return [f"mpls lsp {label + more} {of_switch(port)[0]} {new + more if isinstance(new, int) else new}"
            for more in (0, 1000)]


def policy(label, first, second):
    """Lines for and against a path that swaps a label for two: a policy that the label stands for. Its first segment
    leads the way."""
    begin, name = ["segment-routing", "traffic-eng"], f"segment-list to-{label}"
    policy_name = f"policy color {label} endpoint 203.0.113.65"
    return ([*begin, name, f"index 10 mpls label {first}", f"index 20 mpls label {second}", "exit", policy_name,
             f"binding-sid {label}", f"candidate-path preference 100 name one explicit {name}", "exit", "exit", "exit"],
            [*begin, f"no {policy_name}", f"no {name}", "exit", "exit"])


def case(name, lines, switch, seen, **more):
    return StaticCase(name, "", switch, seen, lines=lines, **more)


def without(lines):
    return [f"no {line}" for line in reversed(lines)]


# Where a label is popped and the packet handed to a next hop, nobody looks at its own TTL.
POPPED = [stretch("eth2", "in", "A", 63, [(500, 255)]), stretch("eth1", "out", "A", 63)]
LOOP = [FROM_A, out("eth2", [(16, 255)]), stretch("eth3", "in", "B", 63, [(17, 254)])]
WITH_SEGMENTS = to_b("eth2", 16) + [f"mpls lsp 300 {of_switch('eth4')[0]} 300"] + TO_A
POLICIES = [policy(17 + more, 300, 18 + more) for more in (0, 1000)]

CASES = [
    case("plain routes", to_b("eth2"), paths(("to_b", "eth2"), ("to_a", "eth2")), [FROM_A, out("eth2"), *BACK_PLAIN]),
    case("routes with one label", to_b("eth2", 100) + TO_A, paths(("to_b", "eth2", [100]), ("to_a", "eth2", [500])),
         [FROM_A, out("eth2", [(100, 255)]), *POPPED]),
    case("routes with two labels", to_b("eth2", 200, 100) + TO_A,
         paths(("to_b", "eth2", [200, 100]), ("to_a", "eth2", [500])),
         [FROM_A, out("eth2", [(200, 255), (100, 255)]), *POPPED]),
    case("a path swaps its label", to_b("eth2", 16) + swap(17, "eth4", 18) + TO_A, lambda switch: hairpin(switch, [18]),
         [*LOOP, out("eth4", [(18, 253)]), *POPPED]),
    case("a path gives its label up", to_b("eth2", 16) + swap(17, "eth4", "implicit-null") + TO_A,
         lambda switch: hairpin(switch, []), [*LOOP, out("eth4"), *POPPED]),
    case("a path swaps its label for explicit null", [*to_b("eth2", 16), *swap(17, "eth4", "explicit-null")[:1], *TO_A],
         lambda switch: hairpin(switch, [0]), of_ipv4([*LOOP, out("eth4", [(0, 253)]), *POPPED]), to=(B_V4,)),
    case("a path swaps its label for two", WITH_SEGMENTS + [line for lines, _ in POLICIES for line in lines],
         lambda switch: hairpin(switch, [300, 18]), [*LOOP, out("eth4", [(300, 255), (18, 253)]), *POPPED],
         undo=[line for _, lines in POLICIES for line in lines] + without(WITH_SEGMENTS)),
    case("routes that hold their next hops", ["no fpm use-next-hop-groups", *to_b("eth2", 100), *TO_A],
         paths(("to_b", "eth2", [100]), ("to_a", "eth2", [500])), [FROM_A, out("eth2", [(100, 255)]), *POPPED],
         undo=[*without(to_b("eth2", 100) + TO_A), "fpm use-next-hop-groups"]),
]

CHANGING = case("labels change under TCP", to_b("eth2", 100) + TO_A,
                paths(*(("to_b", "eth2", [label]) for label in sorted(set(CHANGES))), ("to_a", "eth2", [500])),
                of_ipv4([FROM_A, *(out("eth2", [(label, 255)]) for label in sorted(set(CHANGES))), *POPPED]),
                to=(B_V4,))


RESTARTING = dataclasses.replace(CASES[1], name="FRR is killed and restarts under TCP", to=(B_V4,),
                                 seen=of_ipv4(CASES[1].seen))


# What the chip cannot do, and what `show unresolved` says of it.
UNRESOLVED = {
    "route 198.51.101.0/24": ([f"ip route 198.51.101.0/24 {of_switch('eth2')[0]} label 300/200/100"], "3 labels"),
    "route 198.51.102.0/24": ([f"ip route 198.51.102.0/24 {of_switch(port)[0]}" for port in ("eth2", "eth3")],
                              "2 equal paths"),
    "label 600": ([f"mpls lsp 600 {of_switch(port)[0]} 601" for port in ("eth2", "eth3")], "2 equal paths"),
}

CANNOT, NOTICES, NOTHING_LEFT = "what the chip cannot do is told", "notices what FRR has not said", "nothing is left"
NAMES = [each.name for each in (*CASES, CHANGING, RESTARTING)] + [CANNOT, NOTICES, NOTHING_LEFT]


def run_cases(report, softcard):
    topology.build()
    build_processor(PORTS)
    switch = Neighbour()
    card = start_card(softcard, "control-plane", PORTS)
    router = processor(PORTS, {"eth1": ("192.0.2.254/24", "2001:db8:a::fe/64")} |
                       {port: [f"{v4}/28", f"{v6}/64"] for port in PEER_LINKS for v4, v6 in [of_card(port)]})
    router.run(DAEMONS, FPM_ADDRESS)
    Echo()
    switch.clear()
    switch.ready()
    wait_for(lambda: card.rows("show routes"), "the first route")
    router.resolve(A_V4, A_V6, *(address for port in PEER_LINKS for address in of_switch(port)))
    try:
        for each in CASES:
            run_case(report, each, router.frr, card, switch, lambda: exchange(each, card, switch))
        run_case(report, CHANGING, router.frr, card, switch, lambda: change(router.frr, card))
        run_case(report, RESTARTING, router.frr, card, switch, lambda: restart(router.frr, card))
        report.case(CANNOT, lambda: tell_what_cannot_be(router.frr, card))
        report.case(NOTICES, lambda: notice(router.frr, card))
        report.case(NOTHING_LEFT, lambda: nothing_left(card, router.frr))
    finally:
        router.stop()
        card.stop()
        switch.stop()


def run_case(report, case, frr, card, switch, do):
    if not report.wants(case.name):
        return
    switch.clear()
    case.switch(switch)
    switch.ready()
    frr.configure(*case.lines)
    report.case(case.name, do, lambda: agree(card, frr, VRFS, lambda said: (0, NETWORKS[4]) in said),
                lambda _: case.expected, case.to)
    frr.configure(*(case.undo or without(case.lines)))


def change(frr, card):
    """The route to B gets other labels in turn; not a packet may be lost."""
    flow = LastingFlow(B_V4)
    begin = time.monotonic()
    for label in CHANGES:
        frr.configure(to_b("eth2", label)[0])
    seconds = time.monotonic() - begin
    agree(card, frr, VRFS)
    return f"{len(CHANGES)} changes in {seconds:.1f} s, {told_of(flow.end())}"


def restart(frr, card):
    """The card goes on as it was told before until it is told again; not a packet may be lost."""
    flow = LastingFlow(B_V4)
    begin = time.monotonic()
    frr.restart()
    frr.configure(*RESTARTING.lines)  # its start-up file cannot have labels
    agree(card, frr, VRFS, lambda said: (0, NETWORKS[4]) in said)
    swept = card.rows("show control-plane")[0]["sweeps"]
    wait_for(lambda: card.rows("show control-plane")[0]["sweeps"] > swept, "the sweep of what was not told again",
             2 * QUIET)
    return f"all was told again and the rest swept after {time.monotonic() - begin:.1f} s, {told_of(flow.end())}"


def tell_what_cannot_be(frr, card):
    """Each is told with its reason, and no longer when it is gone."""
    lines = [line for lines, _ in UNRESOLVED.values() for line in lines]
    frr.configure(*lines)
    wait_for(lambda: len(unresolved(card)) == len(UNRESOLVED), "all that cannot be")
    told = unresolved(card)
    wrong = [what for what, (_, reason) in UNRESOLVED.items() if reason not in told.get(what, "")]
    if wrong:
        raise Failure(f"of {wrong} the reasons are not told: {told}")
    frr.configure(*without(lines))
    wait_for(lambda: not unresolved(card), "the end of what cannot be")
    return ", ".join(f"{what}: {reason}" for what, reason in told.items())


def unresolved(card):
    """The reasons, but for the link to the FPM, which is none of the card's: its network is told, and so is the network
    of all links' own addresses, on whichever interface zebra chose last."""
    return {row["what"]: row["reason"] for row in card.rows("show unresolved")
            if row["reason"] != f"no statement says what interface {FPM_INTERFACE} is on the card"}


def notice(frr, card):
    """A label that somebody else has put on the card is found, so that what is never found would be noticed."""
    card.ask("label 700 pop 0")
    try:
        agree(card, frr, VRFS, seconds=1)
    except Failure as failure:
        if "700: FRR says nothing, the card has VRF 0" not in str(failure):
            raise
    else:
        raise Failure("nobody has noticed label 700")
    finally:
        card.ask("no-label 700")
    return "label 700"


def nothing_left(card, frr):
    """What FRR has taken back is no longer on the card, and what is there belongs to somebody."""
    agree(card, frr, VRFS, lambda said: not said)
    if unresolved(card):
        raise Failure(f"unresolved: {unresolved(card)}")
    found = card.ask("audit")
    if "findings: none" not in found:
        raise Failure(found)
    return "no route, no label, nothing that belongs to nobody"
