"""audit_json_test.py SCHEMA PROGRAM...: what `softcard audit --json` prints is as the schema says."""
import json
import subprocess
import sys

import jsonschema

schema = json.load(open(sys.argv[1], encoding="utf-8"))
jsonschema.Draft202012Validator.check_schema(schema)
validator = jsonschema.Draft202012Validator(schema)
run = subprocess.run(sys.argv[2:] + ["audit", "--json", "holding.scn", "leftover.scn"], stdout=subprocess.PIPE, check=False)
assert run.returncode == 1, run.returncode
clean, leftover = (json.loads(line) for line in run.stdout.decode("utf-8").splitlines())
for audit in (clean, leftover):
    validator.validate(audit)
assert clean == {"version": 1, "file": "holding.scn", "findings": []}, clean
assert [finding["object"] for finding in leftover["findings"]] == ["intf 2"], leftover
# A check that finds nothing wrong must be able to.
assert not validator.is_valid({**leftover, "findings": [{"object": "intf 2"}]})
