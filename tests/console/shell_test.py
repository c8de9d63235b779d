"""shell_test.py PROGRAM: `softcard shell` in a real terminal, which tmux plays: its prompt, completion, help, history,
loops over several lines, lines that are given up, colours, and how it ends."""

import os
import subprocess
import sys
import tempfile
import time

PROMPT = "softcard> "
SECONDS = 30  # that anything may take on a loaded machine


class Terminal:
    """A tmux server of its own; its one pane runs the command."""

    def __init__(self, command, home):
        # Not the socket of the one before, whose server may still be about to end.
        self.socket = os.path.join(tempfile.mkdtemp(dir=home), "tmux")
        environment = dict(os.environ, HOME=home, XDG_STATE_HOME=os.path.join(home, "state"), TERM="xterm-256color")
        environment.pop("NO_COLOR", None)
        environment.pop("TMUX", None)
        subprocess.run(["tmux", "-f", "/dev/null", "-S", self.socket, "new-session", "-d", "-x", "120", "-y", "50",
                        f"{command}; echo; echo status $?; exec sleep {SECONDS}"], check=True, env=environment)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        subprocess.run(["tmux", "-S", self.socket, "kill-server"], check=False, stderr=subprocess.DEVNULL)

    def type(self, text):
        subprocess.run(["tmux", "-S", self.socket, "send-keys", "-l", text], check=True)

    def press(self, key):
        subprocess.run(["tmux", "-S", self.socket, "send-keys", key], check=True)

    def enter(self, text):
        self.type(text)
        self.press("Enter")

    def screen(self, *options):
        shown = subprocess.run(["tmux", "-S", self.socket, "capture-pane", "-p", *options], check=True,
                               capture_output=True, text=True).stdout
        return shown.rstrip("\n")

    def last_line(self):
        return self.screen().splitlines()[-1] if self.screen() else ""

    def wait(self, holds, what):
        end = time.monotonic() + SECONDS
        while not holds(self.screen()):
            if time.monotonic() > end:
                sys.exit(f"never came: {what}\n--- the screen ---\n{self.screen()}")
            time.sleep(0.02)

    def expect(self, text):
        self.wait(lambda screen: text in screen, repr(text))

    def expect_line(self, text):
        """That the cursor's line is this one."""
        self.wait(lambda screen: screen.splitlines()[-1:] == [text.rstrip()], f"the line {text!r}")

    def clear(self):
        self.press("C-l")
        self.wait(lambda screen: len(screen.splitlines()) <= 1, "an empty screen")


def check_completion(terminal):
    terminal.clear()
    terminal.type("inst")
    terminal.press("Tab")
    terminal.expect_line(PROMPT + "install-")
    terminal.press("Tab")
    terminal.expect("install-vlan")
    terminal.type("vr")
    terminal.press("Tab")
    terminal.expect_line(PROMPT + "install-vrf")
    terminal.enter("1")
    terminal.expect("=> 0")

    terminal.clear()
    terminal.enter("install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01")
    terminal.expect("=> 0")
    terminal.clear()
    terminal.type("destroy-vlan ")
    terminal.press("Tab")
    terminal.expect_line(PROMPT + "destroy-vlan 10")
    terminal.press("C-u")


def check_lines_that_fail(terminal):
    terminal.clear()
    terminal.enter("instal-vrf 2")
    terminal.expect('did you mean "install-vrf"?')
    terminal.enter("show vrfs")
    terminal.expect("vrf 1:")
    assert "vrf 2:" not in terminal.screen(), terminal.screen()


def check_loops(terminal):
    terminal.clear()
    terminal.enter("for I in 2..4")
    terminal.expect_line("     ...> ")
    terminal.enter("install-vrf $I")
    terminal.enter("end")
    terminal.expect("install-vrf 4")
    terminal.enter("for I in 7..9")
    terminal.enter("install-vrf $I")
    terminal.press("C-c")
    terminal.expect_line(PROMPT)
    terminal.enter("show vrfs")
    terminal.expect("vrf 4:")
    assert "vrf 7:" not in terminal.screen(), "a loop that was given up was done"


def check_help(terminal):
    terminal.clear()
    terminal.enter("help install-host")
    terminal.expect("install-host ID vlan=ID lim=PORT mac=MAC")
    terminal.clear()
    terminal.enter("expect call ?")
    terminal.expect("expect call [CALL]")


def check_history(terminal):
    terminal.clear()
    terminal.enter("say remembered")
    terminal.expect_line(PROMPT)
    terminal.press("Up")
    terminal.expect_line(PROMPT + "say remembered")
    terminal.press("C-u")


def check_findings(terminal):
    terminal.clear()
    terminal.enter("audit")
    terminal.expect("findings: none")
    terminal.enter("mark")
    terminal.enter("destroy-vlan 10")
    terminal.enter("show changes")
    terminal.expect("took:\n    intf 1: vrf=1 vlan=100")


def main(program):
    with tempfile.TemporaryDirectory() as home:
        with Terminal(f"{program} shell", home) as terminal:
            terminal.expect_line(PROMPT)
            check_completion(terminal)
            check_lines_that_fail(terminal)
            check_loops(terminal)
            check_help(terminal)
            check_history(terminal)
            check_findings(terminal)
            assert "\033[1m" in terminal.screen("-e"), "no colours"
            terminal.press("C-c")
            terminal.press("C-d")
            terminal.expect("status 0")
        with Terminal(f"{program} shell", home) as terminal:
            terminal.expect_line(PROMPT)
            terminal.press("Up")
            terminal.expect_line(PROMPT + "show changes")
            terminal.press("C-u")
            terminal.enter("quit")
            terminal.expect("status 0")


if __name__ == "__main__":
    main(sys.argv[1])
