"""soak_test.py FOLDER PROGRAM SECONDS KIB: the card that PROGRAM serves has as many file descriptors after that long as
before, and at most that much more memory (0: whatever), with traffic, destinations that are replaced, clients that come,
go, hang and die, and an interface that comes and goes.

Ends with 77, which is a skip, where no namespace can be made.
"""
import itertools
import shutil
import socket
import sys
import time
from pathlib import Path

from network import Card, Wire, enter, fresh, ip, make, packet, plain, until

enter(4)
folder, program, seconds, growth = fresh(sys.argv[1]), sys.argv[2], float(sys.argv[3]), int(sys.argv[4])
SCENARIO = """
install-vrf 1
install-vlan 10 lim=vlan100 vrf=1 mtu=1508 mac=00:00:5e:00:01:01
install-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=100,200 caps=push
route 1 198.51.100.0/24 20
native eth1 vlan=100
"""
WARM_UP = 0.3  # of the time, in which memory may still be taken
REMEMBERED = 10000  # requests, at most, of which nothing is left on the card


def is_there(interface):
    return interface in (name for _, name in socket.if_nameindex())


def used():
    """Memory in KiB and descriptors of the card, once it has left all clients but one and has all its interfaces."""
    if not is_there("c-card"):
        make("wire-c", "c-card")
    until(lambda: card.interfaces()["eth3"]["state"] == "up", "an interface that is up")
    process, counts = Path(f"/proc/{card.process.pid}"), [0, 1]
    while counts[-1] != counts[-2]:
        time.sleep(0.1)
        counts.append(len(list((process / "fd").iterdir())))
    return int((process / "status").read_text().split("VmRSS:")[1].split()[0]), counts[-1]


def replace(turn):
    return f"replace-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels={100 + turn % 1000},200 caps=push"


class Client:
    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(10)
        self.socket.connect(path)
        self.answers = self.socket.makefile("rb")

    def say(self, text):
        self.socket.sendall(text.encode())

    def ask(self, *lines):
        """How the last one ended."""
        self.say("".join(line + "\n" for line in lines))
        for _ in lines:
            while not (line := self.answers.readline()).startswith(b"done "):
                assert line, "an answer"
        return int(line[5:])

    def close(self):
        self.answers.close()
        self.socket.close()


ip("link", "set", "lo", "up")
for pair in (("wire-a", "a-card"), ("wire-b", "b-card"), ("wire-c", "c-card")):
    make(*pair)
a, b = Wire("wire-a"), Wire("wire-b")
card = Card(program, folder, SCENARIO, "--port", "eth1=a-card", "--port", "eth2=b-card", "--port", "eth3=c-card")
stays = Client(card.socket)
until(lambda: card.interfaces()["eth1"]["state"] == "up", "an interface that is up")

for _ in range(REMEMBERED // 100):
    stays.ask(*map(replace, range(110)))

begin = time.monotonic()
early, came_back, asked = None, 0, 0
for turn in itertools.count():
    elapsed = time.monotonic() - begin
    if elapsed > seconds:
        break
    if early is None and elapsed > WARM_UP * seconds:
        early = used()
    for size in (60, 576, 1500):
        a.send(plain(packet("192.0.2.9", "198.51.100.7", size=size)))
        b.send(plain(packet("192.0.2.9", "203.0.113.1", size=size)))  # for nobody
    asked += stays.ask(replace(turn)) == 0
    while (frame := b.receive(0.0001)) is not None:
        came_back += len(frame) > 60
    if turn % 7 == 0:
        asks, hangs, dies = (Client(card.socket) for _ in range(3))
        assert asks.ask("show all") == 0 and asks.ask("nonsense") == 2
        hangs.say("show interf")
        dies.say("show all\n" * 100)
        for each in (asks, hangs, dies):
            each.close()
    if turn % 300 == 100 and is_there("c-card"):
        ip("link", "del", "wire-c")
    if turn % 300 == 200 and not is_there("c-card"):
        make("wire-c", "c-card")
late = used()
print(f"{turn} replaces, {came_back} frames; memory {early[0]} KiB, then {late[0]} KiB; {early[1]} descriptors, then {late[1]}")
assert late[1] == early[1], "descriptors have been kept"
assert growth == 0 or late[0] - early[0] < growth, "memory has been kept"
assert asked == turn > 0 and came_back > turn, (asked, came_back, turn)
stays.close()
card.end()
shutil.rmtree(folder)
