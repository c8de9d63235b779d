"""captures_test.py FOLDER PROGRAM: the card that PROGRAM serves captures what its ports see, and records what is asked of
it, for as long as there is room; without room it says so once, counts what is missing, and serves on.

Ends with 77, which is a skip, where no namespaces can be made.
"""
import os
import shutil
import struct
import subprocess
import sys
import time

from network import Card, Wire, enter, fresh, ip, make, packet, plain

enter(2)
folder, program = fresh(sys.argv[1]), sys.argv[2]
card_folder, kept, small, full = (fresh(folder / name) for name in ("card", "kept", "small", "full"))
SCENARIO = """
install-vrf 1
install-vlan 10 lim=vlan100 vrf=1 mtu=9000 mac=00:00:5e:00:01:01
install-mpls 20 vlan=10 lim=eth2 mac=00:00:5e:00:02:01 labels=100,200 caps=push
route 1 198.51.100.0/24 20
native eth1 vlan=100
"""
PORTS = ("--port", "eth1=a-card", "--port", "0x1000002=b-card", "--host", "eth1=h-card")


def frames(port):
    """Of a capture: (seconds since then, frame) each."""
    data = (kept / f"{port}.pcap").read_bytes()
    magic, *_, link = struct.unpack_from("IHHiIII", data)
    assert (magic, link) == (0xA1B23C4D, 1), "a capture of Ethernet, in nanoseconds"
    at, found = 24, []
    while at < len(data):
        seconds, nanoseconds, size, whole = struct.unpack_from("IIII", data, at)
        assert size == whole
        found.append((time.time() - seconds - nanoseconds / 1e9, data[at + 16:at + 16 + size]))
        at += 16 + size
    return found


def replayed(recording):
    run = subprocess.run([program, "replay", recording], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                         check=False)
    return run.returncode, run.stdout


ip("link", "set", "lo", "up")
for pair in (("wire-a", "a-card"), ("wire-b", "b-card"), ("wire-h", "h-card")):
    make(*pair)
a, b, h = Wire("wire-a"), Wire("wire-b"), Wire("wire-h")

# What is unusable leaves nothing: neither socket nor captures.
refused = subprocess.run([program, "serve", "--control", card_folder / "s", "--pcap", folder / "new", "--port",
                          "eth1=nothing"], stderr=subprocess.PIPE, check=False)
assert refused.returncode == 2 and not (folder / "new").exists(), refused
for option in ("--pcap", "--record"):
    refused = subprocess.run([program, "serve", "--control", card_folder / "s", option, folder / "none" / "f"],
                             stderr=subprocess.PIPE, text=True, check=False)
    assert refused.returncode == 2 and "cannot write " in refused.stderr, refused
assert os.listdir(card_folder) == []

# Frames as they are on the wire, at their time, in the file as soon as they have come or gone.
card = Card(program, card_folder, SCENARIO, *PORTS, "--pcap", kept, "--record", kept / "card.rec")
asked = plain(bytes(46), b"\xff" * 6, kind=0x0806)
answer = plain(bytes(46), kind=0x0806)
sent = plain(packet("192.0.2.9", "198.51.100.7"))
a.send(asked)
assert h.receive() == asked
h.send(answer)
assert a.receive() == answer
a.send(sent)
left = b.receive()
assert [frame for _, frame in frames("eth1")] == [asked, answer, sent]
assert [frame for _, frame in frames("eth2")] == [left]
assert all(0 <= age < 60 for age, _ in frames("eth1") + frames("eth2"))
card.ask("install-vrf 2")
card.end()
assert replayed(kept / "card.rec")[0] == 0, replayed(kept / "card.rec")

# A disk that is full.
ip("link", "set", "wire-h", "down")
for disk in (small, full):
    subprocess.run(["mount", "-t", "tmpfs", "-o", "size=16k", "tmpfs", disk], check=True)
card = Card(program, card_folder, SCENARIO + "for I in 10..500\ninstall-vrf $I\nend\n", *PORTS, "--pcap", small / "c",
            "--record", full / "card.rec")
for size in range(400, 440):
    a.send(plain(packet("192.0.2.9", "198.51.100.7", size=size)))
    assert b.receive() is not None
missing = card.interfaces()["captures"]["lost"]
said, errors = card.end()
assert errors.count("cannot write captures") == 1 and "No space left on device" in errors, errors
assert errors.count("the recording stops") == 1, errors
assert "interface captures: name=none state=gone" in said, said
# Up to there they are whole.
kept = small / "c"
captured = frames("eth1") + frames("eth2")
assert 20 < len(captured) == 2 * 40 - missing, (len(captured), missing)
for disk in (small, full):
    subprocess.run(["umount", disk], check=True)
shutil.rmtree(folder)
