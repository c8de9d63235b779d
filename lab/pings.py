"""pings.py ADDRESS SOURCE SECONDS: pings, one every so many seconds, until standard input ends; then waits for those on
their way, and prints JSON. `ping` takes an answer for lost that is on its way when it ends."""
import json
import os
import socket
import struct
import sys
import threading
import time

REQUEST, ANSWER = 8, 0
WAIT_SECONDS = 2  # for the last answers


def checksum(data):
    total = sum(struct.unpack(f">{len(data) // 2}H", data))
    total = (total >> 16) + (total & 0xFFFF)
    return ~(total + (total >> 16)) & 0xFFFF


def request(own, number):
    body = struct.pack(">HHQ", own, number & 0xFFFF, number)
    return struct.pack(">BBH", REQUEST, 0, checksum(struct.pack(">BBH", REQUEST, 0, 0) + body)) + body


def listen(connection, own, answered):
    while True:
        packet = connection.recv(1 << 16)
        message = packet[4 * (packet[0] & 15):]
        if len(message) == 16 and message[0] == ANSWER and struct.unpack_from(">H", message, 4)[0] == own:
            answered.add(struct.unpack_from(">Q", message, 8)[0])


def main():
    address, source, seconds = sys.argv[1], sys.argv[2], float(sys.argv[3])
    own, answered, ended = os.getpid() & 0xFFFF, set(), threading.Event()
    connection = socket.socket(socket.AF_INET, socket.SOCK_RAW, socket.IPPROTO_ICMP)
    connection.bind((source, 0))
    connection.connect((address, 0))
    threading.Thread(target=listen, args=(connection, own, answered), daemon=True).start()
    threading.Thread(target=lambda: (sys.stdin.read(), ended.set()), daemon=True).start()
    sent = 0
    while not ended.wait(seconds):
        connection.send(request(own, sent))
        sent += 1
    deadline = time.monotonic() + WAIT_SECONDS
    while len(answered) < sent and time.monotonic() < deadline:
        time.sleep(0.01)
    print(json.dumps({"sent": sent, "lost": sent - len(answered)}))


main()
