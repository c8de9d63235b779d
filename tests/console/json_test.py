"""json_test.py SCHEMA FILE PROGRAM...: what `softcard run --json FILE` prints is as the schema says, and has every kind of step."""
import json
import subprocess
import sys

import jsonschema

schema = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
run = subprocess.run(sys.argv[3:] + ["run", "--json", "--strict", "--all-calls", sys.argv[2]], stdout=subprocess.PIPE,
                     check=False)
assert run.returncode == 1, run.returncode
steps = [json.loads(line) for line in run.stdout.decode("utf-8").splitlines()]
for step in steps:
    validator.validate(step)
kinds = {step["step"] for step in steps}
assert kinds == set(schema["properties"]["step"]["enum"]), kinds
requests = [step for step in steps if step["step"] == "request"]
assert any("threw" in step for step in requests), "nothing threw"
assert any(event.get("injected") for step in requests for event in step["trace"]), "nothing was injected"
assert any(step["notifications"] for step in requests), "nobody was notified"
packets = [step for step in steps if step["step"] == "packet"]
assert {step.get("dropped") for step in packets} == {None, "no-record", "ttl"}, packets
assert packets[-1]["in"] == "eth1" and packets[-1]["frame"].startswith("00005e000201"), packets[-1]
# A check that finds nothing wrong must be able to.
for wrong in ({**steps[-1], "failed": "1"}, {**steps[0], "more": 1}, {**requests[0], "result": None},
              {**packets[0], "dropped": "no-route"}, {**packets[0], "frame": "0"}):
    assert not validator.is_valid(wrong), wrong
