"""Cases in which something changes while TCP flows."""
import time

from captures import stretch
from cases import FROM_A, TO_A_PLAIN, Case, out, paths
from namespaces import Failure
from topology import B_V4, PEER_MAC
from traffic import LastingFlow

MOVES = 100
# Where the tunnel goes in turn: port and label.
WAYS = [("eth2", 100), ("eth3", 110), ("eth4", 120), ("eth3", 130)]


def move_tunnel(case, card, switch):
    """The tunnel moves to other labels and another port again and again."""
    flow = LastingFlow(B_V4)
    begin = time.monotonic()
    for move in range(1, MOVES + 1):
        port, label = WAYS[move % len(WAYS)]
        answer = card.ask(f"replace-mpls 30 vlan=20 lim={port} mac={PEER_MAC} labels={label} caps=push")
        if "=> 0" not in answer:
            raise Failure(f"move {move}: {answer}")
    seconds = time.monotonic() - begin
    return f"{MOVES} moves in {seconds:.1f} s, {told_of(flow.end())}"


def restart_switch(case, card, switch):
    flow = LastingFlow(B_V4)
    begin = time.monotonic()
    switch.restart()
    seconds = time.monotonic() - begin
    return f"it was away for {seconds:.1f} s, {told_of(flow.end())}"


def told_of(flow):
    return (f"{flow['bytes'] / (1 << 20):.1f} MB of TCP each way, {flow['retransmits']} packets sent again, "
            f"longest silence {1000 * flow['longest_silence']:.0f} ms")


def of_ipv4(stretches):
    return [[seen for seen in seen_on_it if seen.version == 4] for seen_on_it in stretches]


CHANGES = [
    Case("a tunnel moves under TCP", "scenarios/push-one", paths(*(("to_b", port, [label]) for port, label in WAYS),
                                                                 ("to_a", "eth2", [500])),
         of_ipv4([FROM_A, *(out(port, [(label, 255)]) for port, label in WAYS),
                  stretch("eth2", "in", "A", 63, [(500, 255)]), TO_A_PLAIN]), to=(B_V4,), traffic=move_tunnel),
    Case("the switch restarts under TCP", "scenarios/push-one", paths(("to_b", "eth2", [100]), ("to_a", "eth2", [500])),
         of_ipv4([FROM_A, out("eth2", [(100, 255)]), stretch("eth2", "in", "A", 63, [(500, 255)]), TO_A_PLAIN]),
         to=(B_V4,), traffic=restart_switch),
]
