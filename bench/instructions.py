"""Runs request_counts under a tool that counts instructions and reads what both report.

The result maps "vlan install module" and its like to
{"instructions": per request, "of the log": what of them the platform's log takes, "allocations": per request},
and "memory" to the bytes that a destination keeps allocated.
"""

import glob
import os
import re
import subprocess
import tempfile

# Of the C library's variants of a function, the one for every x86-64: the counts do not depend on the machine.
PLAIN_X86_64 = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX2_Usable,-AVX2,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM,-BMI2"}

SAMPLES = 64


def under_callgrind(program, destinations, order="random"):
    """Counts on this machine; the programs have to be built for it."""
    with tempfile.TemporaryDirectory() as directory:
        command = ["valgrind", "--tool=callgrind", "--instr-atstart=no", "--collect-atstart=no",
                   f"--callgrind-out-file={directory}/out", program, str(destinations)]
        output = _run(command + (["sequential"] if order == "sequential" else []), PLAIN_X86_64)
        counts = _read_output(output)
        for dump in glob.glob(f"{directory}/out.*"):
            name, total, of_log = _read_dump(dump)
            if name in counts:
                counts[name]["instructions"] = total / SAMPLES
                counts[name]["of the log"] = of_log / SAMPLES
        return counts


def under_qemu(program, destinations, qemu=("qemu-ppc", "-L", "/usr/powerpc-linux-gnu")):
    """Counts of a program built for the card; without the log's share."""
    with tempfile.TemporaryDirectory() as directory:
        plugin = f"{directory}/plugin.so"
        source = os.path.join(os.path.dirname(__file__), "qemu_plugin.c")
        _run(["cc", "-O2", "-shared", "-fPIC", "-o", plugin, source], {})
        output = _run([*qemu, "-plugin", f"{plugin},out={directory}/out", program, str(destinations)], {})
        counts = _read_output(output)
        names = [name for name in counts if name != "memory"]  # in the order in which the program reports
        with open(f"{directory}/out") as totals:
            for name, total in zip(names, totals, strict=True):
                counts[name]["instructions"] = int(total) / SAMPLES
        return counts


def _run(command, environment):
    done = subprocess.run(command, env={**os.environ, **environment}, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          text=True)
    if done.returncode != 0:
        raise SystemExit(f"{' '.join(command)} failed with {done.returncode}:\n{done.stderr}")
    return done.stdout


def _read_output(output):
    counts = {}
    for line in output.splitlines():
        name, kind, value = re.fullmatch(r"(.*?) ?(memory|allocations|instructions) (\S+)", line).groups()
        if kind == "memory":
            counts["memory"] = int(value)
        else:
            counts.setdefault(name, {})[kind] = float(value)
    return counts


def _read_dump(path):
    """A callgrind dump: what it was triggered by, the total, and the log's own instructions."""
    name, total, of_log = None, 0, 0
    function, log = None, None  # by the numbers that stand for names once they were said
    skip = False
    with open(path) as dump:
        for line in dump:
            if line.startswith("desc: Trigger: Client Request: "):
                name = line.split(": ", 3)[3].strip()
            elif line.startswith("totals: "):
                total = int(line.split()[1])
            elif match := re.match(r"(c?fn)=\((\d+)\)(.*DiscardingLog::log\()?", line):
                kind, number, is_log = match.groups()
                log = number if is_log else log
                function = number if kind == "fn" else function
            elif line.startswith("calls="):
                skip = True  # the next line is the callee's cost
            elif line[0] in "0123456789+-*":
                if not skip and function is not None and function == log:
                    of_log += int(line.split()[-1])
                skip = False
    return name, total, of_log
