"""Whether the card does what its control plane says: every route and label in FRR's words against the card's tables."""
import json
import time

from namespaces import Failure

IMPLICIT_NULL = 3
SECONDS = 30  # that a control plane may take to agree with others, and the card with it


def agree(card, frr, vrfs, wanted=lambda said: True, seconds=SECONDS):
    """Waits until both say the same, and it is what is wanted of FRR's routes and labels; gives it. `vrfs` are the card's,
    by FRR's names."""
    deadline = time.monotonic() + seconds
    while True:
        said, found = said_by_frr(frr, vrfs), found_on(card)
        differences = [f"{what}: FRR says {said.get(what, 'nothing')}, the card has {found.get(what, 'nothing')}"
                       for what in sorted(said.keys() | found.keys(), key=str) if said.get(what) != found.get(what)]
        if not differences and wanted(said):
            return said
        if time.monotonic() > deadline:
            raise Failure("no agreement: " + ("\n".join(differences) or f"FRR says {said}"))
        time.sleep(0.1)


def said_by_frr(frr, vrfs):
    """Ways by (VRF of the card, prefix) and by label. Networks of interfaces are left out: nobody says how their hosts
    are reached."""
    ways = {}
    for name, vrf in vrfs.items():
        for command in ("ip", "ipv6"):
            told = json.loads(frr.show(f"show {command} route vrf {name} json") or "{}")
            for prefix, routes in told.items():
                hops = [hop for route in routes if route.get("installed") for hop in route["nexthops"]
                        if hop.get("fib") and not hop.get("directlyConnected")]
                if hops:
                    ways[vrf, prefix] = way("push", hops[0].get("labels", []), hops[0]["ip"])
    for label, told in json.loads(frr.show("show mpls table json") or "{}").items():
        hop = told["nexthops"][0]
        if told["installed"]:
            ways[int(label)] = (way("swap", hop["outLabelStack"], hop["nexthop"]) if "nexthop" in hop else
                                f"VRF {vrfs[hop['interface']]}")
    return ways


def found_on(card):
    """The same of the card."""
    hops = {row["destination"]: way(row["way"], row["labels"].split("/"), row["gateway"])
            for row in card.rows("show nexthops") if row["gateway"] != "none"}
    ways = {(row["vrf"], row["prefix"]): hops[row["destination"]] for row in card.rows("show routes")
            if row["destination"] in hops}
    # Hosts that the card has met on networks of interfaces, which nobody told it of.
    ways = {where: to for where, to in ways.items() if to != "to " + where[1].split("/")[0]}
    for row in card.rows("show labels"):
        to = int(row["to"])
        ways[row["label"]] = f"VRF {to}" if row["action"] == "pop-vrf" else hops.get(to, f"destination {to}")
    return ways


def way(kind, labels, gateway):
    numbers = [str(label) for label in labels if label not in (IMPLICIT_NULL, "none")]
    return f"{kind} {'/'.join(numbers)} to {gateway}" if numbers else f"to {gateway}"
