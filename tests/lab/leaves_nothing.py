"""leaves_nothing.py LAB ARGUMENT...: a lab that is ended in the middle, whichever way, takes all it has made with it."""
import pathlib
import signal
import subprocess
import sys
import time


def parents():
    """Of all processes: the parent of each."""
    found = {}
    for status in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            found[int(status.parent.name)] = int(status.read_text().rsplit(")", 1)[1].split()[1])
        except (OSError, IndexError):
            pass  # it has ended
    return found


def below(process):
    """The processes that this one has started, and those that they have."""
    found, known = {process}, parents()
    while more := {child for child, parent in known.items() if parent in found} - found:
        found |= more
    return found


def alive(process):
    try:
        return pathlib.Path(f"/proc/{process}/stat").read_text().rsplit(")", 1)[1].split()[0] != "Z"
    except OSError:
        return False


def outside():
    """What the lab must leave alone."""
    links = subprocess.run(["ip", "-o", "link"], stdout=subprocess.PIPE, text=True, check=True).stdout
    names = pathlib.Path("/run/netns")
    return sorted(line.split(":")[1] for line in links.splitlines()), sorted(names.iterdir()) if names.exists() else []


OVS, KERNEL = ["--switch", "ovs", "routed", "push"], ["--switch", "kernel", "routed", "push"]
CONTROL_PLANE = ["--control-plane", "--topology", "static", "plain", "two"]


def end(lab, number):
    """Sends it this signal after its first case; what it has started ends with it."""
    first = lab.stdout.readline()
    if not first and lab.wait(10) == 77:
        sys.exit(77)
    assert first.startswith("ok"), first
    started = below(lab.pid)
    assert len(started) > 5, started
    lab.send_signal(number)
    assert lab.wait(10) in (-number, 128 + number), lab.returncode
    deadline = time.monotonic() + 10
    while left := [process for process in started if alive(process)]:
        assert time.monotonic() < deadline, f"after {number.name} these live on: {left}"
        time.sleep(0.05)
    lab.stdout.close()


before = outside()
# Side by side: each is its own master.
labs = [(subprocess.Popen([*sys.argv[1:], *arguments], stdout=subprocess.PIPE, text=True), number)
        for number, arguments in ((signal.SIGTERM, OVS), (signal.SIGINT, OVS), (signal.SIGKILL, KERNEL),
                                  (signal.SIGKILL, CONTROL_PLANE))]
try:
    for each in labs:
        end(*each)
finally:
    for lab, _ in labs:
        lab.kill()
assert outside() == before, (outside(), before)
assert not pathlib.Path("/run/lab").exists()
