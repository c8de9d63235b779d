"""state_test.py SCHEMAS SCENARIO FOLDER PROGRAM...: what the statement save writes and diff --json prints of two such files
is as the schemas say."""
import json
import pathlib
import subprocess
import sys

import jsonschema



def validator_of(name):
    schema = json.loads((pathlib.Path(sys.argv[1]) / name).read_text(encoding="utf-8"))
    jsonschema.Draft202012Validator.check_schema(schema)
    return jsonschema.Draft202012Validator(schema)


def save(text):
    scenario.write_text(f"{text}\nsave {state}\n", encoding="utf-8")
    subprocess.run(softcard + ["run", "--quiet", scenario], check=True)
    return json.loads(state.read_text(encoding="utf-8"))


def diff(before, after, status):
    run = subprocess.run(softcard + ["diff", "--json", before, after], stdout=subprocess.PIPE, check=False)
    assert run.returncode == status, run.returncode
    told = json.loads(run.stdout)
    validator_of("diff-1.schema.json").validate(told)
    return told


validator = validator_of("state-1.schema.json")
folder, softcard = pathlib.Path(sys.argv[3]), sys.argv[4:]
scenario, state = folder / "saving.scn", folder / "state.json"
full = pathlib.Path(sys.argv[2]).read_text(encoding="utf-8").split("say Half")[0]  # what follows takes it down
saved = save(full)
validator.validate(saved)
assert len(saved["tables"]["destinations"]) > 300, len(saved["tables"]["destinations"])
assert diff(state, state, 0)["destinations"] == []
# A check that finds nothing wrong must be able to.
for wrong in ({**saved, "version": 2}, {**saved, "tables": {}}, {**saved, "checksum": "0"}):
    assert not validator.is_valid(wrong), wrong

# A card with a row in every table.
everything = """card exp=7,6,5,4,3,2,1,0
install-vrf 1
install-vlan 10 lim=vlan100 vrf=1 mtu=1500 mac=00:00:5e:00:01:01
install-host 20 vlan=10 lim=eth1 mac=02:00:00:00:00:09
install-mpls 30 vlan=10 lim=eth2 mac=02:00:00:00:00:09 labels=100,200 caps=push
route 1 2001:db8::/32 20
label 16 port eth3
attach eth4 30
lag lag1 eth5,eth6
send 20
"""
saved = save(everything)
validator.validate(saved)
assert saved["card"]["exp"] == {"1": [7, 6, 5, 4, 3, 2, 1, 0]}, saved["card"]
described = validator.schema["properties"]["tables"]["properties"]
assert set(described) == set(saved["tables"]), set(described) ^ set(saved["tables"])
for table, rows in saved["tables"].items():
    assert rows, table
    for name in rows[0]:
        wrong = json.loads(json.dumps(saved))
        wrong["tables"][table][0][name] = {}
        assert not validator.is_valid(wrong), (table, name)
before = state.rename(folder / "before.json")
save(everything + "destroy-host 20\ninstall-host 21 vlan=10 lim=eth1 mac=02:00:00:00:00:09\n"
     "replace-vlan 10 lim=vlan100 vrf=1 mtu=9000 mac=00:00:5e:00:01:01\n")
told = diff(before, state, 1)
rows = {group["destination"]: group["rows"] for group in told["destinations"]}
assert [row["table"] for row in rows[10]] == ["intfs"] and rows[10][0]["after"]["mtu"] == 9000, rows[10]
assert all("after" not in row for row in rows[20]) and all("before" not in row for row in rows[21]), rows
assert (told["added"], told["removed"], told["changed"]) == (2, 2, 1), told
for wrong in ({**told, "version": 2}, {**told, "destinations": [{"destination": 1, "rows": []}]}):
    assert not validator_of("diff-1.schema.json").is_valid(wrong), wrong
