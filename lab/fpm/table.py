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
from full_table import FullTable  # noqa: E402
from namespaces import FOLDER, prepare, run, start, stop, wait_for  # noqa: E402

QUIET = 4  # seconds after which zebra has said all


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
    full = FullTable(name)
    streams = FOLDER / f"{name}-streams"
    streams.mkdir()
    recorder = start("python3", "-B", HERE / "record.py", "127.0.0.1", 2620, streams, namespace=name,
                     stdout=subprocess.PIPE, text=True)
    assert recorder.stdout.readline() == "ready\n"
    full.run(objects)
    wait_for((streams / "1").exists, "zebra's connection")
    begin = time.monotonic()
    full.announce(routes, next_hops)
    seconds = {"live": whole(streams / "1")}
    print(f"{name}: {time.monotonic() - begin - QUIET:.2f} s from the first announcement to the last route told")
    print(full.frr.show("show ip route summary"))
    full.connect_again()
    seconds["resync"] = whole(streams / "2")
    for number, kind in enumerate(seconds, 1):
        path = target / f"{routes}-{name}-{kind}"
        path.write_bytes((streams / str(number)).read_bytes())
        said = f"{path.name}: {path.stat().st_size} bytes, {seconds[kind]:.2f} s from zebra's first byte to its last"
        print(said, flush=True)
    full.stop()
    stop(recorder)
    run("rm", "-r", streams)


def main():
    target = pathlib.Path(sys.argv[1]).resolve()
    target.mkdir(parents=True, exist_ok=True)
    prepare()
    for name, objects in (("objects", True), ("inline", False)):
        table(target, name, objects, int(sys.argv[2]), int(sys.argv[3]))


main()
