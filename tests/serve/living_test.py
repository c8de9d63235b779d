"""living_test.py FOLDER SCHEMA RUN_SCHEMA MILLISECONDS PROGRAM: a card that PROGRAM keeps answers on its socket, and leaves nothing behind.

A thousand requests take the card so many milliseconds of the processor at most; 0: as many as they take.
"""
import atexit
import json
import os
import shutil
import signal
import socket
import subprocess
import sys
import time
from pathlib import Path

import jsonschema

folder, program = Path(sys.argv[1]), sys.argv[5]
schema, run_schema = (json.load(open(name, encoding="utf-8")) for name in sys.argv[2:4])
milliseconds = int(sys.argv[4])
path = str(folder / "s")
ENVIRONMENT = {**os.environ, "XDG_RUNTIME_DIR": str(folder)}


def serve(*arguments, text="", meanwhile=lambda card: None):
    """A card that has said that it is ready; meanwhile it was reading the text."""
    card = subprocess.Popen([program, "serve", *arguments, "-"], stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, env=ENVIRONMENT)
    atexit.register(card.kill)
    card.stdin.write(text)
    meanwhile(card)
    card.stdin.close()
    assert card.stdout.readline() == "ready\n"
    return card


def end(card, how=signal.SIGTERM):
    """What it says to the end."""
    card.send_signal(how)
    said = card.stdout.read()
    assert card.wait(10) == 0, card.returncode
    assert os.listdir(folder) == [], os.listdir(folder)
    return said


def refuses(status, text, *arguments, stdin=""):
    run = subprocess.run([program, *arguments], input=stdin, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                         text=True, env=ENVIRONMENT, timeout=30, check=False)
    assert (run.returncode, text in run.stdout) == (status, True), (run.returncode, run.stdout)


def used(process):
    """Milliseconds of the processor: they are the same, however much else the machine does."""
    return int(Path(f"/proc/{process.pid}/schedstat").read_text(encoding="ascii").split()[0]) / 1e6


def ctl(*statements):
    run = subprocess.run([program, "ctl", "--socket", path, *statements], stdout=subprocess.PIPE,
                         stderr=subprocess.PIPE, text=True, timeout=30, check=False)
    return run.returncode, run.stdout, run.stderr


shutil.rmtree(folder, ignore_errors=True)
folder.mkdir()

# What a client gets is what `run` prints.
card = serve("-D", "N=7", "--control", path, text="install-vrf $N\nexpect result 0\n")
assert oct(os.stat(path).st_mode & 0o777) == "0o600"
assert ctl("show vrfs") == (0, "\nshow vrfs\n  vrfs:\n    vrf 7: flags=0x0\n", "")
status, out, error = ctl("install-vrf 8", "expect result 1", "show nothing", "install-vrf 9")
assert (status, "client 2:2: failed: expect result 1" in out, "unknown table" in error) == (2, True, True)
assert ctl("install-vrf 8", "expect result 0")[0] == 1, "it is there already"
assert ctl("expect rows vrfs 2", "for I in 1..2", "say $I", "end")[:2] == (0, "  ok: expect rows vrfs 2\n\n# 1\n\n# 2\n")
assert ctl("expect rows vrfs 2\nexpect rows vrfs 3")[0] == 1, "an argument of two lines has two answers"
assert ctl("for I in 1..3") == (2, "", 'softcard: no statement says "end" to what has begun; it was not done\n')
assert ctl("save " + str(folder / "no" / "file"))[2].startswith("error: cannot write ")
run = subprocess.run([program, "ctl", "--socket", path, "--json", "expect rows vrfs 2", "show nothing"],
                     stdout=subprocess.PIPE, text=True, check=False)
assert run.returncode == 2 and json.loads(run.stdout)["complaints"][0]["message"].startswith("unknown table")
for word in ("json", "color", "text"):
    assert ctl(word, "install-vrf 9")[:2] == (2, ""), "answers keep their format"
assert "softcard ctl --json" in ctl("json")[2]
refuses(2, "a card that is running has it", "serve", "--control", path)

# A shell that is attached.
def attached(status, lines, *texts):
    run = subprocess.run([program, "shell", "--attach", path], input=lines, stdout=subprocess.PIPE,
                         stderr=subprocess.STDOUT, text=True, timeout=30, check=False)
    missing = [text for text in texts if text not in run.stdout]
    assert (run.returncode, missing) == (status, []), (run.returncode, missing, run.stdout)


attached(0, "for I in 1..2\nsay shell $I\nend\nexpect rows vrfs 2\n", "# shell 1", "# shell 2", "ok: expect rows vrfs 2")
attached(1, "expect rows vrfs 3\n", "failed: expect rows vrfs 3")
attached(2, "json\nshow vrfs\n", "softcard ctl --json", "vrf 8")
attached(2, "show nothing\nfor I in 1..2\n", "unknown table")
client = socket.socket(socket.AF_UNIX)
client.connect(path)
client.sendall(b"complete destroy-vrf \ncomplete show sw\n")
client.shutdown(socket.SHUT_WR)
assert client.makefile().read() == "7\n8\ndone 0\nswitch\ndone 0\n"

# As JSON, a line each; the last one of an answer says how it ended.
client = socket.socket(socket.AF_UNIX)
client.connect(path)
client.sendall(b"json\ninstall-vrf 11\nexpect result 3\nnonsense\nshow vrfs\nfor I in 1..2\nend\n")
client.shutdown(socket.SHUT_WR)
lines = [json.loads(line) for line in client.makefile()]
for line in lines:
    own = line["step"] in schema["properties"]["step"]["enum"]
    jsonschema.validate(line, schema if own else run_schema)
    assert not jsonschema.Draft202012Validator(schema).is_valid({**line, "surplus": 1})
assert {line["step"] for line in lines} == {"done", "more", "unusable", "request", "failure", "tables"}
assert [line["status"] for line in lines if line["step"] == "done"] == [0, 0, 1, 2, 0, 0]

# Those that hang in the middle of a line or die in the middle of an answer.
half, dead = socket.socket(socket.AF_UNIX), socket.socket(socket.AF_UNIX)
half.connect(path)
half.sendall(b"install-vr")
dead.connect(path)
dead.sendall(b"show all\n" * 1000)
dead.close()
assert ctl("expect rows vrfs 3")[0] == 0

# A thousand requests.
client = socket.socket(socket.AF_UNIX)
client.connect(path)
began, used_before = time.monotonic(), used(card)
client.sendall(b"install-vrf 1\ndestroy-vrf 1\n" * 500)
client.shutdown(socket.SHUT_WR)
said = client.makefile().read()
took, used_for_them = 1000 * (time.monotonic() - began), used(card) - used_before
assert said.count("  => 0\ndone 0\n") == 1000
assert milliseconds == 0 or used_for_them < milliseconds, f"a thousand requests took {used_for_them:.0f} ms"

card.send_signal(signal.SIGUSR1)
assert "show counters" in end(card)
refuses(2, "no card answers at", "ctl", "--socket", path, "show vrfs")
refuses(2, "no card answers at", "shell", "--attach", path)
signal.signal(signal.SIGHUP, signal.SIG_DFL)  # whatever began this test
for how in (signal.SIGINT, signal.SIGHUP):
    end(serve("--control", path), how)
# Who asks for a report before there is a card is not heard. A pipe holds less than this text, so it is being read.
end(serve("--control", path, text="#" * (1 << 20) + "\n", meanwhile=lambda card: card.send_signal(signal.SIGUSR1)))
# Whom nohup keeps from hearing that the terminal went lives on.
signal.signal(signal.SIGHUP, signal.SIG_IGN)
card = serve("--control", path)
signal.signal(signal.SIGHUP, signal.SIG_DFL)
card.send_signal(signal.SIGHUP)
assert ctl("show vrfs")[0] == 0
end(card)
# The default is the user's; what a card that was killed left is replaced.
card = serve()
card.kill()
card.wait()
assert os.listdir(folder) == ["softcard.sock"]
card.stdout.close()
card = serve()
run = subprocess.run([program, "ctl", "show vrfs"], env=ENVIRONMENT, stdout=subprocess.PIPE, check=True)
end(card)

def refuses_as(user, text, *arguments):
    """Where users can be mapped."""
    mapped = ["unshare", "--user", f"--map-user={user}"]
    if subprocess.run([*mapped, "true"], stderr=subprocess.DEVNULL, check=False).returncode != 0:
        return print(f"skipped: users cannot be mapped here, and nobody asked as user {user}")
    run = subprocess.run([*mapped, program, *arguments], stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                         env={**ENVIRONMENT, "XDG_RUNTIME_DIR": ""}, timeout=30, check=False)
    assert (run.returncode, text in run.stdout) == (2, True), (run.returncode, run.stdout)


# Without a folder in the environment the user has one, or has to name the socket.
refuses_as(0, "no card answers at /run/softcard.sock", "ctl", "show nothing")
refuses_as(4242, "there is no /run/user/4242; name the socket with --socket", "ctl", "show nothing")
refuses_as(4242, "there is no /run/user/4242; name the socket with --control", "serve")
# A card may be there all the same.
card = serve("--control", path)
os.chmod(path, 0)
refuses_as(4242, "is another user's", "ctl", "--socket", path, "show vrfs")
end(card)

# What cannot be served leaves nothing either.
refuses(2, "no card is served", "serve", "--control", path, "-", stdin="nonsense\n")
refuses(1, "found:    0", "serve", "--control", path, "-", stdin="install-vrf 1\nexpect result 1\n")
refuses(2, "No such file", "serve", "--control", path, str(folder / "none.scn"))
refuses(2, "No such file", "serve", "--control", str(folder / "no" / "s"))
refuses(2, "does not fit", "serve", "-DN=x")
for address in ("", "0", "127.0.0.1:0", "127.0.0.1:"):
    refuses(2, f'"{address}" names no port', "serve", "--control", path, "--fpm", address)
refuses(2, "--fpm-quiet requires --fpm", "serve", "--control", path, "--fpm-quiet", "5")
for binding, said in (("eth1=missing0", "missing0"), ("eth1", "takes PORT=INTERFACE")):
    refuses(2, said, "serve", "--control", path, "--record", str(folder / "card.rec"), "--port", binding, "-",
            stdin="install-vrf 1\n")
assert os.listdir(folder) == []

# Of a card that was never served there is no recording, and older ones are as they were.
recording = folder / "card.rec"
recordings = {"card.rec": "older", "card.rec.1": "oldest"}


def texts():
    return {file.name: file.read_text(encoding="utf-8") for file in folder.iterdir()}


for older in ({}, recordings):
    for name, text in older.items():
        (folder / name).write_text(text, encoding="utf-8")
    for status, said, arguments in ((1, "found:    0", ["-"]), (2, "missing0", ["--port", "eth1=missing0", "-"]),
                                    (2, "cannot write ", ["--pcap", str(folder / "no" / "where"), "-"]),
                                    (2, "No such file", ["-", str(folder / "none.scn")])):
        refuses(status, said, "serve", "--control", path, "--record", str(recording), *arguments,
                stdin="install-vrf 1\nexpect result " + ("1\n" if status == 1 else "0\n"))
        assert texts() == older, (arguments, texts())
card = serve("--control", path, "--record", str(recording), text="install-vrf 1\n")
assert sorted(os.listdir(folder)) == ["card.rec", "card.rec.1", "s"]
assert (folder / "card.rec.1").read_text(encoding="utf-8") == "older" and "install-vrf 1" in recording.read_text("utf-8")
card.terminate()
assert card.wait(10) == 0
print(f"a thousand requests: {took:.0f} ms, {used_for_them:.0f} of them the card's")
shutil.rmtree(folder)
