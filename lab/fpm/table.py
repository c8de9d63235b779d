"""A table of many routes, as a real zebra tells it: table.py FOLDER ROUTES NEXTHOPS, by scripts/fpm-streams.

bgpd hears them from a neighbour, zebra tells its FPM, once as they come ("live") and once after it has connected again
("resync"), with next hops as objects and within each route. Beside each stream is how long zebra took.
"""
import pathlib
import subprocess
import sys
import time

HERE = pathlib.Path(__file__).parent
sys.path.insert(0, str(HERE.parent))
from frr import Frr  # noqa: E402
from namespaces import FOLDER, add_namespace, ip, link, prepare, run, start, stop, wait_for  # noqa: E402

QUIET = 4  # seconds after which zebra has said all
ROUTER, NEIGHBOUR = "203.0.113.1", "203.0.113.100"


class Here:
    """A network namespace, for Frr: the machine's kernel has to know no labels for these routes."""

    def __init__(self, name):
        self.name = name

    def tell(self, command):
        return run("sh", "-c", command, namespace=self.name, seconds=60)


def whole(path):
    """Waits until nothing comes any more; gives the seconds from the first byte to the last."""
    wait_for(lambda: path.exists() and path.stat().st_size, "zebra's connection", 20)
    begin = last = time.monotonic()
    size = 0
    while time.monotonic() - last < QUIET:
        time.sleep(0.01)
        if path.stat().st_size != size:
            size, last = path.stat().st_size, time.monotonic()
    return last - begin


def table(target, name, objects, routes, next_hops):
    add_namespace(name)
    add_namespace(f"{name}-n")
    link((name, "r0"), (f"{name}-n", "n0"), 1500)
    ip(name, f"addr add {ROUTER}/24 dev r0")
    ip(f"{name}-n", f"addr add {NEIGHBOUR}/24 dev n0")
    streams = FOLDER / f"{name}-streams"
    streams.mkdir()
    recorder = start("python3", "-B", HERE / "record.py", "127.0.0.1", 2620, streams, namespace=name,
                     stdout=subprocess.PIPE, text=True)
    assert recorder.stdout.readline() == "ready\n"
    frr = Frr(Here(name), "127.0.0.1", objects)
    wait_for((streams / "1").exists, "zebra's connection")
    frr.start("bgpd", settings=["router bgp 65001", "no bgp ebgp-requires-policy",
                                f"neighbor {NEIGHBOUR} remote-as 65002", f"neighbor {NEIGHBOUR} passive"])
    speaker = start("python3", "-B", HERE / "bgp_speaker.py", NEIGHBOUR, ROUTER, routes, next_hops, namespace=f"{name}-n",
                    stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    begin = time.monotonic()
    seconds = {"live": whole(streams / "1")}
    print(f"{name}: {time.monotonic() - begin - QUIET:.2f} s from the first announcement to the last route told")
    print(frr.show("show ip route summary"))
    frr.configure("no fpm address")
    frr.configure("fpm address 127.0.0.1")
    seconds["resync"] = whole(streams / "2")
    for number, kind in enumerate(seconds, 1):
        path = target / f"{routes}-{name}-{kind}"
        path.write_bytes((streams / str(number)).read_bytes())
        said = f"{path.name}: {path.stat().st_size} bytes, {seconds[kind]:.2f} s from zebra's first byte to its last"
        print(said, flush=True)
    for daemon in ("bgpd", "zebra"):
        frr.kill(daemon)
    speaker.kill()
    stop(speaker)
    stop(recorder)
    run("rm", "-r", streams)


def main():
    target = pathlib.Path(sys.argv[1]).resolve()
    target.mkdir(parents=True, exist_ok=True)
    prepare()
    for name, objects in (("objects", True), ("inline", False)):
        table(target, name, objects, int(sys.argv[2]), int(sys.argv[3]))


main()
