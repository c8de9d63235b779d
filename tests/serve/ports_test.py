"""ports_test.py FOLDER PROGRAM: the card that PROGRAM serves forwards between the interfaces of a network namespace.

Ends with 77, which is a skip, where no namespace can be made.
"""
import os
import shutil
import struct
import subprocess
import sys
import time

from network import HOST, NEXT, ROUTER, Card, Wire, enter, fresh, ip, make, packet, plain, tagged, until

enter(2)
folder, program = fresh(sys.argv[1]), sys.argv[2]
CONTROL = str(folder / "s")
SCENARIO = """
install-vrf 1
install-vlan 10 lim=vlan100 vrf=1 mtu=9000 mac=00:00:5e:00:01:01
install-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=100,200 caps=push
install-host 30 vlan=10 lim=eth1 mac=02:00:00:00:00:09
install-host 31 vlan=10 lim=eth1 mac=02:00:00:00:00:09 actions=cpu
install-host 32 vlan=10 lim=eth3 mac=00:00:5e:00:01:01
install-host 33 vlan=10 lim=eth9 mac=02:00:00:00:00:09
route 1 198.51.100.0/24 20
route 1 192.0.2.0/24 30
route 1 192.0.2.1/32 31
route 1 203.0.113.0/24 10
route 1 10.0.0.0/8 32
route 1 11.0.0.0/8 33
native eth1 vlan=100
"""

ip("link", "set", "lo", "up")
for pair in (("wire-a", "a-card"), ("wire-b", "b-card"), ("wire-h", "h-card"), ("loop", "loop-end")):
    make(*pair)
a, b, h = Wire("wire-a"), Wire("wire-b"), Wire("wire-h")


def refuses(text, *arguments):
    run = subprocess.run([program, "serve", "--control", CONTROL, *arguments], stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, text=True, timeout=30, check=False)
    assert (run.returncode, text in run.stderr) == (2, True), (run.returncode, run.stderr)
    assert os.listdir(folder) == [], os.listdir(folder)


refuses("cannot open interface nothing: there is none of this name", "--port", "eth1=nothing")
refuses('no Ethernet port "eth99"', "--port", "eth99=a-card")
refuses("eth1 is bound to a-card already", "--port", "eth1=a-card", "--port", "eth1=b-card")
refuses("interface a-card is that of eth1 already", "--port", "eth1=a-card", "--port", "eth2=a-card")
refuses("bind it by --port", "--host", "eth1=h-card")
refuses("has a side towards the processor already", "--port", "eth1=a-card", "--host", "eth1=h-card", "--host",
        "eth1=b-card")
refuses("takes PORT=INTERFACE", "--port", "eth1")

card = Card(program, folder, SCENARIO, "--port", "eth1=a-card", "--port", "eth2=b-card", "--host", "eth1=h-card",
            "--port", "eth3=loop", "--port", "eth4=loop-end")

# From an untagged port into a tunnel of two labels.
a.send(plain(packet("192.0.2.9", "198.51.100.7")))
labels = struct.pack("!II", 200 << 12 | 255, 100 << 12 | 1 << 8 | 255)
assert b.receive() == tagged(100, labels + packet("192.0.2.9", "198.51.100.7", ttl=63), NEXT, ROUTER, 0x8847)
# Back: the tag comes beside the frame, and the native VLAN leaves without one.
b.send(tagged(100, packet("198.51.100.7", "192.0.2.9")))
assert a.receive() == plain(packet("198.51.100.7", "192.0.2.9", ttl=63), HOST, ROUTER)
card.ask("no-native eth1")
b.send(tagged(100, packet("198.51.100.7", "192.0.2.9")))
assert a.receive() == tagged(100, packet("198.51.100.7", "192.0.2.9", ttl=63), HOST, ROUTER)
card.ask("native eth1 vlan=100")
# Frames as long as they get.
a.send(plain(packet("192.0.2.9", "198.51.100.7", size=8900)))
assert len(b.receive()) == 14 + 4 + 8 + 8900

# Those of an interface whose MTU changes.
for mtu in ("1500", "9000"):
    ip("link", "set", "a-card", "mtu", mtu)
    time.sleep(0.5)
a.send(plain(packet("192.0.2.9", "198.51.100.7", size=8901)))
assert len(b.receive()) == 14 + 4 + 8 + 8901
# Segments that the system has joined are longer than any frame may be.
joined = plain(packet("192.0.2.9", "198.51.100.7", size=20000, protocol=6))
joined = joined[:46] + bytes([0x50]) + joined[47:]  # a TCP header without options
a.socket.setsockopt(263, 15, 1)  # what a network card would have to do comes first
a.send(struct.pack("BBHHHH", 1, 1, 54, 1000, 34, 16) + joined)
a.socket.setsockopt(263, 15, 0)
until(lambda: card.interfaces()["eth1"]["cut"] == 1, "a frame that is counted as cut")

# What is the processor's, as it is on the wire.
neighbour = struct.pack("!IHBB", 6 << 28, 24, 58, 255) + bytes(32) + bytes([135]) + bytes(23)
for frame in (plain(bytes(46), kind=0x0806), plain(bytes(46), b"\xff" * 6, kind=0x0806),
              plain(bytes(46), bytes.fromhex("01005e000005")), tagged(100, bytes(46), b"\xff" * 6),
              plain(neighbour, kind=0x86DD), plain(packet("192.0.2.9", "192.0.2.1")),
              plain(packet("192.0.2.9", "203.0.113.7"))):
    a.send(frame)
    assert h.receive() == frame, frame.hex()
# And what comes from it.
for frame in (plain(bytes(46), HOST, ROUTER, 0x0806), tagged(7, bytes(46), HOST, ROUTER)):
    h.send(frame)
    assert a.receive() == frame
# The other port has no side towards the processor: the card drops and counts.
b.send(tagged(100, bytes(46), kind=0x0806))
until(lambda: card.counters().get("drop not-routed") == 1, "a drop that is counted")
# A port without an interface.
a.send(plain(packet("192.0.2.9", "11.0.0.1")))
until(lambda: card.interfaces().get("ports without one", {}).get("lost") == 1, "a frame that is counted as lost")

# A loop of two ports ends by TTL, each round of it counted.
a.send(plain(packet("192.0.2.9", "10.0.0.1", ttl=64)))
until(lambda: card.counters().get("drop ttl") == 1, "a packet that is too old")
assert card.interfaces()["eth3"]["sent"] == card.interfaces()["eth4"]["received"] == 63

# A frame that is longer than what it would leave by takes.
ip("link", "set", "b-card", "mtu", "1500")
time.sleep(0.5)
a.send(plain(packet("192.0.2.9", "198.51.100.7", size=8900)))
until(lambda: card.interfaces()["eth2"]["lost"] == 1, "a frame that is counted as lost")
ip("link", "set", "b-card", "mtu", "9000")

# A flood for the processor does not keep the clients out; what was read of it has gone there, or is counted as lost.
before = card.interfaces()
for _ in range(20000):
    a.send(plain(bytes(46), kind=0x0806))
assert card.ask("show vrfs")["step"] == "tables"
until(lambda: sum(card.interfaces()["eth1"][count] - before["eth1"][count] for count in ("received", "missed")) == 20000,
      "a flood that is counted")
after = card.interfaces()
assert (after["eth1"]["received"] - before["eth1"]["received"] ==
        sum(after["eth1 host"][count] - before["eth1 host"][count] for count in ("sent", "lost"))), (before, after)

# Down, up, gone, and here again: told and counted, and the card lives on.
ip("link", "set", "wire-a", "down")
until(lambda: card.interfaces()["eth1"]["state"] == "down", "a link that is down")
ip("link", "set", "wire-a", "up")
until(lambda: card.interfaces()["eth1"]["state"] == "up", "a link that is up again")
a = Wire("wire-a")
a.send(plain(packet("192.0.2.9", "198.51.100.7")))
assert b.receive() is not None, "a frame after the link was down"
ip("link", "del", "wire-b")
until(lambda: card.interfaces()["eth2"]["state"] == "gone", "an interface that is gone")
a.send(plain(packet("192.0.2.9", "198.51.100.7")))
until(lambda: card.interfaces()["eth2"]["lost"] > 0, "a frame for an interface that is gone")
make("wire-b", "b-card")
until(lambda: card.interfaces()["eth2"]["state"] == "up", "an interface that is back")
assert card.interfaces()["eth2"]["changes"] >= 2
b = Wire("wire-b")
a.send(plain(packet("192.0.2.9", "198.51.100.7")))
assert b.receive() is not None, "a frame through the interface that is back"

said, errors = card.end()
assert "interface eth1: name=a-card state=up" in said, said
assert "softcard: eth2: interface b-card is gone\n" in errors and "softcard: eth1: interface a-card is down\n" in errors
shutil.rmtree(folder)
