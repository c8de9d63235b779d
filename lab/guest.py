"""A Linux kernel with MPLS and VRFs as a guest: user-mode-linux, a kernel that runs as a program. Its root is the
machine's own tree, its interfaces are ends of the lab's links, and the lab's folder is the same in it."""
import pathlib
import queue
import re
import subprocess
import threading

from namespaces import FOLDER, SECONDS, Failure, batch, start, stop


class Guest:
    """Runs until stop. Its interfaces are vec0, vec1 and so on, each put upon an interface of the namespace:
    (interface, MAC, MTU)."""

    def __init__(self, name, namespace, interfaces, megabytes=64):
        # Without vector I/O (vec=0): with it, the content of packets was damaged on the way.
        vectors = [f"vec{number}:transport=raw,ifname={interface},mac={mac},mtu={mtu},vec=0,gro=0"
                   for number, (interface, mac, mtu) in enumerate(interfaces)]
        init = pathlib.Path(__file__).with_name("guest_init.sh").resolve()
        self.name = name
        self.process = start("linux.uml", f"mem={megabytes}M", f"umid={name}", f"uml_dir={FOLDER}", *vectors,
                             "root=/dev/root", "rootfstype=hostfs", "rootflags=/", "rw", "con=null", "con0=fd:0,fd:1",
                             "ssl=null", "quiet", f"init={init}", namespace=namespace, stdin=subprocess.PIPE,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace", bufsize=1)
        self.lines = queue.Queue()
        threading.Thread(target=self.listen, daemon=True).start()

    def listen(self):
        for line in self.process.stdout:
            self.lines.put(line.strip())
        self.lines.put(None)

    def booted(self):
        """Waits until it takes commands."""
        self.hear("guest: up")
        return self

    def hear(self, wanted):
        """What the guest says up to a line that begins like this; gives both."""
        heard = []
        while True:
            try:
                line = self.lines.get(timeout=SECONDS)
            except queue.Empty:
                line = None
            if line is None:
                self.lines.put(None)  # nor is anything it says later an answer to what it is told then
                raise Failure(f"the guest {self.name} is silent; it said: " + " | ".join(heard))
            if line.startswith(wanted):
                return heard, line
            heard.append(line)

    def tell(self, command, may_fail=False):
        """Has the guest do a command; gives what it printed."""
        self.process.stdin.write(command + "\n")
        heard, status = self.hear("guest: status ")
        if status != "guest: status 0" and not may_fail:
            raise Failure(f"{command} in the guest {self.name}: {' | '.join(heard)}")
        return "\n".join(heard)

    def ip(self, lines):
        """Lines of `ip`, those with options of their own ("-6", "-f mpls") after those without: every program that the
        guest runs takes it some time, so one does all that have the same."""
        by_options = {}
        for line in lines:
            options, rest = re.fullmatch(r"((?:-6|-f mpls)?) ?(.*)", line).groups()
            by_options.setdefault(options, []).append(rest)
        for options in sorted(by_options):
            self.tell(f"ip {options} -batch {batch(self.name, by_options[options])}")

    def stop(self):
        self.process.stdin.close()
        try:
            self.process.wait(SECONDS)
        except subprocess.TimeoutExpired:
            pass
        stop(self.process)
