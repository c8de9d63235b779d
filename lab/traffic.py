"""What hosts send each other in a case."""
import json
import pathlib
import re
import subprocess

from namespaces import SECONDS, Failure, inside, run, start
from topology import A_V4, HOST_MTU, version_of

STREAM = pathlib.Path(__file__).with_name("stream.py")
PINGS_PROGRAM = pathlib.Path(__file__).with_name("pings.py")
FLOW_SECONDS = 10  # without a byte, after which a flow is given up
LASTING_FLOW_SECONDS = 30  # the same of one that waits for a switch: TCP tries less and less often
PINGS = 3
PING_SECONDS = 0.02  # between pings that go on
MEGABYTE = 1 << 20
FLOWS_BYTES = 2 * MEGABYTE  # of TCP in a case, each way
HEADERS = {4: 20 + 8, 6: 40 + 8}  # of IP and ICMP


class Echo:
    """B's side of every flow."""

    def __init__(self):
        self.process = start("python3", "-B", STREAM, "echo", namespace="b", stdin=subprocess.DEVNULL,
                             stdout=subprocess.PIPE, text=True)
        if self.process.stdout.readline() != "ready\n":
            raise Failure("B's echo has not started")


def exchange(case, card, switch):
    """A case's usual traffic; what to tell of it. Of a case that has to fail it is the packets of the full MTU."""
    for address in case.to:
        ping(address, HOST_MTU, ["-W", "0.3"] if case.bite else ["-w", "2"])
    told = [flow(address, FLOWS_BYTES // len(case.to)) for address in case.to]
    size, seconds = sum(each["bytes"] for each in told), sum(each["seconds"] for each in told)
    again = sum(each["retransmits"] for each in told)
    return f"{size / MEGABYTE:.1f} MB of TCP each way, {16 * size / seconds / 1e6:.0f} Mbit/s, {again} sent again"


def ping(address, mtu, wait):
    """Packets of the whole MTU, not to be cut on their way: three have to come back. `wait` are ping's words for how
    long to wait; without them it waits for the last one no longer than the others took."""
    printed = run("ping", "-q", "-n", "-M", "do", "-s", mtu - HEADERS[version_of(address)], "-c", PINGS, "-i", "0.05",
                  *wait, address, namespace="a", may_fail=True)
    received = re.search(r"(\d+) received", printed)
    if not received or int(received[1]) < PINGS:
        raise Failure(f"of {PINGS} pings of {mtu} bytes to {address} {received[1] if received else 'none'} came back")


def settle(address):
    """One packet more there and back: all before it have arrived. Lost ones are told by what else is lost."""
    run("ping", "-q", "-n", "-c", 1, "-W", "1", address, namespace="a", may_fail=True)


def flow(address, size):
    """A connection that sends `size` bytes and gets them back; what it tells."""
    return judged(run("python3", "-B", STREAM, address, size, FLOW_SECONDS, namespace="a", seconds=30), address)


def judged(printed, address):
    try:
        told = json.loads(printed)
    except ValueError:
        raise Failure(f"TCP to {address}: {printed.strip()}") from None
    if told["error"]:
        raise Failure(f"TCP to {address}: {told['error']}")
    return told


class LastingFlow:
    """A flow that goes on until it is ended, or silent for so many seconds."""

    def __init__(self, address, seconds=LASTING_FLOW_SECONDS):
        self.address = address
        self.seconds = seconds
        self.process = subprocess.Popen([*inside("a"), "python3", "-B", STREAM, address, "0", str(seconds)],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        first = self.process.stdout.readline()
        if first != "flowing\n":
            judged(first, address)

    def end(self):
        """What it tells. A failure when it has not lived to its end."""
        try:
            printed, _ = self.process.communicate(timeout=2 * self.seconds)
        except subprocess.TimeoutExpired:
            self.process.kill()
            raise Failure(f"TCP to {self.address} does not end") from None
        return judged(printed, self.address)


class LastingPings:
    """Pings that go on until they are ended: TCP waits ever longer after a loss, they do not."""

    def __init__(self, address, source=A_V4):
        self.process = start("python3", "-B", PINGS_PROGRAM, address, source, PING_SECONDS, namespace="a",
                             stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)

    def end(self):
        """How many were sent and how many of them never came back."""
        printed, _ = self.process.communicate(timeout=SECONDS)
        told = json.loads(printed)
        return told["sent"], told["lost"]
