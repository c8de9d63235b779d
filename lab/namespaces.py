"""Network namespaces, the links between them, and programs that run in them.

The lab itself runs in namespaces of its own (see scripts/lab): the names given here exist for it alone, and when its
first process ends, however it ends, the kernel ends all others and takes the namespaces, links and files away.
"""
import ctypes
import os
import pathlib
import socket
import subprocess
import time

FOLDER = pathlib.Path("/run/lab")  # on a file system of the lab's own
SECONDS = 10  # that anything here may take


class Failure(Exception):
    """A case has failed, or the lab cannot go on: the reason."""


def run(*command, namespace=None, seconds=SECONDS, may_fail=False):
    """Runs a program to its end; gives what it printed."""
    try:
        done = subprocess.run([*inside(namespace), *map(str, command)], stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace",
                              timeout=seconds)
    except subprocess.TimeoutExpired:
        raise Failure(f"{' '.join(map(str, command))}: not done after {seconds} s") from None
    if done.returncode != 0 and not may_fail:
        raise Failure(f"{' '.join(map(str, command))}: status {done.returncode}: {done.stdout.strip()}")
    return done.stdout


def inside(namespace):
    return ["ip", "netns", "exec", namespace] if namespace else []


def start(*command, namespace=None, **options):
    """Starts a program that goes on. `options` are those of Popen."""
    return subprocess.Popen([*inside(namespace), *map(str, command)], **options)


def stop(process):
    """Ends what start has started."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(SECONDS)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait(SECONDS)
    for pipe in (process.stdin, process.stdout, process.stderr):
        if pipe:
            pipe.close()


def wait_for(condition, what, seconds=SECONDS, pause=0.01):
    """Looks at a condition until it holds, with a pause in between; gives its value."""
    deadline = time.monotonic() + seconds
    while not (value := condition()):
        if time.monotonic() > deadline:
            raise Failure(f"{what} has not happened in {seconds} s")
        time.sleep(pause)
    return value


def prepare():
    """Hides the machine's own names and files of this kind from the lab."""
    run("mount", "--make-rprivate", "/")
    run("mount", "-t", "tmpfs", "tmpfs", "/run")
    FOLDER.mkdir()


def add_namespace(name):
    run("ip", "netns", "add", name)
    run("ip", "-batch", batch(name, ["link set lo up"]), namespace=name)
    for version in ("all", "default"):
        write_setting(name, f"ipv6/conf/{version}/accept_dad", 0)
        write_setting(name, f"ipv6/conf/{version}/router_solicitations", 0)
        write_setting(name, f"ipv6/conf/{version}/addr_gen_mode", 1)


def packet_sockets(namespace, interfaces):
    """One for each interface, to send frames as they are."""
    def enter(its):
        if ctypes.CDLL(None, use_errno=True).setns(its.fileno(), 0) != 0:
            raise Failure(f"cannot enter namespace {namespace}: {os.strerror(ctypes.get_errno())}")

    sockets = []
    with open("/proc/thread-self/ns/net", "rb") as own, open(f"/run/netns/{namespace}", "rb") as there:
        enter(there)
        for interface in interfaces:
            sockets.append(socket.socket(socket.AF_PACKET, socket.SOCK_RAW))
            sockets[-1].bind((interface, 0))
        enter(own)
    return sockets


def write_setting(namespace, setting, value):
    run("sh", "-c", f"echo {value} >/proc/sys/net/{setting}", namespace=namespace)


def batch(name, lines):
    """A file with these lines for `ip -batch`."""
    path = FOLDER / f"{name}.batch"
    path.write_text("\n".join(lines) + "\n")
    return path


def ip(namespace, *lines):
    """Runs lines of the `ip` command in a namespace."""
    run("ip", "-batch", batch(namespace, lines), namespace=namespace)


def link(one, other, mtu):
    """A cable between two ends, each (namespace, interface). Frames go through it as they are: without offloads that
    would leave checksums to the receiver, or make one large frame of many."""
    run("ip", "link", "add", one[1], "mtu", mtu, "netns", one[0], "type", "veth", "peer", "name", other[1],
        "mtu", mtu, "netns", other[0])
    for namespace, interface in (one, other):
        ip(namespace, f"link set {interface} up")
        run("ethtool", "-K", interface, "rx", "off", "tx", "off", "tso", "off", "gso", "off", "gro", "off", "txvlan",
            "off", "rxvlan", "off", namespace=namespace)
