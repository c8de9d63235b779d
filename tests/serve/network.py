"""Cables, frames, and a card that is served between them, in network and mount namespaces of their own."""
import atexit
import json
import os
import select
import shutil
import socket
import struct
import subprocess
import sys
import time
from pathlib import Path

SKIPPED = 77
ROUTER, HOST, NEXT = (bytes.fromhex(mac) for mac in ("00005e000101", "020000000009", "00005e000201"))


def enter(arguments):
    """Begins again in namespaces that end with this program, unless it is there already, when it has one argument more
    than these; ends with 77, which is a skip, where none can be made."""
    if len(sys.argv) > arguments + 1:
        return
    unshare = ["unshare", "--user", "--map-root-user", "--net", "--mount"]
    if subprocess.run([*unshare, "true"], check=False).returncode != 0:
        print("SKIPPED: no namespaces can be made here; root or unprivileged user namespaces would do")
        sys.exit(SKIPPED)
    os.execvp("unshare", [*unshare, sys.executable, "-B", *sys.argv, "inside"])


def ip(*arguments):
    subprocess.run(["ip", *arguments], check=True)


def make(outside, inside):
    """A cable, of which the card has the inside."""
    ip("link", "add", "name", outside, "type", "veth", "peer", "name", inside)
    for end in (outside, inside):
        Path(f"/proc/sys/net/ipv6/conf/{end}/disable_ipv6").write_text("1")
        ip("link", "set", end, "mtu", "9000", "up")


class Wire:
    """The outside of a cable."""

    def __init__(self, name):
        self.socket = socket.socket(socket.AF_PACKET, socket.SOCK_RAW, socket.htons(3))
        self.socket.bind((name, 0))
        self.socket.setsockopt(263, 8, 1)  # the tag comes beside the frame

    def send(self, frame):
        self.socket.send(frame)

    def receive(self, seconds=5):
        """The next frame that came, with its tag; nothing when none does."""
        end = time.monotonic() + seconds
        while (left := end - time.monotonic()) > 0:
            if not select.select([self.socket], [], [], left)[0]:
                return None
            frame, beside, _, address = self.socket.recvmsg(65536, 256)
            if address[2] == 4:  # what this end sent
                continue
            for _, kind, data in beside:
                status, _, _, _, _, tag, _ = struct.unpack("IIIHHHH", data[:20])
                if kind == 8 and status & 0x10:
                    frame = frame[:12] + struct.pack("!HH", 0x8100, tag) + frame[12:]
            return frame
        return None


def packet(source, destination, ttl=64, size=60, protocol=17):
    header = struct.pack("!BBHHHBBH4s4s", 0x45, 0, size, 0, 0, ttl, protocol, 0, socket.inet_aton(source),
                         socket.inet_aton(destination))
    total = sum(struct.unpack("!10H", header))
    total = (total & 0xFFFF) + (total >> 16)
    total = ~((total & 0xFFFF) + (total >> 16)) & 0xFFFF
    return header[:10] + struct.pack("!H", total) + header[12:] + bytes(size - 20)


def plain(carried, to=ROUTER, sender=HOST, kind=0x0800):
    return to + sender + struct.pack("!H", kind) + carried


def tagged(vlan, carried, to=ROUTER, sender=NEXT, kind=0x0800):
    return to + sender + struct.pack("!HHH", 0x8100, vlan, kind) + carried


def until(condition, what, seconds=10):
    end = time.monotonic() + seconds
    while not condition():
        assert time.monotonic() < end, what
        time.sleep(0.05)


class Card:
    """One that PROGRAM serves; its socket is in FOLDER, which is empty before and behind it."""

    def __init__(self, program, folder, scenario, *arguments):
        self.program, self.folder, self.socket = program, Path(folder), f"{folder}/s"
        self.process = subprocess.Popen([program, "serve", "--control", self.socket, *arguments, "-"],
                                        stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        atexit.register(self.process.kill)
        self.process.stdin.write(scenario)
        self.process.stdin.close()
        self.process.stdin = None  # communicate() would flush it
        said = self.process.stdout.readline()
        assert said == "ready\n", (said, self.process.stderr.read())

    def ask(self, text):
        run = subprocess.run([self.program, "ctl", "--json", "--socket", self.socket, text], stdout=subprocess.PIPE,
                             check=True)
        return json.loads(run.stdout.splitlines()[0])

    def interfaces(self):
        rows = self.ask("show interfaces")["tables"][0]["rows"]
        return {next(iter(row.values())): row for row in rows}

    def counters(self):
        rows = self.ask("show counters")["tables"][0]["rows"]
        return {row["of"] if "of" in row else next(iter(row.values())): row["packets"] for row in rows}

    def end(self):
        """What it said, and what of that on standard error."""
        self.process.terminate()
        said, errors = self.process.communicate(timeout=10)
        assert self.process.returncode == 0, (self.process.returncode, errors)
        assert os.listdir(self.folder) == [], os.listdir(self.folder)
        return said, errors


def fresh(folder):
    shutil.rmtree(folder, ignore_errors=True)
    Path(folder).mkdir()
    return Path(folder)
