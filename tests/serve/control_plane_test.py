"""control_plane_test.py FOLDER STREAMS PROGRAM: a card that PROGRAM keeps takes what a real zebra wrote to its FPM.

STREAMS: the folder of these streams.
"""
import atexit
import os
import shutil
import signal
import socket
import struct
import subprocess
import sys
import time
from pathlib import Path

folder, streams, program = Path(sys.argv[1]), Path(sys.argv[2]), sys.argv[3]
path = str(folder / "s")
INTERFACES = """interface 2 lim=eth1 vlan=100 vrf=0 mac=00:00:5e:00:01:01 mtu=1500
expect result 0
interface 3 lim=eth2 vlan=200 vrf=0 mac=00:00:5e:00:01:02 mtu=1500
"""


def free_port():
    with socket.create_server(("127.0.0.1", 0)) as server:
        return server.getsockname()[1]


def serve(text, *arguments):
    card = subprocess.Popen([program, "serve", "--control", path, *arguments, "-"], stdin=subprocess.PIPE,
                            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    atexit.register(card.kill)
    card.stdin.write(text)
    card.stdin.close()
    line = card.stdout.readline()
    assert line == "ready\n", line
    return card


def end(card):
    """What it has said."""
    card.send_signal(signal.SIGTERM)
    said = card.stdout.read()
    assert card.wait(10) == 0, said
    return said


def ctl(*statements):
    return subprocess.run([program, "ctl", "--socket", path, *statements], stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, timeout=30, check=False).stdout


def wait_for(text, *statements):
    """Until the answer holds the text, ten seconds at most."""
    end = time.monotonic() + 10
    while text not in (answer := ctl(*statements)):
        assert time.monotonic() < end, f"no {text!r} in {answer}"
        time.sleep(0.05)
    return answer


def refuses(text, *arguments):
    run = subprocess.run([program, "serve", "--control", path + "2", *arguments], stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, timeout=30, check=False)
    assert (run.returncode, text in run.stdout) == (2, True), (run.returncode, run.stdout)


def zebra(*names):
    """A peer that has told these streams."""
    peer = socket.create_connection(("127.0.0.1", port))
    for name in names:
        peer.sendall((streams / name).read_bytes())
    return peer


shutil.rmtree(folder, ignore_errors=True)
folder.mkdir()
port = free_port()
refuses("--fpm takes ADDRESS:PORT", "--fpm", "localhost")
refuses("--fpm takes ADDRESS:PORT", "--fpm", "127.0.0.1:65536")
refuses("--fpm takes ADDRESS:PORT", "--fpm", "[::1]:x")
refuses("cannot wait for a control plane at 192.0.2.1:2620", "--fpm", "192.0.2.1:2620")

# Without a control plane its statements are read, and say that there is none.
card = serve(INTERFACES.replace("expect result 0\n", ""))
assert "softcard serve --fpm" in ctl("interface 2 lim=eth1 vlan=100 vrf=0 mac=00:00:5e:00:01:01 mtu=1500")
assert "  control-plane: none\n" in ctl("show control-plane") and "  nexthops: none\n" in ctl("show nexthops")
end(card)

card = serve(INTERFACES, "--fpm", f"127.0.0.1:{port}", "--fpm-quiet", "1")
refuses(f"cannot wait for a control plane at 127.0.0.1:{port}", "--fpm", str(port))
assert "an interface has an address" in ctl("interface 4 lim=eth3 vlan=300 vrf=0 mac=null mtu=1500")
assert "an Ethernet port's or a LAG's" in ctl("interface 4 lim=cpu vlan=300 vrf=0 mac=00:00:5e:00:01:01 mtu=1500")
assert "not a group's" in ctl("interface 4 lim=eth3 vlan=300 vrf=0 mac=01:00:5e:00:01:01 mtu=1500")
assert "table 254 is the main one" in ctl("vrf-device 6 vrf=3 table=254")
assert "table 0 is none" in ctl("vrf-device 6 vrf=0 table=0")
assert "route 198.51" not in ctl("show routes")

# What it tells becomes routes, labels and encapsulations, and a second peer is turned away.
peer = zebra("objects-plain", "objects-two-labels", "inline-lsp-two-labels", "objects-ecmp")
wait_for("route 198.51.150.0/24", "show routes")
with socket.create_connection(("127.0.0.1", port)) as second:
    second.settimeout(10)
    assert b"is connected, and there is one at a time" in second.recv(200)
answer = ctl("show nexthops")
assert "way=push labels=200/100 gateway=203.0.113.2 interface=2 users=1 state=waiting" in answer, answer
assert "way=swap labels=1000/2222" in answer and "way=deliver labels=none gateway=2001:db8:2::2" in answer, answer
assert "way=push" not in ctl("show nexthops way=swap") and "way=swap" in ctl("show nexthops way=swap")
assert "has no column \"wey\"" in ctl("show nexthops wey=swap")
answer = ctl("show unresolved")
assert 'unresolved route 198.51.150.0/24: table=254 reason="2 equal paths; the chip takes one"' in answer, answer
assert "messages=11 ignored=0 malformed=0 routes=4 labels=1" in ctl("show control-plane"), ctl("show control-plane")
assert "findings: none" in ctl("audit")

# What the card refuses is asked for again when a client has changed something.
ctl("fail EgressManager::CreateEgress nth=every result=BCM_E_FULL")
peer.sendall((streams / "inline-one-label").read_bytes())
answer = wait_for("the card refused: install-mpls", "show unresolved")
assert "returned -1: EgressManager::CreateEgress = -6" in answer, answer
ctl("clear-faults")
answer = wait_for("way=push labels=100", "show nexthops")
assert "refused" not in ctl("show unresolved"), ctl("show unresolved")

# A routing table is nobody's until a statement says so.
peer.sendall((streams / "inline-vrf").read_bytes())
wait_for('route 198.51.101.0/24: table=10 reason="no vrf-device statement says whose table 10 is"', "show unresolved")
ctl("vrf-device 6 vrf=7 table=10")
assert "route 198.51.101.0/24: vrf=7" in ctl("show routes"), ctl("show routes")
assert "table 10 is" not in ctl("show unresolved"), ctl("show unresolved")

# When it has gone all stays; the next one tells a part, and the rest goes after a quiet second.
peer.close()
wait_for("control-plane none", "show control-plane")
assert "route 198.51.150.0/24" in ctl("show routes")
peer = zebra("objects-plain")
wait_for("sweeps=1", "show control-plane")
assert "198.51.150.0/24" not in ctl("show routes") and "route 198.51.100.0/24" in ctl("show routes")
assert "labels: none" in ctl("show labels")

# A message that does not come to its end keeps nobody waiting; garbage ends the peer, and not the card.
peer.sendall(b"\1\1\0\x40half")
assert "route 198.51.100.0/24" in ctl("show routes")
peer.close()
wait_for("control-plane none", "show control-plane")

# Who has not said a whole word takes nothing away, however long that is.
for word in b"", b"\1\1\0\x40half":
    with zebra() as peer:
        peer.sendall(word)
        time.sleep(1.5)
        assert "sweeps=1" in ctl("show control-plane") and "route 198.51.100.0/24" in ctl("show routes")

# Who comes as soon as another one has gone is not turned away.
for _ in range(20):
    zebra("objects-plain").close()
wait_for("control-plane none", "show control-plane")

with zebra() as peer:
    peer.sendall(b"GET / HTTP/1.0\r\n\r\n")
    peer.settimeout(10)
    try:
        assert peer.recv(100) == b""
    except ConnectionResetError:
        pass
wait_for("control-plane none", "show control-plane")
with zebra() as peer:
    peer.sendall(b"\1\1\0\x14" + struct.pack("=IHHII", 16, 1, 0, 0, 0))  # a message that says nothing
    wait_for("sweeps=2", "show control-plane")
assert "routes: none" in ctl("show routes") and "nexthops: none" in ctl("show nexthops")
ctl("no-interface 3")
answer = ctl("show destinations")
assert answer.count("destination 1") == 1, answer
assert "-7" in ctl("no-interface 3")

said = end(card)
for text in ("is connected", "is turned away", "2 equal paths; the chip takes one", "has gone: it sent a frame of version"):
    assert text in said, (text, said)
assert said.count("is turned away") == 1, said
assert os.listdir(folder) == [], os.listdir(folder)
