"""How many frames a second go from one interface to another: through the card, and through Open vSwitch's userspace
bridge, which does the same to them. They take turns, and each gets as many as one core can send."""
import os
import pathlib
import socket
import statistics
import struct
import time

from card import Card
from namespaces import add_namespace, link, packet_sockets, run
from openvswitch import OpenVSwitch, pushes
from topology import CARD_TO_A, LINK_MTU, PEER_MAC

AT_ONCE = 40  # frames that a system call sends
HEADERS = 14 + 20 + 8
SOL_PACKET, PACKET_VNET_HDR = 263, 15  # that Python has no names for
ROUNDS, SECONDS, WARM_UP = 5, 0.4, 0.1
# What is done to frames: the address that they are for, the labels that they get, the outermost first.
KINDS = {"plain": ("192.0.2.7", []), "two labels": ("198.51.100.7", [200, 100])}
SIZES = (64, 1500)
SCENARIO = pathlib.Path(__file__).parent / "scenarios" / "speed.scn"
OURS, THEIRS = "the card", "Open vSwitch"


def frames(address, size):
    """What the kernel makes AT_ONCE frames of this size of, with the check sequence; of UDP over IPv4, for the router."""
    payload = size - HEADERS - 4
    length = HEADERS - 14 + AT_ONCE * payload
    header = struct.pack("!BBHHHBBH4s4s", 0x45, 0, length, 0, 0, 64, 17, 0, socket.inet_aton("10.0.0.1"),
                         socket.inet_aton(address))
    macs = bytes.fromhex((CARD_TO_A + PEER_MAC).replace(":", ""))
    # Before the frame stands what a network card with offloads would be told: to cut UDP into packets with so many bytes,
    # whose checksums begin there.
    return (struct.pack("BBHHHH", 1, 5, HEADERS, payload, HEADERS - 8, 6) + macs + b"\x08\x00" + header +
            struct.pack("!HHHH", 9, 9, length - 20, 0) + bytes(AT_ONCE * payload))


def flood(end, sent, seconds):
    deadline = time.monotonic() + seconds
    while time.monotonic() < deadline:
        end.send(sent)


def arrived():
    return int(run("cat", "/sys/class/net/b0/statistics/rx_packets", namespace="b"))


def processor_seconds(process):
    values = pathlib.Path(f"/proc/{process.pid}/stat").read_text().rsplit(")", 1)[1].split()
    return (int(values[11]) + int(values[12])) / os.sysconf("SC_CLK_TCK")


def measure(end, process):
    """By kind and size: (frames a second, microseconds of processor time for each)."""
    found = {}
    for kind, (address, _) in KINDS.items():
        for size in SIZES:
            sent = frames(address, size)
            flood(end, sent, WARM_UP)
            before, spent, begin = arrived(), processor_seconds(process), time.monotonic()
            flood(end, sent, SECONDS)
            seconds = time.monotonic() - begin
            came, spent = arrived() - before, processor_seconds(process) - spent
            found[kind, size] = came / seconds, 1e6 * spent / max(came, 1)
    return found


def card(softcard, end, cores):
    os.sched_setaffinity(0, cores[1:])  # what is started takes it over
    served = Card(softcard, SCENARIO, ("eth1", "eth2"))
    try:
        os.sched_setaffinity(0, cores[:1])
        return measure(end, served.process)
    finally:
        served.stop()


def bridge(end, cores):
    os.sched_setaffinity(0, cores[1:])
    switch = OpenVSwitch("card", {"eth1": 1, "eth2": 2})
    try:
        for address, labels in KINDS.values():
            switch.flow(f"in_port=1,ip,nw_dst={address}", "dec_ttl", *pushes(labels),
                        f"set_field:{CARD_TO_A}->eth_src", f"set_field:{PEER_MAC}->eth_dst", "output:2")
        switch.ready()
        os.sched_setaffinity(0, cores[:1])
        return measure(end, switch.switch)
    finally:
        switch.stop()


def speed(softcard):
    """Prints a table; whether the card is at least as fast with each of the frames."""
    for name in ("a", "card", "b"):
        add_namespace(name)
    link(("a", "a0"), ("card", "eth1"), LINK_MTU)
    link(("card", "eth2"), ("b", "b0"), LINK_MTU)
    end, = packet_sockets("a", ["a0"])
    end.setsockopt(SOL_PACKET, PACKET_VNET_HDR, 1)
    # Who sends has a core of its own, and who forwards another; what else the machine has to do waits.
    cores = sorted(os.sched_getaffinity(0))[:2]
    os.setpriority(os.PRIO_PROCESS, 0, -15)
    ours, theirs = [], []
    for _ in range(ROUNDS):
        ours.append(card(softcard, end, cores))
        theirs.append(bridge(end, cores))
    print("| frames, bytes | frames a second: the card | Open vSwitch | processor time a frame, µs: the card | "
          "Open vSwitch |\n| --- | --: | --: | --: | --: |")
    as_fast = True
    for kind, size in ours[0]:
        rates = [max(each[kind, size][0] for each in rounds) for rounds in (ours, theirs)]
        costs = [statistics.median(each[kind, size][1] for each in rounds) for rounds in (ours, theirs)]
        as_fast = as_fast and rates[0] >= rates[1]
        print(f"| {kind}, {size} | {rates[0]:.0f} | {rates[1]:.0f} | {costs[0]:.1f} | {costs[1]:.1f} |")
    return as_fast
