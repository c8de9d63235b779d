"""Open vSwitch as the foreign MPLS switch: its datapath in userspace, popping and pushing by its flows."""
import os
import pathlib
import subprocess
import tempfile

from namespaces import FOLDER, run, start, stop, wait_for
from topology import B_MAC, CARD_TO_PEER, PEER_LINKS, PEER_MAC, PEER_TO_B, PEER_TO_B_MAC, of_version

TO_B = 1  # ports of the bridge: this one to B, those to the card by the card's port
PORTS = {"eth2": 2, "eth3": 3, "eth4": 4}
INTERFACES = {PEER_TO_B: TO_B} | {PEER_LINKS[port]: number for port, number in PORTS.items()}
IP_TYPES = {4: "0x0800", 6: "0x86dd"}


def from_card(port):
    return f"in_port={PORTS[port]},dl_dst={PEER_MAC}"


def addressed(number, mac):
    own_mac = PEER_TO_B_MAC if number == TO_B else PEER_MAC
    return f"set_field:{own_mac}->eth_src", f"set_field:{mac}->eth_dst", f"output:{number}"


def pushes(labels):
    """The outermost first."""
    return [action for label in reversed(labels)
            for action in ("push_mpls:0x8847", f"set_field:{label}->mpls_label", "set_field:255->mpls_ttl")]


class OpenVSwitch:
    name, short_name = "Open vSwitch", "ovs"
    ends_pseudowires = takes_tags = True

    def __init__(self, namespace="peer", interfaces=INTERFACES):
        self.namespace = namespace
        self.folder = pathlib.Path(tempfile.mkdtemp(dir=FOLDER))
        self.environment = {**os.environ, "OVS_RUNDIR": str(self.folder), "OVS_LOGDIR": str(self.folder)}
        database = self.folder / "conf.db"
        run("ovsdb-tool", "create", database, "/usr/share/openvswitch/vswitch.ovsschema")
        self.socket = self.folder / "db.sock"
        self.database = self.run_daemon("ovsdb-server", database, f"--remote=punix:{self.socket}")
        wait_for(self.socket.exists, "the start of ovsdb-server")
        self.vsctl("--no-wait", "init")
        self.start_switch()
        self.vsctl("add-br", "br0", "--", "set", "bridge", "br0", "datapath_type=netdev", "fail_mode=secure",
                   "protocols=OpenFlow13")
        for interface, number in interfaces.items():
            self.vsctl("add-port", "br0", interface, "--", "set", "interface", interface, f"ofport_request={number}")
        self.flows = []

    def run_daemon(self, program, *arguments):
        return start(program, *arguments, f"--unixctl={self.folder}/{program}.ctl", "-vconsole:off", "-vsyslog:off",
                     f"--log-file={self.folder}/{program}.log", namespace=self.namespace, env=self.environment,
                     stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

    def start_switch(self):
        self.switch = self.run_daemon("ovs-vswitchd", f"unix:{self.socket}")
        wait_for((self.folder / "ovs-vswitchd.ctl").exists, "the start of ovs-vswitchd")

    def vsctl(self, *arguments):
        return run("ovs-vsctl", f"--db=unix:{self.socket}", "--timeout=5", *arguments)

    def ofctl(self, command, *arguments):
        return run("ovs-ofctl", "-OOpenFlow13", "--timeout=5", command, f"unix:{self.folder}/br0.mgmt", *arguments)

    def clear(self):
        self.flows = []

    def ready(self):
        """The flows so far take the place of those before."""
        path = self.folder / "flows"
        path.write_text("\n".join(self.flows) + "\n")
        self.ofctl("replace-flows", path)

    def flow(self, match, *actions, table=0):
        self.flows.append(f"table={table},{match},actions={','.join(actions)}")

    def to_b(self, port, labels=(), vlan=None):
        """What the card sends through this port with exactly these labels, the outermost first, goes to B."""
        arrived = from_card(port)
        routed = ("dec_ttl", *addressed(TO_B, B_MAC))
        for version, ip_type in IP_TYPES.items():
            if not labels:
                tagged = f"{arrived},dl_vlan={vlan}" if vlan else f"{arrived},vlan_tci=0"
                self.flow(f"{tagged},dl_type={ip_type}", *(["pop_vlan"] if vlan else []), *routed)
                continue
            *above, bottom = of_version(version, labels)
            for table, label in enumerate(above):
                self.flow(f"{arrived},dl_type=0x8847,mpls_bos=0,mpls_label={label}", "pop_mpls:0x8847",
                          f"goto_table:{table + 1}", table=table)
            self.flow(f"{arrived},dl_type=0x8847,mpls_bos=1,mpls_label={bottom}", f"pop_mpls:{ip_type}", *routed,
                      table=len(above))

    def to_a(self, port, labels=(), vlan=None):
        """What B sends to A goes to the card's port under these labels."""
        pushed = pushes(labels)
        if vlan:
            pushed += ["push_vlan:0x8100", f"set_field:{vlan | 0x1000}->vlan_vid"]
        for ip_type in IP_TYPES.values():
            self.flow(f"in_port={TO_B},dl_type={ip_type}", "dec_ttl", *pushed, *addressed(PORTS[port], CARD_TO_PEER))

    def swap(self, port, label, new_label, new_port):
        """What the card sends with this label, and no other, comes back to another port of it with the new one."""
        for version in IP_TYPES:
            (old,), (new,) = of_version(version, [label]), of_version(version, [new_label])
            self.flow(f"{from_card(port)},dl_type=0x8847,mpls_bos=1,mpls_label={old}",
                      "dec_mpls_ttl", f"set_field:{new}->mpls_label", *addressed(PORTS[new_port], CARD_TO_PEER))

    def swap_outer(self, port, label, new_label, new_port):
        """The same where another label lies below."""
        self.flow(f"{from_card(port)},dl_type=0x8847,mpls_bos=0,mpls_label={label}",
                  "dec_mpls_ttl", f"set_field:{new_label}->mpls_label", *addressed(PORTS[new_port], CARD_TO_PEER))

    def end_pseudowire(self, port, label, label_back):
        """Frames below the one label are B's; B's come back below the other one."""
        self.flow(f"{from_card(port)},dl_type=0x8847,mpls_bos=1,mpls_label={label}", "decap()",
                  "decap(packet_type(ns=0,type=0))", f"output:{TO_B}")
        self.flow(f"in_port={TO_B}", "encap(mpls)", f"set_field:{label_back}->mpls_label", "set_field:255->mpls_ttl",
                  "encap(ethernet)", *addressed(PORTS[port], CARD_TO_PEER))

    def story(self, port, frame):
        """What becomes of a frame that the card has sent, in the switch's words."""
        return run("ovs-appctl", "-t", self.folder / "ovs-vswitchd.ctl", "ofproto/trace", "br0",
                   f"in_port={PORTS[port]}", frame.hex(), may_fail=True)

    def restart(self):
        stop(self.switch)
        (self.folder / "ovs-vswitchd.ctl").unlink(missing_ok=True)
        self.start_switch()
        wait_for((self.folder / "br0.mgmt").exists, "the bridge's return")
        self.ready()

    def stop(self):
        stop(self.switch)
        stop(self.database)
