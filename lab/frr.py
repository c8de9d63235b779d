"""FRR in a guest: its daemons, started by hand, and its shell."""
from namespaces import FOLDER, Failure

DAEMONS = "/usr/lib/frr"
SOCKETS = "/run/frr"  # on the guest's own file system
# These go first, ahead of bgpd: when a route comes anew and bgpd hears of it before zebra has its label from ldpd, zebra
# takes the label away from what BGP has put upon it for a moment.
FIRST = ("zebra", "ldpd")


class Frr:
    """zebra, with its FPM, and the daemons that are named."""

    def __init__(self, guest, fpm=None, use_next_hop_groups=True):
        self.guest = guest
        self.folder = FOLDER / f"{guest.name}.frr"
        self.folder.mkdir()
        (self.folder / "vtysh.conf").write_text("no service integrated-vtysh-config\n")
        settings = [f"hostname {guest.name}", "zebra nexthop-group keep 1"]
        if fpm:
            settings += [f"fpm address {fpm}", "fpm use-next-hop-groups" if use_next_hop_groups else
                         "no fpm use-next-hop-groups"]
        (self.folder / "zebra.conf").write_text("\n".join(settings) + "\n")
        self.guest.tell(f"mkdir -p {SOCKETS}; chown frr:frr {SOCKETS}")
        self.options = {"zebra": "-M dplane_fpm_nl" if fpm else ""}  # of the daemons that run
        self.start("zebra")

    def start(self, daemon, settings=()):
        """Starts a daemon; its start-up file has these settings, the first time."""
        path = self.folder / f"{daemon}.conf"
        if not path.exists():
            path.write_text("".join(line + "\n" for line in settings))
        options = self.options.setdefault(daemon, "")
        first = "chrt --fifo 1 " if daemon in FIRST else ""
        self.guest.tell(f"{first}{DAEMONS}/{daemon} -d {options} --vty_socket {SOCKETS} -z {SOCKETS}/zserv "
                        f"-i {SOCKETS}/{daemon}.pid -f {path} -P 0 --log file:{self.folder}/{daemon}.log")

    def restart(self, *daemons):
        """Ends daemons without a word and starts them anew; without names all, as is done when zebra dies: the others do
        not tell a new one what they told the old one."""
        for do in (self.kill, self.start):
            for daemon in daemons or self.options:
                do(daemon)

    def kill(self, daemon, signal="KILL"):
        self.guest.tell(f"kill -{signal} $(cat {SOCKETS}/{daemon}.pid)")

    def configure(self, *lines):
        """Says lines of configuration to the daemons that run."""
        path = self.folder / "lines"
        path.write_text("".join(line + "\n" for line in lines))
        printed = self.vtysh(f"-f {path}")
        if "%" in printed or "rror" in printed:
            raise Failure(f"FRR in {self.guest.name} does not take this: {printed}")

    def show(self, command):
        return self.vtysh(f"-c '{command}'")

    def vtysh(self, words):
        return self.guest.tell(f"vtysh --vty_socket {SOCKETS} --config_dir {self.folder} {words}")
