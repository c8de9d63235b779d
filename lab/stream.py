"""A few megabytes of TCP there and back, every byte looked at.

stream.py echo                    sends back what comes, to everyone, until it is ended
stream.py ADDRESS BYTES SECONDS   sends, looks at what comes back, and prints JSON; gives up after that long in silence
"""
import json
import socket
import struct
import sys
import threading
import time

PORT, CHUNK = 5001, 1 << 16
WINDOW = 1 << 16  # less than a queue on the way takes, so that no packet is lost without a reason
PACE_BYTES, PACE_SECONDS = 4096, 0.002  # of a flow that goes on until it is ended
PATTERN = bytes(range(251)) * 2 * (CHUNK // 251 + 1)  # 251 is prime: a lost or doubled piece shows
TOTAL_RETRANSMITS = 100  # the byte of the kernel's tcp_info where tcpi_total_retrans begins


def retransmits(connection):
    info = connection.getsockopt(socket.IPPROTO_TCP, socket.TCP_INFO, TOTAL_RETRANSMITS + 4)
    return struct.unpack_from("I", info, TOTAL_RETRANSMITS)[0]


def echo():
    listener = socket.create_server(("::", PORT), family=socket.AF_INET6, dualstack_ipv6=True, backlog=64)
    listener.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, WINDOW)
    print("ready", flush=True)
    while True:
        connection, _ = listener.accept()
        threading.Thread(target=send_back, args=(connection,), daemon=True).start()


def send_back(connection):
    with connection:
        try:
            while data := connection.recv(CHUNK):
                connection.sendall(data)
            connection.sendall(struct.pack(">I", retransmits(connection)))
        except OSError:
            pass  # who asked sees it


def expected(at, size):
    return PATTERN[at % 251:at % 251 + size]


def flow(address, size, seconds):
    """Goes on until `size` bytes have come back, or, with 0, until standard input ends; says then when it flows."""
    told = {"bytes": 0, "retransmits": 0, "longest_silence": 0.0, "error": None}
    stopped = threading.Event()
    begin = time.monotonic()
    try:
        with socket.socket(socket.AF_INET6 if ":" in address else socket.AF_INET) as connection:
            connection.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, WINDOW)
            connection.settimeout(seconds)
            connection.connect((address, PORT))
            threading.Thread(target=send, args=(connection, size, stopped), daemon=True).start()
            if not size:
                threading.Thread(target=wait_for_the_end, args=(stopped,), daemon=True).start()
            last, tail = time.monotonic(), b""
            while data := connection.recv(CHUNK):
                now = time.monotonic()
                told["longest_silence"], last = max(told["longest_silence"], now - last), now
                data = tail + data  # the last four bytes of all are no echo
                data, tail = data[:-4], data[-4:]
                if data != expected(told["bytes"], len(data)):
                    raise OSError(f"what came back is not what was sent, somewhere from byte {told['bytes']} on")
                if not size and not told["bytes"]:
                    print("flowing", flush=True)
                told["bytes"] += len(data)
            if len(tail) != 4 or (size and told["bytes"] != size):
                raise OSError(f"the connection ended early, after {told['bytes']} bytes")
            told["retransmits"] = retransmits(connection) + struct.unpack(">I", tail)[0]
    except OSError as error:
        told["error"] = str(error)
    told["seconds"] = time.monotonic() - begin
    print(json.dumps(told))


def send(connection, size, stopped):
    try:
        sent = 0
        while sent < size if size else not stopped.is_set():
            count = min(CHUNK, size - sent) if size else PACE_BYTES
            connection.sendall(expected(sent, count))
            sent += count
            if not size:
                time.sleep(PACE_SECONDS)
        connection.shutdown(socket.SHUT_WR)
    except OSError:
        pass  # the receiving side sees it


def wait_for_the_end(stopped):
    sys.stdin.read()
    stopped.set()


if sys.argv[1] == "echo":
    echo()
else:
    flow(sys.argv[1], int(sys.argv[2]), int(sys.argv[3]))
