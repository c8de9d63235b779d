"""The software card: the process that forwards between host A and the foreign switch."""
import json
import subprocess
import threading

from namespaces import FOLDER, SECONDS, Failure, run, start, stop
from topology import NATIVE_VLANS, PEER_LINKS


class Card:
    socket = FOLDER / "card.sock"

    def __init__(self, softcard, scenario, ports=("eth1", *PEER_LINKS), hosts=(), options=()):
        self.softcard = softcard
        bindings = [word for port in ports for word in ("--port", f"{port}={port}")]
        bindings += [word for port in hosts for word in ("--host", f"{port}={port.replace('eth', 'host')}")]
        self.output = (FOLDER / "card.log").open("w+")
        self.process = start(softcard, "serve", scenario, *bindings, "--control", self.socket, *options,
                             namespace="card", stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=self.output,
                             text=True)
        # A card that says nothing is ended, which ends the wait.
        deadline = threading.Timer(SECONDS, self.process.kill)
        deadline.start()
        said = []
        while line := self.process.stdout.readline():
            said.append(line)
            if line == "ready\n":
                break
        deadline.cancel()
        if not said or said[-1] != "ready\n":
            self.output.seek(0)
            raise Failure(f"softcard serve {scenario} did not get ready: {''.join(said)}{self.output.read()}")

    def ask(self, *statements):
        """Statements for the running card; what it answers."""
        return run(self.softcard, "ctl", "--socket", self.socket, *statements, may_fail=True)

    def rows(self, statement):
        """The rows that a `show` lists."""
        answers = run(self.softcard, "ctl", "--socket", self.socket, "--json", statement).splitlines()
        tables = [table for answer in map(json.loads, answers) for table in answer.get("tables", [])]
        return [row for table in tables for row in table["rows"]]

    def story(self, port, frame):
        """What becomes of a frame that comes in through a port, where it has the tag that the wire spared it."""
        tag = b"" if frame[12:14] == b"\x81\x00" else b"\x81\x00" + NATIVE_VLANS[port].to_bytes(2, "big")
        told = self.ask(f"inject {port} hex={(frame[:12] + tag + frame[12:]).hex()}")
        return "\n".join(line for line in told.splitlines() if not line.startswith("inject "))

    def stop(self):
        stop(self.process)
        self.output.close()
