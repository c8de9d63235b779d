"""judge.py SCENARIO DIRECTORY PROGRAM...: what `softcard run --pcap` captures of the tunnels is what two dissectors find
in it that know nothing of this project, and both of them find what was spoilt on purpose."""
import pathlib
import shutil
import struct
import subprocess
import sys

from scapy.contrib.mpls import MPLS
from scapy.layers.inet import IP
from scapy.layers.inet6 import IPv6
from scapy.layers.l2 import Dot1Q, Ether
from scapy.utils import RawPcapReader

ROUTER, PEER, VC_LABELS = "00:00:5e:00:01:01", "02:00:00:00:00:01", (1005, 2002)


def v4(last, ttl):
    return ("4", "192.0.2.1", f"198.51.{last}.9", ttl, True)


def v6(last, ttl):
    return ("6", "2001:db8::1", f"2001:db8:{last}::9", ttl, True)


def frame(dst, labels, ip, src=ROUTER, vlan=100, inner=None):
    """Labels are (label, EXP, S, TTL), the outermost first; ip is version, source, destination, TTL, checksum holds."""
    return {"dst": dst, "src": src, "vlan": vlan, "labels": labels, "ip": ip, "inner": inner}


def arrived(labels, ip):
    return frame(ROUTER, labels, ip, src=PEER)


def to(number, labels, ip, inner=None):
    return frame(f"00:00:5e:00:02:0{number}", labels, ip, inner=inner)


CUSTOMER_V4, CUSTOMER_V6 = ("4", "192.0.2.1", "198.51.0.9", 5, True), ("6", "2001:db8::1", "2001:db8:7::9", 6, True)
OUTWARDS, BACK = ("02:00:00:00:00:0a", "02:00:00:00:00:0b"), ("02:00:00:00:00:0b", "02:00:00:00:00:0a")


def stack(kind, exp, ttl):
    """What a routed packet of this priority and TTL gets."""
    return {1: [], 2: [(1001, exp, 1, 255)], 3: [(1002, exp, 0, 255), (1001, exp, 1, 255)], 4: [(1003, exp, 1, ttl)],
            # The tunnel label above a swapped one is programmed without remarking its EXP.
            5: [(1004, 0, 0, 255), (1003, exp, 1, ttl)], 6: []}[kind]


EXPECTED = {f"eth{kind}": [to(kind, stack(kind, 3, 9), v4(kind, 9)), to(kind, stack(kind, 5, 19), v6(kind, 19))]
            for kind in range(1, 7)}
EXPECTED["eth1"] += [to(1, [], v4(1, 29)), to(1, [], v6(1, 39))]
EXPECTED["eth4"] += [to(4, [(1003, 7, 0, 49), (77, 7, 1, 50)], v4(4, 50))]
EXPECTED["eth5"] += [to(5, [(1004, 0, 0, 255), (1003, 0, 1, 59)], v6(5, 60))]
EXPECTED["eth7"] = [to(7, [(1005, 0, 1, 255)], ip, inner=OUTWARDS) for ip in (CUSTOMER_V4, CUSTOMER_V6)]
EXPECTED["eth8"] = [packet for kind in range(1, 7) for packet in (arrived([], v4(kind, 10)), arrived([], v6(kind, 20)))]
EXPECTED["eth8"] += [arrived([(2001, 0, 1, 30)], v4(1, 30)),
                     arrived([(2001, 0, 0, 40), (2001, 0, 1, 40)], v6(1, 40)),
                     frame(ROUTER, [(2002, 0, 1, 64)], CUSTOMER_V4, src=PEER, inner=BACK),
                     frame(ROUTER, [(2002, 0, 1, 64)], CUSTOMER_V6, src=PEER, inner=BACK),
                     arrived([(2003, 7, 0, 50), (77, 7, 1, 50)], v4(4, 50)),
                     arrived([(2004, 0, 1, 60)], v6(5, 60))]
EXPECTED["eth9"] = [frame(OUTWARDS[0], [], ip, src=OUTWARDS[1], vlan=None) for ip in (CUSTOMER_V4, CUSTOMER_V6)]
EXPECTED["eth10"] = [frame(BACK[0], [], ip, src=BACK[1], vlan=None) for ip in (CUSTOMER_V4, CUSTOMER_V6)]

FIELDS = ("eth.dst eth.src vlan.id mpls.label mpls.exp mpls.bottom mpls.ttl ip.src ip.dst ip.ttl ip.checksum.status "
          "ipv6.src ipv6.dst ipv6.hlim frame.protocols").split()


def by_tshark(paths):
    """What tshark finds in each file: frames, or the protocols and the complaints where one is malformed."""
    joined = paths[0].with_name("joined.pcap")  # it takes longer to start than to read
    joined.write_bytes(paths[0].read_bytes()[:24] + b"".join(path.read_bytes()[24:] for path in paths))
    command = ["tshark", "-n", "-r", joined, "-T", "fields", "-E", "occurrence=a", "-E", "aggregator=;",
               "-o", "ip.check_checksum:TRUE"]
    for label in VC_LABELS:
        command += ["-d", f"mpls.label=={label},pwethnocw"]
    for field in FIELDS + ["_ws.malformed", "_ws.expert.message"]:
        command += ["-e", field]
    output = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True, text=True).stdout
    found = []
    for line in output.splitlines():
        *values, malformed, complaint = line.split("\t")
        value = {field: text.split(";") if text else [] for field, text in zip(FIELDS, values)}
        if malformed or complaint or "malformed" in value["frame.protocols"][0]:
            found.append((value["frame.protocols"], malformed, complaint))
            continue
        one = {field: texts[-1] if texts else None for field, texts in value.items()}
        bottoms = ["1" if bottom in ("1", "True") else "0" for bottom in value["mpls.bottom"]]
        entries = zip(value["mpls.label"], value["mpls.exp"], bottoms, value["mpls.ttl"])
        labels = [tuple(int(number, 0) for number in entry) for entry in entries]
        ip = None
        if one["ip.src"]:
            ip = ("4", one["ip.src"], one["ip.dst"], int(one["ip.ttl"]), one["ip.checksum.status"] in ("1", "Good"))
        if one["ipv6.src"]:
            ip = ("6", one["ipv6.src"], one["ipv6.dst"], int(one["ipv6.hlim"]), True)
        dst, src = value["eth.dst"], value["eth.src"]
        found.append(frame(dst[0], labels, ip, src[0], int(one["vlan.id"]) if one["vlan.id"] else None,
                           (dst[1], src[1]) if len(dst) > 1 else None))
    joined.unlink()
    return [[found.pop(0) for _ in records(path)] for path in paths]


def by_scapy(paths):
    """What scapy finds in each file."""
    return [read_by_scapy(path) for path in paths]


def read_by_scapy(path):
    found = []
    for data, _ in RawPcapReader(str(path)):
        outer = Ether(data)
        vlan = outer[Dot1Q].vlan if Dot1Q in outer else None
        rest = outer[Dot1Q].payload if Dot1Q in outer else outer.payload
        labels, inner = [], None
        while isinstance(rest, MPLS):
            labels.append((rest.label, rest.cos, rest.s, rest.ttl))
            last, rest = rest, rest.payload
        if labels and labels[-1][0] in VC_LABELS:
            ether = Ether(bytes(last.payload))
            inner, rest = (ether.dst, ether.src), ether.payload
        ip = None
        if isinstance(rest, IP):
            again = IP(bytes(rest))
            del again.chksum
            holds = IP(bytes(again)).chksum == rest.chksum and rest.len == len(bytes(rest))
            ip = ("4", rest.src, rest.dst, rest.ttl, holds)
        elif isinstance(rest, IPv6):
            ip = ("6", rest.src, rest.dst, rest.hlim, rest.plen + 40 == len(bytes(rest)))
        found.append(frame(outer.dst, labels, ip, outer.src, vlan, inner))
    return found


def records(path):
    """Time in nanoseconds and place of each frame's bytes."""
    data = path.read_bytes()
    magic, = struct.unpack("<I", data[:4])
    assert magic in (0xA1B23C4D, 0x4D3CB2A1), f"{path}: no capture file with nanoseconds"
    order, at, found = ("<" if magic == 0xA1B23C4D else ">"), 24, []
    while at < len(data):
        seconds, nanoseconds, captured, length = struct.unpack(order + "IIII", data[at:at + 16])
        assert captured == length, path
        found.append((seconds * 10**9 + nanoseconds, at + 16, length))
        at += 16 + captured
    return found


def spoilt(path, index, change):
    """A copy of a capture of which one frame has been changed."""
    data = bytearray(path.read_bytes())
    _, at, length = records(path)[index]
    changed = data[at:at + length]
    change(changed)
    data[at:at + length] = changed
    copy = path.with_name(change.__name__ + ".spoilt")
    copy.write_bytes(data)
    return copy


def clear_bottom(data):
    data[18 + 2] &= 0xFE


def set_bottom(data):
    data[18 + 2] |= 1


def exchange_labels(data):
    """Labels change places; EXP, S and TTL stay."""
    upper, lower = (int.from_bytes(data[at:at + 4], "big") for at in (18, 22))
    differing = (upper ^ lower) & 0xFFFFF000
    for at, entry in ((18, upper), (22, lower)):
        data[at:at + 4] = (entry ^ differing).to_bytes(4, "big")


def break_checksum(data):
    data[18 + 10] ^= 0x40


def refuses(arguments, complaint):
    run = subprocess.run(arguments, stdout=subprocess.PIPE, stderr=subprocess.PIPE, check=False, text=True)
    assert run.returncode == 2 and complaint in run.stderr, (run.returncode, run.stderr)


def main():
    scenario, directory, program = sys.argv[1], pathlib.Path(sys.argv[2]), sys.argv[3:]
    shutil.rmtree(directory, ignore_errors=True)
    subprocess.run(program + ["run", "--quiet", "--pcap", str(directory), scenario], check=True)
    first = {path.name: path.read_bytes() for path in directory.iterdir()}
    assert sorted(first) == sorted(port + ".pcap" for port in EXPECTED), sorted(first)
    for name in ("eth48.pcap", "notes.pcap"):
        (directory / name).write_bytes(b"of an earlier run")
    subprocess.run(program + ["run", "--quiet", "--pcap", str(directory), scenario], check=True)
    (directory / "notes.pcap").unlink()
    assert {path.name: path.read_bytes() for path in directory.iterdir()} == first, "another run, other bytes"

    (directory / "eth2.pcap").unlink()
    (directory / "eth2.pcap").symlink_to("/dev/full")
    refuses(program + ["run", "--pcap", str(directory), scenario], "eth2.pcap: No space left on device;")
    (directory / "eth2.pcap").unlink()
    (directory / "eth2.pcap").mkdir()
    refuses(program + ["run", "--pcap", str(directory), scenario], "eth2.pcap: Is a directory;")
    (directory / "eth2.pcap").rmdir()
    refuses(program + ["run", "--pcap", str(directory / "not" / "there"), scenario], "not/there: No such file or directory;")
    unusable = directory / "not-made"
    refuses(program + ["run", "--pcap", str(unusable), "/dev/null/none"], "")
    assert not unusable.exists(), "an unusable scenario leaves a directory"
    subprocess.run(program + ["run", "--quiet", "--pcap", str(directory), scenario], check=True)

    judges = (by_tshark, by_scapy)
    for judge in judges:
        for port, found in zip(EXPECTED, judge([directory / (port + ".pcap") for port in EXPECTED])):
            expected = EXPECTED[port]
            for number, (have, want) in enumerate(zip(found, expected)):
                assert have == want, f"{port}, frame {number + 1}, {judge.__name__}:\n  found    {have}\n  expected {want}"
            assert len(found) == len(expected), f"{port}: {len(found)} frames instead of {len(expected)}"
    # The third packet that comes in, a microsecond after the second one, leaves half a microsecond later.
    assert [time for time, _, _ in records(directory / "eth8.pcap")][2] == 3000
    assert [time for time, _, _ in records(directory / "eth2.pcap")][0] == 3500

    changes = (("eth2", 0, clear_bottom), ("eth3", 0, set_bottom), ("eth3", 1, exchange_labels), ("eth1", 0, break_checksum))
    copies = [spoilt(directory / (port + ".pcap"), index, change) for port, index, change in changes]
    for judge in judges:
        for (port, index, change), found in zip(changes, judge(copies)):
            differing = [at for at, want in enumerate(EXPECTED[port]) if found[at] != want]
            assert differing == [index], f"{judge.__name__}, {change.__name__}: {differing}"


main()
