#!/usr/bin/env python3
"""Takes every measurement and shows it: scripts/bench builds what this runs.

usage: report.py BUILD_DIRECTORY [--docs]
"""

import glob
import json
import os
import re
import subprocess
import sys
import tempfile
import time

import instructions
import recorder_times
from growth_plot import plot

PROJECT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
SMALL, LARGE = 1000, 1000000
SIZES = [100, 1000, 10000, 100000, 1000000]


def output_of(*command):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True).stdout


def operations(counts):
    return [name.removesuffix(" module") for name in counts if name.endswith(" module")]


def ratio(counts, operation):
    return counts[f"{operation} module"]["instructions"] / counts[f"{operation} bare"]["instructions"]


def measure_times(build):
    """Nanoseconds per request by (kind, step, side, destinations, order)."""
    report = json.loads(output_of(f"{build}/release/bench/request_times", "--benchmark_format=json",
                                  "--benchmark_min_time=0.2"))
    times = {}
    for run in report["benchmarks"]:
        kind, side, destinations, order = run["name"].split("/")[:4]
        for step in ("install", "replace", "destroy"):
            times[kind, step, side, int(destinations), order] = 1e9 * run[step]
    return times


def measure_sizes(build):
    """Bytes of code and constants of each of the module's objects, as they are built for the card."""
    objects = sorted(glob.glob(f"{build}/powerpc/src/CMakeFiles/encapsulation_objects.dir/*/*.o"))
    rows = [line.split() for line in output_of("powerpc-linux-gnu-size", *objects).splitlines()[1:]]
    return {os.path.basename(row[5]).removesuffix(".cpp.o"): int(row[0]) for row in rows}


def measure_card(build):
    """The software card: nanoseconds and bytes by kind and step, packets and scenario lines per second, start-up."""
    lines = output_of(f"{build}/release/tests/scale/card_scale", str(SMALL), str(LARGE)).splitlines()
    card = {line.rsplit(" ", 1)[0].removeprefix("card "): float(line.rsplit(" ", 1)[1]) for line in lines}

    softcard, hosts = f"{build}/release/console/softcard", 50000
    with tempfile.NamedTemporaryFile("w", suffix=".scn") as scenario:
        scenario.write(f"card egresses={hosts}\ninstall-vrf 1\n"
                       "install-vlan 1 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n")
        for host in range(hosts):
            scenario.write(f"install-host {host + 2} vlan=1 lim=eth{host % 48 + 1} mac=02:00:00:00:00:01\n"
                           "expect result 0\n")
        scenario.flush()
        start = time.perf_counter()
        run = subprocess.Popen([softcard, "run", "--quiet", scenario.name], stdout=subprocess.DEVNULL)
        _, status, usage = os.wait4(run.pid, 0)
        if status != 0:
            sys.exit("softcard run --quiet failed")
        card["scenario lines per second"] = (3 + 2 * hosts) / (time.perf_counter() - start)
        card["scenario megabytes"] = usage.ru_maxrss / 1024

    runs = 20
    start = time.perf_counter()
    for _ in range(runs):
        output_of(softcard, "--version")
    card["start-up milliseconds"] = 1000 * (time.perf_counter() - start) / runs
    return card


def measure_audit(build):
    """Audits of a million tunnels: processor seconds of one, and megabytes of a run with audits and without."""
    def run(audits):
        with tempfile.NamedTemporaryFile("w", suffix=".scn") as scenario:
            scenario.write(f"card intfs={LARGE + 1} egresses={LARGE + 1} initiators={LARGE + 1}\ninstall-vrf 1\n"
                           "install-vlan 1 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01\n"
                           f"for T in 1..{LARGE}\n"
                           "install-mpls $(1+T) vlan=1 lim=eth1 mac=02:00:00:00:00:01 labels=100,200 caps=push\n"
                           "end\n" + audits * "expect clean\n")
            scenario.flush()
            process = subprocess.Popen([f"{build}/release/console/softcard", "run", "--quiet", scenario.name],
                                       stdout=subprocess.DEVNULL)
            _, status, usage = os.wait4(process.pid, 0)
            if status != 0:
                sys.exit("softcard run --quiet failed")
            return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024

    few, many = 1, 5
    without, with_few, with_many = run(0), run(few), run(many)
    return {"seconds": (with_many[0] - with_few[0]) / (many - few), "megabytes": with_many[1],
            "megabytes without": without[1]}


def table(head, rows):
    def line(cells):
        return "| " + " | ".join(cells) + " |"

    rule = line(["---"] + ["--:"] * (len(head) - 1))
    return "\n".join([line(head), rule, *(line(row) for row in rows)])


def request_table(small, large, times, card_small, card_large):
    rows = []
    for operation in operations(small):
        kind, step = operation.split()

        def in_ratio(at_small, at_large):
            return [f"{at_small[f'{operation} {side}']['instructions']:.0f}" for side in ("module", "bare")] + [
                f"{ratio(at_small, operation):.2f}", f"{ratio(at_large, operation):.2f}"]

        nanoseconds = ["{:.0f} / {:.0f}".format(*(times[kind, step, side, size, "random"] for side in ("module", "bare")))
                       for size in (SMALL, LARGE)]
        rows.append([operation, *in_ratio(small, large), "{:.0f}".format(small[f"{operation} module"]["allocations"]),
                     *nanoseconds, *in_ratio(card_small, card_large)])
    return table(["request", "module", "bare", "ratio", "at 10⁶", "allocations", "ns at 10³", "ns at 10⁶",
                  "card: module", "bare", "ratio", "at 10⁶"], rows)


def growth_table(growth):
    rows = [[name] + [f"{value:.0f}" for value in values] + [f"{values[-1] / values[1]:.2f}"]
            for name, values in growth.items()]
    return table(["host install, replace and destroy", "10²", "10³", "10⁴", "10⁵", "10⁶", "10⁶ / 10³"], rows)


def software_card_table(card):
    rows = [[f"{kind} {step}", f"{card[f'{kind} {step} {SMALL}']:.0f}", f"{card[f'{kind} {step} {LARGE}']:.0f}"]
            for kind in ("host", "push-2") for step in ("install", "replace", "destroy", "memory")]
    return table(["on the software card, ns (memory: bytes)", "10³", "10⁶"], rows)


def numbers_text(memory, memory_on_card, sizes, card):
    return (f"Memory per destination: {memory} bytes, {memory_on_card} on the card. Code and constants, as built for the "
            f"card (`-Os`):\n{sum(sizes.values())} bytes.\n\n"
            f"The software card forwards {card['packets-per-second']:.0f} packets per second of processor time, each with its "
            f"trace in words; `softcard run\n--quiet` goes through {card['scenario lines per second']:.0f} lines per second in "
            f"{card['scenario megabytes']:.0f} MB, and starts in {card['start-up milliseconds']:.0f} ms.")


def audit_text(audit):
    return (f"An audit of a card with a million pushes of two labels takes {audit['seconds']:.1f} s of processor time (aim: "
            f"3). With what it\nremembers of the requests the process takes {audit['megabytes']:.0f} MB, without "
            f"{audit['megabytes without']:.0f} MB, {audit['megabytes'] / audit['megabytes without']:.1f} times as much "
            "(aim: 2).")


def aims_text(counts):
    """What is to stay under a fixed number, on a platform whose log, too, returns at once."""
    def cost(*requests):
        modules = [counts[f"{request} module"] for request in requests]
        return sum(module["instructions"] - module["of the log"] for module in modules)

    host, push = ([f"{kind} {step}" for step in ("install", "replace", "destroy")] for kind in ("host", "push-2"))
    return (f"A VLAN install takes {cost('vlan install'):.0f} instructions (aim: 1200), a host's install, replace and "
            f"destroy\n{cost(*host):.0f} (aim: 5000), those of a push of two labels {cost(*push):.0f} (aim: 8000).")


def write_docs(blocks):
    path = f"{PROJECT}/docs/performance.md"
    with open(path) as file:
        text = file.read()
    for name, block in blocks.items():
        pattern = rf"(<!-- {name} -->\n).*?(<!-- end -->)"
        text, found = re.subn(pattern, lambda match: match[1] + block + "\n" + match[2], text, flags=re.DOTALL)
        if found != 1:
            sys.exit(f"docs/performance.md: the place of the block '{name}' was found {found} times, not once")
    with open(path, "w") as file:
        file.write(text)


def main(build, docs):
    native = f"{build}/release/bench/request_counts"
    counted = {(size, order): instructions.under_callgrind(native, size, order)
               for size in SIZES for order in ("random", "sequential")}
    memory = {size: counts.pop("memory") for (size, _), counts in counted.items()}[LARGE]
    small, large = counted[SMALL, "random"], counted[LARGE, "random"]
    on_card = {size: instructions.under_qemu(f"{build}/powerpc/bench/request_counts", size) for size in (SMALL, LARGE)}
    memory_on_card = [counts.pop("memory") for counts in on_card.values()][-1]
    times = measure_times(build)
    sizes = measure_sizes(build)
    card = measure_card(build)
    audit = measure_audit(build)
    recorder = recorder_times.measure(f"{build}/release")
    volumes = [recorder_times.measure_volume(f"{build}/release", requests) for requests in (100000, 1000000)]

    steps = ("install", "replace", "destroy")
    growth = {f"instructions, {order} ids": [sum(counted[size, order][f"host {step} module"]["instructions"]
                                                 for step in steps) for size in SIZES]
              for order in ("random", "sequential")}
    growth_in_time = {f"ns, {order} ids": [sum(times["host", step, "module", size, order] for step in steps)
                                           for size in SIZES] for order in ("random", "sequential")}
    svg = plot([("Instructions of a host's install, replace and destroy", SIZES, growth),
                ("Nanoseconds of the same", SIZES, growth_in_time)])

    blocks = {"requests": request_table(small, large, times, on_card[SMALL], on_card[LARGE]), "aims": aims_text(small),
              "growth": growth_table({**growth, **growth_in_time}), "software card": software_card_table(card),
              "numbers": numbers_text(memory, memory_on_card, sizes, card),
              "audit": audit_text(audit), "recorder": recorder_times.text(*recorder, volumes)}
    print(blocks["requests"])

    with open(f"{build}/bench.json", "w") as file:
        json.dump({"x86_64": {f"{size} {order}": counts for (size, order), counts in counted.items()},
                   "powerpc": on_card,
                   "bytes per destination": {"x86_64": memory, "powerpc": memory_on_card},
                   "nanoseconds": {" ".join(map(str, name)): value for name, value in times.items()},
                   "bytes of code and constants": sizes, "software card": card, "audit": audit,
                   "recorder": {" ".join(way): value for way, value in recorder[0].items()}, "recordings": volumes},
                  file, indent=1)
    with open(f"{build}/growth.svg", "w") as file:
        file.write(svg)
    if docs:
        write_docs(blocks)
        with open(f"{PROJECT}/docs/growth.svg", "w") as file:
            file.write(svg)


if __name__ == "__main__":
    main(sys.argv[1], "--docs" in sys.argv[2:])
