"""bgp_speaker.py ADDRESS PEER ROUTES NEXTHOPS: a BGP neighbour that announces so many /24 routes, from 1.0.0.0 on, whose
next hops are in turn the addresses after its own. Prints "announced" when it has said them all, and lives until its
standard input ends."""
import ipaddress
import socket
import struct
import sys
import threading
import time

AS, HOLD_SECONDS = 65002, 240
OPEN, UPDATE, KEEPALIVE = 1, 2, 4
PREFIXES = 900  # of an update; one has at most 4,096 bytes


def message(kind, body=b""):
    return b"\xff" * 16 + struct.pack(">HB", 19 + len(body), kind) + body


def update(next_hop, prefixes):
    path = struct.pack(">BBI", 2, 1, AS)
    attributes = b"\x40\x01\x01\x00" + b"\x40\x02" + bytes([len(path)]) + path + b"\x40\x03\x04" + next_hop.packed
    announced = b"".join(b"\x18" + struct.pack(">I", number << 8)[:3] for number in prefixes)
    return message(UPDATE, struct.pack(">HH", 0, len(attributes)) + attributes + announced)


def main():
    own, peer = map(ipaddress.IPv4Address, sys.argv[1:3])
    routes, next_hops = map(int, sys.argv[3:5])
    with socket.create_connection((str(peer), 179), 10, (str(own), 0)) as connection:
        four_byte_as = b"\x02\x06\x41\x04" + struct.pack(">I", AS)
        connection.sendall(message(OPEN, struct.pack(">BHH", 4, AS, HOLD_SECONDS) + own.packed +
                                   bytes([len(four_byte_as)]) + four_byte_as))
        connection.settimeout(None)
        threading.Thread(target=read_to_the_end, args=(connection,), daemon=True).start()
        connection.sendall(message(KEEPALIVE))
        for at in range(next_hops):
            of_hop = range((1 << 16) + at, (1 << 16) + routes, next_hops)
            for begin in range(0, len(of_hop), PREFIXES):
                connection.sendall(update(own + 1 + at, of_hop[begin:begin + PREFIXES]))
        connection.sendall(message(KEEPALIVE))
        print("announced", flush=True)
        threading.Thread(target=keep_alive, args=(connection,), daemon=True).start()
        sys.stdin.read()


def read_to_the_end(connection):
    while connection.recv(1 << 16):
        pass


def keep_alive(connection):
    while True:
        time.sleep(HOLD_SECONDS / 4)
        connection.sendall(message(KEEPALIVE))


main()
