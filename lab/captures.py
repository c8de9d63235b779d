"""What both sides of the card saw in a case, as tshark understands it."""
import collections
import dataclasses
import json
import subprocess
import time

from namespaces import FOLDER, Failure, packet_sockets, run, start, stop, wait_for
from topology import (A_V4, A_V6, B_V4, B_V6, BRIDGED_A_V4, BRIDGED_A_V6, BRIDGED_B_V4, BRIDGED_B_V6, CARD_TO_PEER,
                      MORE_OF_B, PEER_LINKS, of_version)

PORTS = ("eth1", *PEER_LINKS)
FIELDS = ("frame.interface_name", "eth.src", "vlan.id", "mpls.label", "mpls.bottom", "mpls.ttl", "ip.src", "ip.dst",
          "ip.ttl", "ipv6.src", "ipv6.dst", "ipv6.hlim", "_ws.malformed", "ip.checksum.status", "frame.number", "eth.type")
HOSTS = {"A": (A_V4, A_V6, BRIDGED_A_V4, BRIDGED_A_V6), "B": (B_V4, B_V6, *MORE_OF_B, BRIDGED_B_V4, BRIDGED_B_V6)}

# A frame that is nobody's: of a type for experiments, to an address that nobody has.
MARK = bytes.fromhex("02000000000f 02000000000f 88b5") + b"that was the end"
MARK_TYPE = "0x88b5"


@dataclasses.dataclass(frozen=True)
class Seen:
    """Frames that look the same: on their way over a port of the card, "in" or "out", of packets to A or to B."""
    port: str
    way: str
    to: str
    version: int
    labels: tuple  # (label, S, TTL), the outermost first
    ttl: int
    vlan: int = 0

    def __str__(self):
        labels = " ".join(f"{label}/S={bottom}/TTL={ttl}" for label, bottom, ttl in self.labels) or "none"
        tag = f", VLAN {self.vlan}" if self.vlan else ""
        return f"{self.way} through {self.port} to {self.to}: IPv{self.version}, TTL {self.ttl}, labels {labels}{tag}"


def stretch(port, way, to, ttl, labels=(), vlan=0, own_labels=True):
    """What is to be seen on a stretch of a case's way, for both IP versions. `labels` are (label, TTL) of IPv4;
    IPv6 has others on the way to B, if it has its own."""
    seen = []
    for version in (4, 6):
        numbers = [label for label, _ in labels]
        if numbers and to == "B" and own_labels:
            numbers = of_version(version, numbers)
        stack = [(number, int(at + 1 == len(labels)), labels[at][1]) for at, number in enumerate(numbers)]
        seen.append(Seen(port, way, to, version, tuple(stack), ttl, vlan))
    return seen


class Capture:
    """Of what goes over the ports from when it is made until its end. Below the labels of pseudowires are Ethernet
    frames."""

    def __init__(self, name, pseudowires=()):
        self.pseudowires = pseudowires
        self.dissected = None
        self.path = FOLDER / f"{name}.pcapng"
        self.log = FOLDER / f"{name}.log"
        interfaces = [word for port in PORTS for word in ("-i", port)]
        self.frames = 0
        self.before_marks = 0  # bytes of the file
        self.counted = ""  # by the card
        self.ends = packet_sockets("card", PORTS)
        # What does not fit its buffers, in MiB, in packets and in bytes, it would leave out.
        with self.log.open("w") as log:
            self.process = start("dumpcap", "-q", "-B", 16, "-N", 1000000, "-C", 500000000, *interfaces, "-w",
                                 self.path, namespace="card", stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                 stderr=log)
        wait_for(lambda: self.path.exists() and self.path.stat().st_size > 0, "the start of the capture")

    def end(self):
        """Frames come to the file in blocks, a few a second for each port. So a marked one is sent on each of the ports
        now: what comes before it is the capture's. Nobody has to wait here until the marks are in the file."""
        self.before_marks = self.path.stat().st_size
        for port in self.ends:
            port.send(MARK)
            port.close()

    def close(self):
        """Ends the program when the marks are in the file."""
        def marked():
            with self.path.open("rb") as file:
                file.seek(self.before_marks)
                return file.read().count(MARK) == len(PORTS)

        wait_for(marked, "the end of the capture")
        stop(self.process)
        lost = [line for line in self.log.read_text().splitlines() if "dropped on" in line and "/0 (pcap" not in line]
        if lost:
            raise Failure("the capture is not whole: " + "; ".join(lost))

    def judge(self, expected):
        """What is wrong, in lines; none when frames were seen as expected and no others. On each way as many leave the
        card as come to it."""
        counts = collections.Counter()
        wrong = []
        try:
            frames = self.frames_seen()
        except Failure as failure:
            return [str(failure)]
        for values in frames:
            if values["_ws.malformed"] or values["ip.checksum.status"] in ("0", "Bad"):
                wrong.append(f"frame {values['frame.number']} on {values['frame.interface_name']} is malformed")
            elif seen := read(values):
                counts[seen] += 1
        for seen in sorted(counts.keys() - set(expected), key=str):
            wrong.append(f"not to be seen: {seen} ({counts[seen]} frames)")
        for seen in expected:
            if not counts[seen]:
                wrong.append(f"never seen: {seen}")
        for to, version in {(seen.to, seen.version) for seen in expected}:
            of_way = {way: sum(count for seen, count in counts.items() if (seen.to, seen.version, seen.way) ==
                               (to, version, way)) for way in ("in", "out")}
            if of_way["in"] != of_way["out"]:
                wrong.append(f"of {of_way['in']} IPv{version} frames to {to} that came to the card {of_way['out']} "
                             f"left; it counts: {self.counted.strip()}")
        self.frames = sum(counts.values())
        return wrong

    def frames_seen(self):
        """What tshark says of each frame up to the marks, by field. Asked once, after the capture's end."""
        if self.dissected is None:
            self.close()
            command = ["tshark", "-n", "-r", self.path, "-T", "fields", "-E", "occurrence=a", "-E", "aggregator=;",
                       "-o", "ip.check_checksum:TRUE", "-o", "tcp.analyze_sequence_numbers:FALSE"]
            for label in self.pseudowires:
                command += ["-d", f"mpls.label=={label},pwethnocw"]
            for field in FIELDS:
                command += ["-e", field]
            done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, timeout=60)
            if done.returncode != 0:
                raise Failure(f"tshark: {done.stderr.strip()}")
            self.dissected = list(up_to_marks(dict(zip(FIELDS, line.split("\t"))) for line in done.stdout.splitlines()))
        return self.dissected

    def frame(self, number):
        """The bytes of a frame."""
        printed = run("tshark", "-n", "-r", self.path, "-Y", f"frame.number == {number}", "-T", "jsonraw")
        return bytes.fromhex(json.loads(printed[printed.index("["):])[0]["_source"]["layers"]["frame_raw"][0])


def up_to_marks(frames):
    """Those that come before the mark of their port."""
    ended = set()
    for values in frames:
        if values["eth.type"] == MARK_TYPE:
            ended.add(values["frame.interface_name"])
        elif values["frame.interface_name"] not in ended:
            yield values


def read(values):
    """A line of tshark's as frames are told apart; nothing for what is neither of A nor of B."""
    def every(field):
        return values[field].split(";") if values[field] else []

    to_v4, to_v6 = every("ip.dst"), every("ipv6.dst")
    destination = (to_v4 or to_v6 or [""])[-1]
    to = next((host for host, addresses in HOSTS.items() if destination in addresses), None)
    if not to:
        return None
    port = values["frame.interface_name"]
    came_from_card = to == "A" if port == "eth1" else every("eth.src")[0] == CARD_TO_PEER
    bottoms = [int(bottom in ("1", "True")) for bottom in every("mpls.bottom")]
    labels = tuple(zip(map(int, every("mpls.label")), bottoms, map(int, every("mpls.ttl"))))
    ttl = int((every("ip.ttl") or every("ipv6.hlim"))[-1])
    return Seen(port, "out" if came_from_card else "in", to, 4 if to_v4 else 6, labels, ttl,
                int((every("vlan.id") or ["0"])[0]))
